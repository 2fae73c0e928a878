#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "supportsdk/core/SupportDelegate.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Platform.h"
#include "supportsdk/proactive/Check.h"
#include "supportsdk/proactive/Stack.h"

namespace supportsdk {

class Support;

/// Reports the results of a host's own diagnostics without any screen. Checks are queued, in memory
/// only, until the host calls checkQueueFlushHandler(): nothing is sent by itself.
///
/// Queueing and flushing: any thread. Everything else, creation and destruction included: main
/// thread. Checks whose request fails are lost, without a word.
class SUPPORTSDK_API SupportSDKProactive
    : public SupportDelegate,
      public std::enable_shared_from_this<SupportSDKProactive> {
 public:
    /// More checks than this do not wait: for each one that comes the one goes whose turn would
    /// come last, which is the oldest unless checks came back. Logged once until the next flush.
    static constexpr std::size_t maximumQueuedChecks = 10000;
    /// The same for the bytes of their names and details, which become one request.
    static constexpr std::size_t maximumQueuedBytes = std::size_t{4} * 1024 * 1024;
    /// More files than this are not held open by checks that wait, nor by uploads that wait: they
    /// come out of what the host's process may open. Of the checks with files the one goes whose
    /// turn would come last; an upload fails. A check that is too much by itself does not wait.
    static constexpr std::size_t maximumWaitingFiles = 128;

    /// Loads a configuration file as loadConfigurationFile() does; `customerInfo` (an object) is
    /// resolved once settings are in.
    static std::shared_ptr<SupportSDKProactive> create(const std::string& fileName,
                                                       const std::optional<Json>& customerInfo,
                                                       PlatformPtr platform);
    ~SupportSDKProactive() override;

    /// Reads a file of the main bundle (Support::jsonFromFile) and makes `sdk` from it; a file that
    /// gives nothing leaves `sdk` as it is, and false.
    bool loadConfigurationFile(const std::string& fileName);
    static std::optional<Json> jsonFromData(std::string_view data);
    void getCustomerWithInformation(const std::optional<Json>& information);

    // --- Queueing ---

    /// These throw std::invalid_argument without a name and for Check::invalidStatus.
    void putAppHealthCheck(const std::optional<std::string>& name, std::uint64_t checkStatus,
                           const std::optional<std::string>& checkStatusDetail);
    void putAppHardwareCheck(const std::optional<std::string>& name, std::uint64_t checkStatus,
                             const std::optional<std::string>& checkStatusDetail);
    void putAppCloudCheck(const std::optional<std::string>& name, std::uint64_t checkStatus,
                          const std::optional<std::string>& checkStatusDetail);
    /// `file` may be null: the check alone is sent then.
    void putAppDumpCheckWithFile(const std::shared_ptr<FileHandle>& file, std::uint64_t checkStatus,
                                 const std::optional<std::string>& checkStatusDetail);
    void putAppDumpCheckWithFiles(const FileHandles& files, std::uint64_t checkStatus,
                                  const std::optional<std::string>& checkStatusDetail);
    void putCheck(const std::shared_ptr<const Check>& check);
    /// A check of unknown type is logged and dropped. In the foreground the check goes to
    /// postChecksToCloud() at once, past the queue.
    void putCheck(const std::shared_ptr<const Check>& check, bool background);
    void queueCheck(const std::shared_ptr<const Check>& check);

    // --- Sending ---

    /// Sends what is queued, the latest first. Blocks until the queue is empty (or
    /// maximumQueuedChecks were taken, as others go on queueing) and, on the main thread, the
    /// request is on its way; called on another thread, the main thread sends it.
    void checkQueueFlushHandler();
    /// Sends nothing: the change of the queue's length between two readings, which is 0 unless
    /// somebody queues meanwhile.
    std::ptrdiff_t flushChecks();
    std::ptrdiff_t flushCheckQueue();
    /// Checks go back to the queue while settings are not in, and are dropped when the settings
    /// switch the feature off. Any thread; off the main thread, it continues there.
    void postChecksToCloud(const Checks& checks);

    /// Keeps the number; nothing is polled.
    void startPolling(std::uint64_t seconds);

    // --- Dumps ---

    /// Uploads the files as they are, one after the other; null throws as in uploadFile().
    void compressAndUploadDumpFiles(const FileHandles& files);
    /// Throws std::logic_error without a file. What becomes of it is logged. Waits for the uploads
    /// before it; fails when there is no `sdk`, or another one by then: a file is for one service.
    /// Neither the settings nor the feature's switch are asked.
    void uploadFile(const std::shared_ptr<FileHandle>& file);
    /// Makes no folder.
    static std::optional<std::string> buildTempFolderPath();
    /// Compresses nothing. Throws std::logic_error for an empty list.
    static std::optional<std::string> compressFiles(const FileHandles& files);
    static std::optional<std::string> compressFiles(const FileHandles& files,
                                                    const std::string& tempFileNamePrefix);

    void supportDidRetrieveSettings(const Json& response) override;

    /// Null until a configuration was read.
    std::shared_ptr<Support> sdk;
    Stack stack;
    std::uint64_t timeToWait = 5;
    std::optional<Json> customerInfo;

 protected:
    SupportSDKProactive(std::optional<Json> customerInfo, PlatformPtr platform);

 private:
    class Upload;

    void enqueue(const Checks& checks);
    static bool isTooMuch(const Check& check);
    void takeExcess(Checks& excess);
    Checks drain();
    void send(const Checks& checks);
    void uploadNext();
    void uploadDidEnd(bool isAnswered);
    void logFailedUpload(const std::string& why);
    void uploadDidSucceed(const Json& response);
    void uploadDidFail(const Json& response);

    const PlatformPtr platform_;
    /// Taken before the stack's own.
    std::mutex mutex_;
    bool isExcessLogged_ = false;  // under mutex_
    struct WaitingFile {
        std::weak_ptr<Support> destination;
        std::shared_ptr<FileHandle> file;
    };
    /// Files that wait for the upload before them: each one is in memory while it is sent.
    std::deque<WaitingFile> uploads_;
    bool isUploading_ = false;
};

}  // namespace supportsdk
