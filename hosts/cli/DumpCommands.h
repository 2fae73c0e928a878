#pragma once

#include <memory>
#include <optional>
#include <string>

#include "hosts/cli/DumpJob.h"
#include "hosts/cli/PacedReport.h"
#include "hosts/cli/Reports.h"

namespace supportsdk::host {

/// The commands that pack and unpack dumps, one at a time and in the background. Main thread.
class DumpCommands {
 public:
    DumpCommands(std::shared_ptr<MainQueue> queue, std::shared_ptr<Reports> reports)
        : queue_(std::move(queue)), reports_(std::move(reports)) {}

    /// False when `name` is none of these commands.
    bool take(const std::string& name, const Json& command);

 private:
    void pack(const Json& command);
    void unpack(const Json& command);
    void cancel(const Json& command);

    bool isBusy();
    /// Reports under `progress` on the way and under `end` afterwards.
    void start(DumpJob::Work work, const char* progress, const char* end);

    const std::shared_ptr<MainQueue> queue_;
    const std::shared_ptr<Reports> reports_;
    DumpProgress latest_;
    std::optional<PacedReport> paced_;
    std::unique_ptr<DumpJob> job_;
};

}  // namespace supportsdk::host
