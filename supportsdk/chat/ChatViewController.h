#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "supportsdk/chat/ChatCompanions.h"
#include "supportsdk/chat/QDChatViewController.h"
#include "supportsdk/chat/QDConnectChat.h"
#include "supportsdk/core/QDIssue.h"
#include "supportsdk/core/Support.h"

namespace supportsdk {

class BaseWebViewController;
struct Notification;

/// The chat of one support issue: opens it with the issue's credentials, enters and exits it on the
/// service, falls back to transcripts, and resolves the issue at the end. Main thread.
class SUPPORTSDK_API ChatViewController : public QDChatViewController {
 public:
    /// Neither may be null. The opener sets `chatRoomTitle` and its other options before
    /// viewDidLoad().
    static std::shared_ptr<ChatViewController> create(std::shared_ptr<Support> support,
                                                      std::shared_ptr<QDIssue> issue);

    [[nodiscard]] std::string_view className() const override { return "ChatViewController"; }

    /// Gives the theme's colours to the engine.
    void configureAppearance();
    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewWillDisappear() override;
    void viewDidDisappear() override;

    // --- Opening (ChatViewControllerOpening.cpp) ---

    void setChatTitle();
    /// Takes the decrypted credential block.
    void setXmppInfo(const Json& information);
    void setupChat();
    void chatGet(const std::string& commId);
    void createChatRecord(const Json& response);
    void chatEnter(const std::string& commId);
    void chatExit(const std::string& commId);
    void chatRefreshEligibleParticipants(QuorrandChat& chat) override;

    // --- Read-only chats (ChatViewControllerTranscripts.cpp) ---

    /// Shows the issue's transcripts of that conversation.
    void getTranscripts(const std::string& commId);

    // --- Leaving (ChatViewControllerEnding.cpp) ---

    /// "End Chat".
    void cancel();
    void resolveIssueIfPossible();
    void resolveIssue();
    void cancelIssue();
    void displayResolveFailureWithMessage(const std::string& message);
    /// Forgets the issue, leaves the room and the screen.
    void exitIssue();
    void exit();
    /// Leaves the screen; the chat goes on in the background.
    void backButtonPressed();
    void done() { backButtonPressed(); }
    void handleNotifications(const Notification& notification);
    /// Sends the request that ends in cancel().
    void testCancel();

    // --- Buttons and taps (ChatViewControllerActions.cpp) ---

    void handleButtonAction(const std::optional<std::string>& action,
                            const std::optional<std::string>& label,
                            const std::shared_ptr<QuorrandChatMessage>& message) override;
    void chatDidTapMessageForMessage(QuorrandChat& chat, const Message& message) override;
    void chatDidTapAttachmentForMessage(QuorrandChat& chat, const Message& message) override;
    void chatDidTapKBForMessage(QuorrandChat& chat, const Message& message) override;
    void handleMessageTapped(const std::shared_ptr<QuorrandChatMessage>& message) override;
    /// The object is a line of the list; anything else is ignored.
    void messageTapped(const Notification& notification);
    /// Opens the attachment of a line in a web screen.
    void showAttachment(const std::shared_ptr<QuorrandChatMessage>& message);

    // --- Attachments (ChatViewControllerAttachments.cpp) ---

    /// Warns before the room is joined. Nothing is sent when the person chooses nothing.
    void attach() override;
    /// Sends one picture, scaled, to the service, and the line that it answers to the room.
    void handleAttachment(const ImagePtr& image);

    // --- Articles (ChatViewControllerKnowledge.cpp) ---

    /// Fetches that article and shows it.
    void retrieveKB(const std::string& articleId);
    /// Pushes the article, unless this screen is not on view any more.
    void showKBViewController();

    // --- Calls (ChatViewControllerCalls.cpp) ---

    /// Asks how to join the call of an invitation.
    void joinVideoChat(const std::string& room);
    void videoChatGet(const std::string& room);
    void startVideoChatWithRoom(const std::string& room, const std::string& token);
    void startAppScreenSharingWithRoom(const std::string& room, const std::string& token);
    /// Leaves room and token where the screen broadcast finds them.
    void startDeviceScreenSharingWithRoom(const std::string& room, const std::string& token);

    // For hosts; the kit calls none of them.

    /// Asks what of the screen to share, and shares it in the room of this chat's record. `info` is
    /// not looked at.
    void selectChatTypeWithInfo(const Json& info);
    /// Asks before follow().
    void confirmConnectLaunch();
    /// Opens the issue in the application of the support staff.
    void follow();
    /// Tells observers of notification::roomInformation.
    static void notifyRoom(const std::string& room, const std::string& token);

    const std::shared_ptr<Support> support;
    /// Null once the chat has ended.
    std::shared_ptr<QDIssue> issue;
    std::shared_ptr<QDConnectChat> chatRecord;
    std::optional<std::string> comm_id;
    bool isVideoUnavailable = false;
    /// The picture shows a button for follow(); nothing in the kit sets it.
    bool showConnectButton = false;
    /// The page of the article shown last; empty before the first.
    std::shared_ptr<BaseWebViewController> kbViewController;
    /// On view.
    bool showing = false;
    /// Entered on the service.
    bool commEntered = false;
    bool isScreenShare = false;
    /// Once chosen, it stays chosen for later screen shares from this screen.
    bool isSharingEntireDevice = false;
    /// What other subsystems add; without one, what it would do is not done.
    std::shared_ptr<ChatRating> rating;
    std::weak_ptr<ChatCalls> calls;

 protected:
    void handleIssueRefresh() override;
    [[nodiscard]] bool ownsConversation() const override { return engine().commId == comm_id; }

 private:
    ChatViewController(std::shared_ptr<Support> support, std::shared_ptr<QDIssue> issue);

    /// Takes the issue's credentials. False when there is no conversation to open.
    bool findConversation();
    void showBarButtons();
    void repaintButtons() const;
    void chatGetFailed(const std::string& commId);
    void takeParticipants(const QDConnectChat& record);
    [[nodiscard]] bool holdsRoomLines() const;
    void presentWebPage(const std::string& url, const std::string& backLabel, bool showsProgress);
    void articleDidArrive(const Json& response);
    void articleIsMissing(const std::string& message);
    void upload(std::vector<PhotoItem> items);
    /// A callback of this screen that does nothing once the screen is gone, the chat has ended, or
    /// the engine is at another conversation.
    template <typename Callback>
    [[nodiscard]] auto whileOpen(Callback callback) {
        return [weak = weak(this), callback = std::move(callback)](auto&&... arguments) {
            const auto self = weak.lock();
            if (self && self->issue && self->ownsConversation())
                callback(std::forward<decltype(arguments)>(arguments)...);
        };
    }
    [[nodiscard]] bool isNewest(const QuorrandChatMessage& message) const;
    /// Runs `show`, which lays a page of this chat over it.
    void handOver(const std::function<void()>& show);

    Registration requests_;
    /// While the issue has just been refreshed.
    Registration refreshTimer_;
    bool refreshAgain_ = false;
    /// Its view goes because an article or a web page of this chat lies over it.
    bool isHandingOver_ = false;
};

}  // namespace supportsdk
