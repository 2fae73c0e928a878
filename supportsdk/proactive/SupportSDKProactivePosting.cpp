#include <algorithm>
#include <stdexcept>
#include <utility>

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/proactive/RunAndWait.h"
#include "supportsdk/proactive/SupportSDKProactive.h"

namespace supportsdk {

namespace {

/// The service does not choose how long a line of the host's log gets.
constexpr std::size_t maximumLoggedBytes = 256;

/// Nor how many lines it is.
std::string oneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; },
        '?');
    return text;
}

std::string shortened(std::string text) {
    if (text.size() <= maximumLoggedBytes) return text;
    auto end = maximumLoggedBytes;
    const auto isInsideOfCharacter = [&] { return (text[end] & 0xC0) == 0x80; };
    while (end > 0 && isInsideOfCharacter()) --end;
    return text.substr(0, end) + "...";
}

std::string described(const Json& response, const char* key) {
    const auto* value = valueForKey(response, key);
    if (!value) return "(null)";
    if (value->is_null()) return "<null>";
    return oneLine(shortened(stringForKey(response, key).value_or(dumpJson(*value))));
}

}  // namespace

/// What the callbacks of an upload hold. It ends with them, whichever of them ran, or none: a
/// response that says nothing runs neither, and nor does a request that was given up.
class SupportSDKProactive::Upload {
 public:
    Upload(std::weak_ptr<SupportSDKProactive> owner, std::weak_ptr<MainQueue> queue)
        : owner_(std::move(owner)), queue_(std::move(queue)) {}
    Upload(const Upload&) = delete;
    Upload& operator=(const Upload&) = delete;
    /// Any thread: the background queue drops what it has not begun.
    ~Upload() {
        const auto queue = queue_.lock();
        if (!queue) return;
        queue->post([owner = owner_, isAnswered = isAnswered_] {
            if (const auto self = owner.lock()) self->uploadDidEnd(isAnswered);
        });
    }

    /// Who is to be told of the answer that has come.
    [[nodiscard]] std::shared_ptr<SupportSDKProactive> answered() {
        isAnswered_ = true;
        return owner_.lock();
    }

 private:
    const std::weak_ptr<SupportSDKProactive> owner_;
    const std::weak_ptr<MainQueue> queue_;
    bool isAnswered_ = false;
};

void SupportSDKProactive::checkQueueFlushHandler() {
    Checks batch;
    runAndWait(*platform_->backgroundQueue, [this, &batch] { batch = drain(); });
    if (!batch.empty()) postChecksToCloud(batch);
}

Checks SupportSDKProactive::drain() {
    Checks batch;
    bool isLast = false;
    while (!isLast) {
        // One check a lock, so that whoever queues meanwhile is not held up.
        const std::lock_guard lock(mutex_);
        isExcessLogged_ = false;
        if (auto check = stack.pop()) batch.push_back(std::move(check));
        isLast = stack.size() == 0 || batch.size() == maximumQueuedChecks;
    }
    return batch;
}

std::ptrdiff_t SupportSDKProactive::flushChecks() {
    return flushCheckQueue();
}

std::ptrdiff_t SupportSDKProactive::flushCheckQueue() {
    const auto before = static_cast<std::ptrdiff_t>(stack.size());
    return static_cast<std::ptrdiff_t>(stack.size()) - before;
}

void SupportSDKProactive::postChecksToCloud(const Checks& checks) {
    if (checks.empty()) {
        platform_->log->write("list of checks to POST is empty, aborting");
    } else if (!platform_->mainQueue->isCurrent()) {
        // Not waited for: the main thread may be waiting for this one.
        platform_->mainQueue->post([weak = weak_from_this(), checks] {
            if (const auto self = weak.lock()) self->postChecksToCloud(checks);
        });
    } else if (!sdk || !sdk->isCloudConfigComplete) {
        enqueue(checks);
    } else if (!sdk->isProactiveEnabled()) {
        platform_->log->write("proactive feature disabled - ignoring checks");
    } else {
        send(checks);
    }
}

void SupportSDKProactive::send(const Checks& checks) {
    sdk->postChecks(checks, nullptr, nullptr);
    for (const auto& check : checks) {
        if (const auto* dump = dynamic_cast<const CheckAppDump*>(check.get()))
            compressAndUploadDumpFiles(dump->files);
    }
}

void SupportSDKProactive::compressAndUploadDumpFiles(const FileHandles& files) {
    for (const auto& file : files) uploadFile(file);
}

void SupportSDKProactive::uploadFile(const std::shared_ptr<FileHandle>& file) {
    if (!file) {
        platform_->log->write("unexpected error uploading file");
        throw std::logic_error("file empty/undefined, unable to upload");
    }
    if (!sdk) return logFailedUpload("There is no configuration.");
    if (uploads_.size() == maximumWaitingFiles) return logFailedUpload("Too many files wait.");
    uploads_.push_back({sdk, file});
    uploadNext();
}

void SupportSDKProactive::uploadNext() {
    if (isUploading_ || uploads_.empty()) return;
    const auto [destination, file] = std::move(uploads_.front());
    uploads_.pop_front();
    if (destination.lock() != sdk) {
        logFailedUpload("Its service is not the present one any more.");
        return uploadNext();
    }
    isUploading_ = true;
    const auto upload = std::make_shared<Upload>(weak_from_this(), platform_->mainQueue);
    sdk->upload(
        file,
        [upload](const Json& response) {
            if (const auto self = upload->answered()) self->uploadDidSucceed(response);
        },
        [upload](const Json& response) {
            if (const auto self = upload->answered()) self->uploadDidFail(response);
        });
}

void SupportSDKProactive::uploadDidEnd(bool isAnswered) {
    isUploading_ = false;
    if (!isAnswered) logFailedUpload("No answer could be read.");
    uploadNext();
}

void SupportSDKProactive::logFailedUpload(const std::string& why) {
    platform_->log->write(why + " file upload failed");
}

void SupportSDKProactive::uploadDidSucceed(const Json& response) {
    if (!boolForKey(response, "uploaded")) return uploadDidFail(response);
    platform_->log->write(described(response, "message") + " file upload succeeded " +
                          described(response, "payload"));
}

void SupportSDKProactive::uploadDidFail(const Json& response) {
    logFailedUpload(described(response, "message"));
}

std::optional<std::string> SupportSDKProactive::buildTempFolderPath() {
    return std::nullopt;
}

std::optional<std::string> SupportSDKProactive::compressFiles(const FileHandles& files) {
    return compressFiles(files, "appdumpcheck");
}

std::optional<std::string> SupportSDKProactive::compressFiles(
    const FileHandles& files, const std::string& tempFileNamePrefix) {
    (void)tempFileNamePrefix;
    if (files.empty()) {
        throw std::logic_error(
            "support bundle folder doesn't exist, unable to upload support assets");
    }
    return std::nullopt;
}

}  // namespace supportsdk
