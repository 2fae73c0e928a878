#pragma once

#include <memory>
#include <optional>
#include <string>

#include "hosts/cli/Reports.h"
#include "supportsdk/proactive/SupportSDKProactive.h"

namespace supportsdk::host {

/// The commands of an application that reports its own diagnostics. Main thread.
class ProactiveCommands {
 public:
    ProactiveCommands(PlatformPtr platform, std::shared_ptr<Reports> reports)
        : platform_(std::move(platform)), reports_(std::move(reports)) {}

    /// False when `name` is none of these commands.
    bool take(const std::string& name, const Json& command);

 private:
    void proactive(const Json& command);
    void check(const Json& command);
    void flush(const Json& command);
    void queue(const Json& command);

    std::shared_ptr<const Check> makeCheck(const Json& command);
    std::optional<FileHandles> openFiles(const Json& command);

    const PlatformPtr platform_;
    const std::shared_ptr<Reports> reports_;
    std::shared_ptr<SupportSDKProactive> proactive_;
};

}  // namespace supportsdk::host
