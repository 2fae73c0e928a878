#include "supportsdk/proactive/SupportSDKProactive.h"

#include <utility>

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/Support.h"

namespace supportsdk {

SupportSDKProactive::SupportSDKProactive(std::optional<Json> information, PlatformPtr platform)
    : customerInfo(std::move(information)), platform_(std::move(platform)) {}

SupportSDKProactive::~SupportSDKProactive() = default;

std::shared_ptr<SupportSDKProactive> SupportSDKProactive::create(
    const std::string& fileName, const std::optional<Json>& customerInfo, PlatformPtr platform) {
    std::shared_ptr<SupportSDKProactive> proactive(
        new SupportSDKProactive(customerInfo, std::move(platform)));
    proactive->loadConfigurationFile(fileName);
    proactive->startPolling(5);
    return proactive;
}

bool SupportSDKProactive::loadConfigurationFile(const std::string& fileName) {
    const auto json = Support::jsonFromFile(*platform_, fileName);
    if (!json || !json->is_object()) {
        platform_->log->write("no configuration: the main bundle has no identifier, or \"" +
                              fileName + "\" is not there or holds no JSON object");
        return false;
    }
    if (sdk) sdk->retire();
    sdk = Support::create(*json, weak_from_this(), platform_);
    return sdk != nullptr;
}

std::optional<Json> SupportSDKProactive::jsonFromData(std::string_view data) {
    auto json = parseJson(data);
    return json && json->is_structured() ? std::move(json) : std::nullopt;
}

void SupportSDKProactive::supportDidRetrieveSettings(const Json& response) {
    (void)response;
    getCustomerWithInformation(customerInfo);
}

void SupportSDKProactive::getCustomerWithInformation(const std::optional<Json>& information) {
    if (!sdk || !information || !information->is_object() || information->empty()) return;
    sdk->getCustomer(*information, nullptr, nullptr);
}

void SupportSDKProactive::startPolling(std::uint64_t seconds) {
    timeToWait = seconds;
}

void SupportSDKProactive::putAppHealthCheck(const std::optional<std::string>& name,
                                            std::uint64_t checkStatus,
                                            const std::optional<std::string>& checkStatusDetail) {
    putCheck(std::make_shared<CheckAppHealth>(name, checkStatus, checkStatusDetail));
}

void SupportSDKProactive::putAppHardwareCheck(const std::optional<std::string>& name,
                                              std::uint64_t checkStatus,
                                              const std::optional<std::string>& checkStatusDetail) {
    putCheck(std::make_shared<CheckAppHardware>(name, checkStatus, checkStatusDetail));
}

void SupportSDKProactive::putAppCloudCheck(const std::optional<std::string>& name,
                                           std::uint64_t checkStatus,
                                           const std::optional<std::string>& checkStatusDetail) {
    putCheck(std::make_shared<CheckAppCloud>(name, checkStatus, checkStatusDetail));
}

void SupportSDKProactive::putAppDumpCheckWithFile(
    const std::shared_ptr<FileHandle>& file, std::uint64_t checkStatus,
    const std::optional<std::string>& checkStatusDetail) {
    putAppDumpCheckWithFiles({file}, checkStatus, checkStatusDetail);
}

void SupportSDKProactive::putAppDumpCheckWithFiles(
    const FileHandles& files, std::uint64_t checkStatus,
    const std::optional<std::string>& checkStatusDetail) {
    putCheck(std::make_shared<CheckAppDump>(checkStatus, checkStatusDetail, files));
}

void SupportSDKProactive::putCheck(const std::shared_ptr<const Check>& check) {
    queueCheck(check);
}

void SupportSDKProactive::putCheck(const std::shared_ptr<const Check>& check, bool background) {
    if (!check) return;
    if (check->type == CheckType::unknown) {
        platform_->log->write("skipping unknown check of type unknown (" + check->toString() + ")");
    } else if (background) {
        putCheck(check);
    } else {
        postChecksToCloud({check});
    }
}

void SupportSDKProactive::queueCheck(const std::shared_ptr<const Check>& check) {
    enqueue({check});
}

void SupportSDKProactive::enqueue(const Checks& checks) {
    // Ends after the lock: the last of a check may close files, or run what a host made of it.
    Checks excess;
    bool isFirst = false;
    {
        const std::lock_guard lock(mutex_);
        for (const auto& check : checks) {
            if (check && isTooMuch(*check)) {
                excess.push_back(check);
            } else {
                stack.push(check);
            }
        }
        takeExcess(excess);
        isFirst = !excess.empty() && !std::exchange(isExcessLogged_, true);
    }
    if (isFirst) {
        platform_->log->write(
            "too many checks, too long ones or too many files are waiting - dropping those that "
            "would be "
            "sent last");
    }
}

bool SupportSDKProactive::isTooMuch(const Check& check) {
    return check.byteCount() > maximumQueuedBytes || check.fileCount() > maximumWaitingFiles;
}

void SupportSDKProactive::takeExcess(Checks& excess) {
    while (stack.size() > maximumQueuedChecks || stack.byteCount() > maximumQueuedBytes)
        excess.push_back(stack.takeFirst());
    while (stack.fileCount() > maximumWaitingFiles) excess.push_back(stack.takeFirstWithFiles());
}

}  // namespace supportsdk
