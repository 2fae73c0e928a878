#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "supportsdk/core/Identity.h"
#include "supportsdk/core/Settings.h"
#include "supportsdk/core/SupportDelegate.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Platform.h"

namespace supportsdk {

class Appearance;
class Check;
class Configuration;
class FileHandle;
class HistoryDelegate;
class HistoryViewModel;
class JourneyModel;
class KBViewModel;
class QDFormModel;
class QDIssue;
class QuorrandChat;
class SupportButton;

/// Name and identifier under which the kit knows itself.
inline constexpr std::string_view SUPPORT_SDK_NAME = "SupportSDK";
inline constexpr std::string_view FRAMEWORK_BUNDLE_ID = "com.goquorrand.supportsdk";

/// The response dictionary: on success the decoded JSON object with "status" set to the HTTP
/// status; on failure the response's header fields with "status" (0 without a response) and
/// "message". Always an object.
using RestCallback = std::function<void(const Json& response)>;

/// The facade: one for each configured button. It holds configuration, theme, identity and the
/// switches of the settings, and makes every REST call. Main thread only.
///
/// The operations of a subsystem are declared here and defined in that subsystem's folder.
class SUPPORTSDK_API Support : public std::enable_shared_from_this<Support> {
 public:
    /// Creates the facade and starts the retrieval of the settings, which ends in the delegate. A
    /// developer's configuration stored on this device wins over `dictionary`. Blocks while the
    /// button's image is loaded, when the configuration names one. `delegate` may be empty.
    static std::shared_ptr<Support> create(const Json& dictionary,
                                           std::weak_ptr<SupportDelegate> delegate,
                                           PlatformPtr platform);
    ~Support();
    Support(const Support&) = delete;
    Support& operator=(const Support&) = delete;

    // --- Bootstrap (core/Support.cpp) ---

    /// The JSON of a file of the host's main bundle: "name" or "name.type", where no type means
    /// json. Null when the bundle has no identifier, or the file is missing or does not parse.
    static std::optional<Json> jsonFromFile(const Platform& platform, const std::string& fileName);

    /// Puts a configuration on trial: it stays if its settings can be retrieved, else the former
    /// one comes back. Null does nothing.
    void reloadWithJSON(const std::optional<Json>& dictionary);
    void configureWithJSON(const std::optional<Json>& dictionary);
    /// Forgets a developer's configuration and goes back to the host's.
    void restoreDefaultConfiguration();

    /// Another configuration has taken this one's place: answers that are still under way reach
    /// their callbacks but neither the delegate, nor what is stored, nor the look of the process.
    void retire();
    [[nodiscard]] bool isRetired() const { return isRetired_; }

    /// Whether the API host is exactly the production host of the deployment.
    [[nodiscard]] bool isProduction() const;
    [[nodiscard]] std::optional<std::string> getHost() const;
    [[nodiscard]] ImagePtr getButtonImage() const;
    /// The configuration's integration; "" counts as present.
    [[nodiscard]] std::optional<std::string> providerId() const;
    [[nodiscard]] bool hasProviderId() const;
    /// What the service is told about this kit, system and integration.
    [[nodiscard]] std::string clientAppIdentifier() const;

    /// Stores the host application's version and build, in the keys of the kit's too.
    static void saveVersionInformation(const Platform& platform);
    /// Whether the host application's version or build differs from those of the latest start; true
    /// at the very first.
    static bool isNewAppVersion(const Platform& platform);
    /// True when the kit's version and build equal the stored ones: the reverse of the name.
    static bool isNewSDKVersion(const Platform& platform);
    /// The usage descriptions that the host's main bundle lacks; empty when all are there.
    [[nodiscard]] std::vector<std::string> validateInfoPlistKeys() const;

    /// The screen on top of the application; null without a root controller.
    static std::shared_ptr<ScreenController> topViewController(const Platform& platform);
    static std::shared_ptr<ScreenController> topViewController(
        std::shared_ptr<ScreenController> controller);

    static std::optional<std::string> stringFromDictionary(const Json& dictionary,
                                                           std::string_view key);
    static std::optional<double> numberFromDictionary(const Json& dictionary, std::string_view key);

