#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/core/Support.h"
#include "supportsdk/core/SupportDelegate.h"
#include "supportsdk/launcher/SupportButtonBadge.h"
#include "supportsdk/launcher/SupportButtonDelegate.h"
#include "supportsdk/launcher/SupportMenuView.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Platform.h"

namespace supportsdk {

class ChatViewController;
class KBListViewController;
struct Notification;

/// The text that shows while an issue is fetched or created.
inline constexpr const char* kCreatingIssueText = "Starting Chat";

/// The port in the device's record on the local network.
inline constexpr std::uint16_t QDmDNSDefaultPort = 22666;

/// The one control that a host application embeds: it takes a configuration and what the host knows
/// of the customer, and on a tap opens a menu of the channels that the service's settings allow.
/// Every screen goes to the delegate, and the host decides how to show it.
///
/// Main thread only. Dropping the last reference ends everything that is under way, also inside a
/// delegate callback. So does loading another configuration: what was asked under the former one is
/// answered to nobody, and opens and stores nothing.
class SUPPORTSDK_API SupportButton : public SupportDelegate,
                                     public NetServiceDelegate,
                                     public std::enable_shared_from_this<SupportButton> {
 public:
    /// What the button asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        /// The badge appeared, disappeared or has another text; badgeGeometry() says where it lies.
        virtual void badgeDidChange(bool visible, const std::string& text) {
            (void)visible, (void)text;
        }
        /// Another icon; null when the kit has none.
        virtual void iconDidChange(const ImagePtr& icon) { (void)icon; }
    };

    /// Never null. Every slot of `platform` must be filled.
    static std::shared_ptr<SupportButton> create(PlatformPtr platform);
    /// The same with a file of the host's main bundle loaded; for a host that sets its delegate
    /// right behind, as every answer comes later.
    static std::shared_ptr<SupportButton> create(PlatformPtr platform, const std::string& fileName,
                                                 const Json& customerInfo);
    ~SupportButton() override;
    SupportButton(const SupportButton&) = delete;
    SupportButton& operator=(const SupportButton&) = delete;

    // --- Loading (SupportButton.cpp) ---
    //
    // Each starts the retrieval of the settings, which ends in supportButtonDidGetSettings or
    // supportButtonDidFailToGetSettingsWithError. A customer of JSON null means none.

    /// Reads the file of the host's main bundle. Always false, whatever the outcome: hosts have
    /// come to rely on the delegate alone.
    bool loadConfigurationFile(const std::string& fileName, const Json& customerInfo);
    /// False when `json` is no UTF-8 text; text that does not parse is ignored, and true.
    bool loadConfigurationJSON(const std::string& json, const Json& customerInfo);
    /// A customer that does not parse leaves the former one.
    bool loadConfigurationJSON(const std::string& json, const std::string& customerInfoJSON);
    bool loadConfigurationJSON(const std::string& json, const char* customerInfoJSON) {
        return loadConfigurationJSON(json, std::string(customerInfoJSON));
    }

    void initializeSDKWithJSON(const std::optional<Json>& json);
    static std::optional<Json> jsonFromData(const std::string& data);
    /// Applies a theme; returns why it does not parse, nothing on success or before a configuration
    /// was loaded.
    std::optional<std::string> configureWithJSON(const std::string& json);
    /// Makes the next settings count as new.
    void reset();

    // --- Customer (SupportButtonCustomer.cpp) ---

    /// Resolves the customer that the text describes; one that is no JSON object or array resolves
    /// the former one again. Nothing happens with a text that is not UTF-8.
    void getCustomerWithJSON(const std::string& json);
    /// Resolves the customer; nothing happens unless `information` is an object.
    void getCustomerWithInformation(const Json& information);
    /// Reports an error unless member, user and location are set on this object.
    void validateCustomerInformation();

    // --- Menu (SupportButtonMenu.cpp) ---

    /// The user tapped the button.
    void clicked();
    void click();
    void showMenu();
    void getMenuStyle();
    void createSupportEntries();
    void displayPopupMenu();
    void displayMenuView();
    void removePreviousMenuIfNecessary();
    void menuSelectionComplete();

    // --- Actions (SupportButtonActions.cpp) ---

    void actionChat();
    void actionWeb();
    void actionEmail();
    void actionPhone();
    void actionExit();
    /// The developer's settings.
    void actionSettings();
    [[nodiscard]] bool deviceCanMakePhoneCalls() const;
    /// Sends a request or an event on the event channel.
    void sendRequest(const std::string& request);

    // --- Channels with screens of their own (SupportButtonChannels.cpp) ---

    void actionCallMe();
    /// Asks the service for the customer's number, and opens call-me with it or without.
    void getCallbackNumber();
    /// Opens call-me. The JSON null object leaves the screen's own number; null and everything that
    /// is no text stand for no number.
    void callMe(const std::optional<Json>& number);
    void actionSearchKnowledge();
    void displayKnowledgeBase();
    /// Opens the list of forms, or the one form there is; without any they are fetched again, and
    /// nothing opens.
    void actionForms();
    void actionHistory();
    void actionJourneys();

    // --- Calls (SupportButtonCalls.cpp) ---

    /// Fetches a call's room, tells it to the screen broadcast, and says that sharing can start.
    void videoChatGet(const std::string& commId);
    /// Leaves the room where the screen broadcast looks for it; null removes what was there.
    void notifyRoom(const std::optional<std::string>& room,
                    const std::optional<std::string>& token);

    // --- Local network (SupportButtonAdvertising.cpp) ---

