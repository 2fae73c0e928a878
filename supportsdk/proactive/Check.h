#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

class FileHandle;

enum class CheckType : std::int32_t {
    unknown = -1,
    appHealth = 1,
    appHardware = 2,
    appCloud = 3,
    appDump = 4,
};

/// The result of one of the host's own diagnostics. Does not change once it is made, so any thread.
class SUPPORTSDK_API Check {
 public:
    /// The status that no check can have.
    static constexpr std::uint64_t invalidStatus = std::numeric_limits<std::uint64_t>::max();

    /// Throws std::invalid_argument without a name ("" is one) and for invalidStatus.
    Check(CheckType type, std::optional<std::string> name, std::uint64_t checkStatus,
          std::optional<std::string> checkStatusDetail);
    virtual ~Check() = default;
    Check(const Check&) = delete;
    Check& operator=(const Check&) = delete;

    /// The record that the service gets.
    [[nodiscard]] Json dict() const;
    /// One line for logs.
    [[nodiscard]] std::string toString() const;
    /// Of its texts.
    [[nodiscard]] std::size_t byteCount() const;
    /// How many open files it holds.
    [[nodiscard]] virtual std::size_t fileCount() const { return 0; }

    const CheckType type;
    const std::string name;
    /// What a status means is between the host and its service.
    const std::uint64_t checkStatus;
    const std::optional<std::string> checkStatusDetail;

 protected:
    [[nodiscard]] virtual const char* className() const { return "Check"; }
};

/// The kinds throw as Check does.
class SUPPORTSDK_API CheckAppHealth : public Check {
 public:
    CheckAppHealth(std::optional<std::string> name, std::uint64_t checkStatus,
                   std::optional<std::string> checkStatusDetail);

 protected:
    [[nodiscard]] const char* className() const override { return "CheckAppHealth"; }
};

class SUPPORTSDK_API CheckAppHardware : public Check {
 public:
    CheckAppHardware(std::optional<std::string> name, std::uint64_t checkStatus,
                     std::optional<std::string> checkStatusDetail);

 protected:
    [[nodiscard]] const char* className() const override { return "CheckAppHardware"; }
};

class SUPPORTSDK_API CheckAppCloud : public Check {
 public:
    CheckAppCloud(std::optional<std::string> name, std::uint64_t checkStatus,
                  std::optional<std::string> checkStatusDetail);

 protected:
    [[nodiscard]] const char* className() const override { return "CheckAppCloud"; }
};

using FileHandles = std::vector<std::shared_ptr<FileHandle>>;

/// Its name is "APP DUMP". The files are uploaded one by one after the check was sent; null ones
/// are left out.
class SUPPORTSDK_API CheckAppDump : public Check {
 public:
    CheckAppDump(std::uint64_t checkStatus, std::optional<std::string> checkStatusDetail,
                 const FileHandles& files);

    [[nodiscard]] std::size_t fileCount() const override { return files.size(); }

    const FileHandles files;

 protected:
    [[nodiscard]] const char* className() const override { return "CheckAppDump"; }
};

using Checks = std::vector<std::shared_ptr<const Check>>;

}  // namespace supportsdk