    [[nodiscard]] bool isProactiveEnabled() const { return features.supportProactiveEnabled; }

    // --- REST transport (core/SupportRest.cpp) ---

    /// GET `endpoint` + `uri` at the configured host; without an endpoint `uri` is the whole
    /// address. `parameters` (object or null) become the query. `completion` runs exactly once, on
    /// the main thread, never inside the call, and also when this object is gone by then.
    void executeGet(const std::string& uri, const std::optional<std::string>& endpoint,
                    const Json& parameters, RestCallback completion);
    /// POST with `parameters` as the JSON body.
    void executePost(const std::string& uri, const std::string& endpoint, const Json& parameters,
                     RestCallback completion);
    /// POST of one file part ("file-data", "image", image/jpeg) with `parameters` as form fields
    /// (RFC 7578).
    void executePost(const std::string& uri, const std::string& endpoint,
                     std::span<const std::byte> data, const Json& parameters,
                     RestCallback completion);

    /// The headers of the next request, freshly built; `headers` and the chat engine get the same.
    HttpHeaders getHeaders();
    /// A request to the whole address `uri`, ready but for its method and body.
    HttpRequest getManagerWithUri(const std::string& uri);
    /// Takes the download token of a successful response: one without ends the one that is held.
    /// Returns the response's header fields.
    HttpHeaders processHeadersForOperation(const HttpResponse& response);
    /// The header fields of a failed response, and its header "message", "" when there is none.
    /// Nothing in the kit needs them.
    static HttpHeaders getServerFailureResponseForOperation(const HttpResponse& response);
    static std::string getServerFailureMessageForOperation(const HttpResponse& response);
    /// Logs how long `event` took since `date`.
    void elapsedTimeSince(Clock::Time date, const std::string& event, bool success) const;
    /// HMAC-SHA-256 of `text` with the key `salt`, in Base64.
    static std::string hmacSha256(std::string_view text, std::string_view salt);
    /// hmacSha256() with the configuration's private key.
    [[nodiscard]] std::string encodeString(std::string_view text) const;
    /// The present moment, as "2026-01-31T12:00:00+01:00".
    [[nodiscard]] std::string iso8601Date() const;

    // --- Settings (core/SupportSettings.cpp) ---

    /// Retrieves the settings unless they are in; reports to the delegate.
    void getSettings();
    void processSettings(const Json& response);
    void processV1Settings(const Json& response);
    void processV2Settings(const Json& advanced);
    /// Switches the nine channels off, and nothing else.
    void disableAllComponents();

    /// Opens the credential block of an issue: Base64 of AES ciphertext under the API key. Null
    /// when it is missing or cannot be opened.
    [[nodiscard]] std::optional<Json> extractXmppInformation(
        const std::optional<std::string>& text) const;
    /// AES-256-CBC with PKCS#7 padding and a zero initialization vector. Not the inverse of the
    /// next one.
    static std::optional<Bytes> AES256Encrypt(std::span<const std::byte> data,
                                              std::string_view key);
    /// AES-256-ECB without padding; null unless the data is whole blocks.
    static std::optional<Bytes> AES256Decrypt(std::span<const std::byte> data,
                                              std::string_view key);
    /// AES-256-CBC with PKCS#7 padding.
    static std::optional<Bytes> AES256Decrypt(std::span<const std::byte> data, std::string_view key,
                                              std::span<const std::byte, 16> iv);

    // --- Identity (core/SupportIdentity.cpp) ---

    /// Takes the settings' default member: keys that are missing clear their field. Null does
    /// nothing.
    void setMemberInfo(const std::optional<Json>& dictionary);
    /// Stores what is known of the identity; never removes anything.
    void saveMemberInfo();
    /// Whether member, user and location are set; the JSON null object counts as set.
    [[nodiscard]] bool isMemberSet() const;
    /// Resolves the customer with what the host knows of it.
    void getCustomer(const Json& information, RestCallback success, RestCallback failure);
    void getCallbackNumber(RestCallback success, RestCallback failure);

    // --- Issues (launcher/SupportIssues.cpp) ---