    /// Puts a record of this device on the local network, in place of a former one: the kit's
    /// version, the device and the integration, the pairs of `publicData` (an object), which win
    /// over those, and "private", which is `privateData` as a keyed hash and wins over everything.
    /// Keys are the same whatever their case.
    ///
    /// A public value that is no text is written as compact JSON, and null takes the pair away. A
    /// pair beyond 255 bytes is left out. What is hashed of the private data is a text as it is,
    /// else its compact JSON with sorted keys; null has no "private", nor has a button without a
    /// configuration, since that holds the key.
    ///
    /// False, and a line in the log, when no such service can be made. True is not yet success:
    /// that comes to the delegate.
    bool advertiseServiceWithPublicData(const Json& publicData, const Json& privateData);
    /// The same with the kit's own pairs alone, for a delegate of one's own.
    void registermDNSService(std::uint16_t port, std::weak_ptr<NetServiceDelegate> listener);
    /// The kit's own pairs; what has no value is not among them.
    [[nodiscard]] std::map<std::string, Bytes> createTXTDictionary() const;

    void netServiceDidPublish(NetService& published) override;
    void netServiceDidNotPublish(NetService& failed, const Json& errors) override;

    // --- Issue flow (SupportButtonIssues.cpp) ---

    void getOrCreateIssue();
    void checkForActiveIssue(const std::string& issueId);
    void createIssue();
    /// An issue of this device alone, for a chat without a network.
    void createTemporaryIssue();
    void displayChatWithIssue(const std::shared_ptr<QDIssue>& issue);
    [[nodiscard]] static bool isVideoUnavailable();

    // --- Dates (SupportButtonDates.cpp) ---

    /// The device's local time as "2026-01-31T12:00:30.000Z"; the Z is a letter, not a zone.
    [[nodiscard]] std::string fullDateString() const;
    /// The device's local time in a Unicode date pattern (UTS #35) of the numeric fields y, M, d,
    /// H, h, m, s and S, each with as many digits as it is repeated, and of quoted text. Everything
    /// else stands for itself.
    [[nodiscard]] std::string dateWithFormat(const std::string& format) const;

    // --- Notifications (SupportButton.cpp) ---

    void handleNotifications(const Notification& notification);
    void chatUnreadCountUpdated(const Notification& notification);
    /// The host moves the button to another place, or takes it away.
    void willMoveToSuperview();

    void supportDidRetrieveSettings(const Json& response) override;
    void supportDidFailToRetrieveSettings(const Json& response) override;

    // --- State ---

    // Options of the host.
    bool showLoginPrompt = false;
    bool isUndecorated = false;
    bool isSideBySideForms = false;
    /// Kept for hosts; nothing consults it.
    bool useSupportView = false;

    bool isSettingsRetrieved = false;
    std::weak_ptr<SupportButtonDelegate> delegate;
    std::weak_ptr<View> view;
    /// 0 and 1 popup, 2 buttons, 3 icon list, 4 icon list with an exit entry.
    int menuStyle = 0;
    /// Null before a configuration was loaded; another one with each.
    std::shared_ptr<Support> support;
    /// Null, or what the host said of the customer.
    std::optional<Json> customerInfo;
    std::shared_ptr<SupportMenuView> supportMenuView;
    /// The latest chat and the latest knowledge base that were opened.
    std::shared_ptr<ChatViewController> chatViewController;
    std::shared_ptr<KBListViewController> kbListViewController;
    /// The device's record on the local network; null when there is none.
    std::shared_ptr<NetService> service;
    /// For the host; nothing assigns it.
    std::shared_ptr<NetService> browser;
    std::vector<SupportMenuEntry> supportEntries;

    // For the host; only validateCustomerInformation() reads them.
    std::optional<std::string> memberID;
    std::optional<std::string> memberUserID;
    std::optional<std::string> memberLocationID;

    [[nodiscard]] const ImagePtr& icon() const { return icon_; }
    [[nodiscard]] bool isBadgeVisible() const { return isBadgeVisible_; }
    [[nodiscard]] const std::string& badgeText() const { return badgeText_; }

 private:
    explicit SupportButton(PlatformPtr platform);

    void setup();
    void replaceSupport(const Json& json);
    void takeCustomer(const std::string& json);
    void setIcon(ImagePtr icon);
    void showBadge(bool visible, const std::string& text);
    void hideBadge();
    void tellSettingsAreIn();
    void displayScreen(std::shared_ptr<ScreenController> screen);
    void openAddress(const std::string& address, const char* description, const char* reason);

    /// What an answer of the present Support is handed to.
    using AnswerHandler = void (SupportButton::*)(const Json& response);
    /// Nothing runs once the button is gone or has another configuration.
    [[nodiscard]] RestCallback unlessReloaded(AnswerHandler handler);
    /// The same, but the progress text goes in any case, or it would stay for ever.
    [[nodiscard]] RestCallback afterDismissal(AnswerHandler handler);
    void customerResolved(const Json& response);
    void customerNotResolved(const Json& response);
    void createIssueSucceeded(const Json& response);
    void createIssueFailed(const Json& response);
    void activeIssueFetched(const Json& response);
    void activeIssueMissing(const Json& response);
    void callbackNumberFetched(const Json& response);
    void callbackNumberMissing(const Json& response);
    void callRoomFetched(const Json& response);
    void callRoomMissing(const Json& response);
    [[nodiscard]] std::shared_ptr<NetService> makeService(
        std::uint16_t port, std::weak_ptr<NetServiceDelegate> listener) const;

    [[nodiscard]] SupportError makeError(const std::string& description,
                                         const std::optional<std::string>& reason) const;
    void failWithDescription(const std::string& description,
                             const std::optional<std::string>& reason);

    const PlatformPtr platform_;
    std::vector<Registration> observations_;
    ImagePtr icon_;
    bool isBadgeVisible_ = false;
    std::string badgeText_;
};

}  // namespace supportsdk