    /// Both texts may be null. Call only when isMemberSet() holds.
    void createIssueWithCallbackNumber(const std::optional<std::string>& number,
                                       const std::optional<std::string>& description,
                                       RestCallback success, RestCallback failure);
    void getIssue(const std::string& issueId, RestCallback success, RestCallback failure);
    void rateIssue(const std::string& issueId, std::int64_t rating,
                   const std::optional<std::string>& description, RestCallback success,
                   RestCallback failure);
    void resolveIssue(const std::string& issueId, RestCallback success, RestCallback failure);
    void cancelIssue(const std::string& issueId, RestCallback success, RestCallback failure);
    /// Fetches the issue again; afterwards rateableIssueId is its id when it is finished, else
    /// null.
    void refreshIssue(const std::optional<std::string>& issueId);
    /// The issue stored on this device; sets currentIssueId and xmppdata on the way.
    std::shared_ptr<QDIssue> loadCurrentIssue();
    void saveCurrentIssue(const std::shared_ptr<QDIssue>& issue);
    void clearCurrentIssue();
    /// Opens the rating of `rateableIssueId` over the screen on top. A failure is reported to the
    /// button's delegate.
    void displayRatingScreenFromButton(const std::shared_ptr<SupportButton>& button);

    // --- History (launcher/SupportHistory.cpp) ---

    /// Fetches the issues of the customer's location and tells historyDelegate; nobody is told of a
    /// request that failed. Does nothing unless history is enabled.
    void getHistory();
    void updateHistoryDelegateWithModel(const std::shared_ptr<HistoryViewModel>& model);

    // --- Chat (chat/SupportChat.cpp) ---

    void chatGet(const std::string& commId, RestCallback success, RestCallback failure);
    void chatPut(RestCallback success, RestCallback failure);
    void chatEnter(const std::string& commId, RestCallback success, RestCallback failure);
    void chatExit(const std::string& commId, const Json& durationStart, const Json& durationAdd,
                  RestCallback success, RestCallback failure);
    /// Sends `image` as JPEG, which is made in the background. `failure` runs with a "message" when
    /// it has no pixels. Neither runs once this object is gone before the request has begun.
    void chatFilePut(const std::string& commId, ImagePtr image, RestCallback success,
                     RestCallback failure);

    // --- Knowledge base (knowledge/SupportKnowledge.cpp) ---

    /// The article with that identifier, or everything when it is null.
    void retrieveKB(const std::optional<std::string>& identifier, RestCallback success,
                    RestCallback failure);
    /// The text stands in the address as it is.
    void searchKB(const std::optional<std::string>& text, RestCallback success,
                  RestCallback failure);
    /// Fetches the tree into kbViewModel and tells `listener`, which may be empty.
    void getKB(std::weak_ptr<SupportDelegate> listener);
    void searchKB(std::weak_ptr<SupportDelegate> listener, const std::optional<std::string>& text);
    static void updateKBDelegate(const std::weak_ptr<SupportDelegate>& listener,
                                 const std::shared_ptr<KBViewModel>& model);

    // --- Forms (forms/SupportForms.cpp) ---

    /// The form with that identifier; what the service chooses when it is null.
    void getForm(const std::optional<std::string>& identifier, RestCallback success,
                 RestCallback failure);
    /// Fetches every form that the settings name, all at once, and tells formsDelegate when the
    /// last answer is in. Does nothing while a batch is running.
    void getSupportForms();
    void checkIfFormsDone();
    void sortForms();
    /// Sends a filled form. With null, failure runs with null at once and the request still goes
    /// out.
    void putForm(const std::shared_ptr<QDFormModel>& form, RestCallback success,
                 RestCallback failure);
    /// The third form, when there are as many.
    [[nodiscard]] std::shared_ptr<QDFormModel> currentForm() const;

    // --- Journeys (knowledge/SupportJourneys.cpp) ---

    /// Only the latest request fills the list; `completion` runs once its own answer is in,
    /// whatever that was, and never after this object is gone.
    void getJourneysWithCompletion(std::function<void()> completion);

    // --- Diagnostics (proactive/SupportProactive.cpp) ---

    /// Neither callback runs when the response is no object or cannot be read.
    void postChecks(const std::vector<std::shared_ptr<const Check>>& checks, RestCallback success,
                    RestCallback failure);
    /// Sends what is left of the file, which is read in the background. `failure` runs with a
    /// "message" when that fails. Neither runs once this object is gone before the request has
    /// begun.
    void upload(std::shared_ptr<FileHandle> file, RestCallback success, RestCallback failure);

    /// The two rules by which typed calls choose their callback: strict wants "status" to be 200,
    /// lenient also takes a response without one.
    static RestCallback strictly(RestCallback success, RestCallback failure);
    static RestCallback leniently(RestCallback success, RestCallback failure);

    // --- State ---

    const PlatformPtr platform;
    std::weak_ptr<SupportDelegate> delegate;

    std::shared_ptr<Configuration> config;
    std::shared_ptr<Appearance> appearance;
    /// The process's chat engine; kept alive by every Support.
    std::shared_ptr<QuorrandChat> chat;

    std::string endpoint = "/sdk/v1";
    std::optional<std::string> supportSDKName;
    std::optional<std::string> supportSDKVersion;
    std::optional<std::string> supportSDKBuild;
    /// Never assigned; the mDNS record reads them all the same.
    std::optional<std::string> sdkName;
    std::optional<std::string> osVersion;

    HttpHeaders headers;
    std::optional<std::string> downloadSessionToken;

    bool isCloudConfigComplete = false;
    Features features;
    Identity identity;

    std::optional<std::string> currentIssueId;
    /// For the host; nothing assigns the two issues, only their ids.
    std::shared_ptr<QDIssue> currentIssue;
    std::optional<std::string> rateableIssueId;
    std::shared_ptr<QDIssue> rateableIssue;
    /// The credential block of the stored issue.
    std::optional<std::string> xmppdata;
    /// The issues of the customer's location; empty from the start of a request until its list is
    /// in, and after one that failed. historyViewModel keeps the last list.
    std::vector<std::shared_ptr<QDIssue>> historyEntries;
    bool isHistoryRequested = false;
    /// Another one with each retrieval; null before the first.
    std::shared_ptr<HistoryViewModel> historyViewModel;
    std::weak_ptr<HistoryDelegate> historyDelegate;

    std::shared_ptr<KBViewModel> kbViewModel;
    bool isKBRequested = false;

    std::vector<std::shared_ptr<QDFormModel>> forms;
    bool isFormsRequested = false;
    /// The requests of the latest batch, and the answers that have come to them.
    std::size_t nFormsRequested = 0;
    std::size_t nFormRetrievalAttempts = 0;
    std::weak_ptr<SupportDelegate> formsDelegate;

    /// Empty while they are fetched.
    std::vector<std::shared_ptr<JourneyModel>> journeys;

    // Options of the host, handed on by the button.
    bool isSideBySideForms = false;
    bool isUndecorated = false;

 private:
    Support(std::weak_ptr<SupportDelegate> delegate, PlatformPtr platform);

    void setup();
    void tryConfiguration(const std::optional<Json>& dictionary);
    void execute(HttpRequest request, RestCallback completion);
    /// The POST that all others are; "" as `contentType` leaves the header out.
    void post(const std::string& uri, const std::string& endpoint, const std::string& contentType,
              Bytes body, RestCallback completion);
    void settingsDidArrive(const Json& response);
    [[nodiscard]] CallMeTexts callMeTexts() const;
    void apply(const ReadSettings& settings);
    void customerDidResolve(const Json& response);
    void createAppearance();                                             // theme/SupportTheme.cpp
    void applyTheme(const ChannelTitles& titles, const Json& settings);  // theme/SupportTheme.cpp
    void attachChat();                                                   // chat/SupportChat.cpp
    void shareHeadersWithChat();                                         // chat/SupportChat.cpp
    void historyDidArrive(const Json& response,
                          std::uint64_t request);  // launcher/SupportHistory.cpp
    void journeysDidArrive(const Json& response);  // knowledge/SupportJourneys.cpp

    std::uint64_t latestHistoryRequest_ = 0;
    /// Whose list is in historyViewModel.
    std::uint64_t shownHistoryRequest_ = 0;
    std::uint64_t latestJourneysRequest_ = 0;
    bool isRetired_ = false;
};

}  // namespace supportsdk
