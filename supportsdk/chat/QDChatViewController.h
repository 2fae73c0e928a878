#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/chat/QDChatMessageEntryView.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/QuorrandChatDelegate.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Platform.h"

namespace supportsdk {

/// A chat's screen: hears the engine, owns the entry bar, and shows the lines of the engine's view
/// model. The engine holds its delegate weakly, so whoever shows the screen keeps it alive. Main
/// thread.
class SUPPORTSDK_API QDChatViewController : public ScreenController,
                                            public QuorrandChatDelegate,
                                            public QDChatMessageEntryViewDelegate {
 public:
    /// What the screen asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        /// Lines, groups or the typing indicator have changed: scroll to the newest line.
        virtual void reloadData() {}
        /// The entry bar's text or send button has changed.
        virtual void entryDidChange() {}
        /// Take the keyboard away.
        virtual void endEditing() {}
        /// The pull to refresh is over.
        virtual void stopRefresh() {}
        /// The list of suggestions, which has its place, comes into the view, and leaves it.
        virtual void addSuggestions(QDChatAutocompletionTableView& /*list*/) {}
        virtual void removeSuggestions(QDChatAutocompletionTableView& /*list*/) {}
        /// Whether the screen makes room for the on-screen keyboard by itself.
        virtual void enableKeyboardManager(bool /*enabled*/) {}
    };

    [[nodiscard]] std::string_view className() const override { return "QDChatViewController"; }

    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewDidAppear() override;
    void viewWillDisappear() override;
    void viewDidDisappear() override;

    // For hosts whose system tells that the application is going away and coming back; the kit
    // calls none of them.
    void applicationWillEnterBackground() { engine_->leaveRoom(); }
    void applicationDidEnterBackground() {}
    void applicationWillBecomeActive() { engine_->connect(); }
    void applicationDidBecomeActive() {}

    /// Connects, and joins the room of this screen; or of the chat that the engine is at, where
    /// that is another one.
    void connect();
    void disconnect();
    /// Leaves the room.
    void exitChat();
    void resetChat();
    void clear() { reloadData(); }
    /// Reloads soon.
    void refresh() { startReloadTimer(); }
    /// The user pulled the list: asks the room for its history, unless this chat is only read.
    void refreshLists();
    void reloadData();
    void addMessage(const std::shared_ptr<QuorrandChatMessage>& message);
    /// Shows that an answer is awaited.
    void addTypingMessage();
    /// The newest line by arrival; null when there is none.
    [[nodiscard]] std::shared_ptr<QuorrandChatMessage> lastMessage() const;

    // --- The entry bar (QDChatViewControllerEntry.cpp) ---

    /// Sends what stands in the entry bar, and empties it. What cannot go out stays, and the person
    /// is told why.
    void send();
    void enableSendButton(bool enabled);
    /// Adds the alias of a participant to what stands in the entry bar.
    void addMentionToInput(const std::optional<std::string>& resource);
    /// Asks again whom the entry bar may suggest.
    void resetMentionSuggestions();
    /// Lets the person choose pictures and sends them.
    virtual void attach() {}
    /// Does nothing: whether the room is joined shows when a line is sent.
    void checkRoomStatus() {}

    /// Many lines that come at once cause one reload; those that come without a pause one every
    /// 0.25 seconds.
    void startReloadTimer();
    void stopReloadTimer();

    /// An alert with the host application's name above `message`.
    void warn(const std::string& message);
    void alertWithTitle(const std::string& alertTitle, const std::string& message);
    /// The same for those who outlive the screen.
    static void alertWithTitle(const Platform& platform, const std::string& alertTitle,
                               const std::string& message);
    /// Tells the person why a line has not gone out. True when it has.
    static bool reportUnsent(const Platform& platform, ChatSend outcome);

    void chatDidConnect(QuorrandChat& chat, const ChatError& error) override;
    void chatDidFailToConnect(QuorrandChat& chat, const ChatError& error) override;
    void chatDidTimeoutConnect(QuorrandChat& chat, const ChatError& error) override;
    void chatDidNotAuthenticate(QuorrandChat& chat, const XmppStreamEnd& failure) override;
    void chatDidDisconnect(QuorrandChat& chat, const ChatError& error) override;
    void chatDidLoseConnection(QuorrandChat& chat) override;
    void chatDidNotSend(QuorrandChat& chat, const std::vector<std::string>& texts) override;
    void chatDidLoadPictures(QuorrandChat& chat) override;
    void chatDidReceiveMessage(QuorrandChat& chat,
                               const std::shared_ptr<QuorrandChatMessage>& message) override;
    void chatDidUpdateMessages(QuorrandChat& chat) override;
    void chatDidJoinRoom(QuorrandChat& chat, const std::shared_ptr<XmppRoom>& room,
                         const ChatError& error) override;
    void chatDidLeaveRoom(QuorrandChat& chat, const std::shared_ptr<XmppRoom>& room,
                          const ChatError& error) override;
    void chatDidTimeoutJoinRoom(QuorrandChat& chat, const std::shared_ptr<XmppRoom>& room,
                                const ChatError& error) override;
    void chatRefreshEligibleParticipants(QuorrandChat& chat) override;
    void chatDidTapAvatarForMessage(QuorrandChat& chat, const Message& message) override;
    void chatDidTapCallForMessage(QuorrandChat& chat, const Message& message) override;

    virtual void handleMessageTapped(const std::shared_ptr<QuorrandChatMessage>& /*message*/) {}

    void didChangeText(const std::string& text) override;
    void didSelectAttach() override;
    void didSelectSend() override { send(); }
    void didShowSuggestions(QDChatAutocompletionTableView& list) override;
    void didHideSuggestions(QDChatAutocompletionTableView& list) override;

    [[nodiscard]] QuorrandChat& engine() const { return *engine_; }

    std::weak_ptr<View> view;
    /// No texts about connecting and joining.
    bool silent = false;
    /// The title was set by the opener, and joining does not change it.
    bool titleProvided = false;
    /// No entry bar, no connection; the lines are transcripts.
    bool isReadOnly = false;
    /// Null when the screen was opened read-only.
    std::shared_ptr<QDChatMessageEntryView> entryView;
    /// Null until viewDidLoad(). Its picture may do more than `view`, which hears the same reloads.
    std::shared_ptr<QDChatCollectionView> collectionView;
    /// Given by the opener.
    std::optional<std::string> chatRoomTitle;
    /// For the entry bar.
    std::vector<std::string> mentionSuggestions;
    /// The room's JID.
    std::optional<std::string> muc;
    /// This user's key in the room.
    std::optional<std::string> resource;
    std::optional<std::string> participantId;
    std::optional<std::string> nickname;
    std::optional<std::string> senderId;
    std::optional<std::string> senderDisplayName;
    std::chrono::seconds timeoutChatConnect{30};

 protected:
    explicit QDChatViewController(std::shared_ptr<QuorrandChat> engine);

    /// A line has come: a chance to look after what it may have changed.
    virtual void handleIssueRefresh() {}
    /// Whether the engine is at the conversation of this screen: a screen that was left may live on
    /// while another chat is open. True also beside a chat of the past.
    [[nodiscard]] virtual bool ownsConversation() const { return true; }
    /// A chat that is read and no more, while the engine keeps the room of a live one: it must find
    /// back there with its own credentials.
    [[nodiscard]] bool isBesideRoom() const;

    [[nodiscard]] const Platform& platform() const { return *engine_->platform; }
    [[nodiscard]] std::string localized(const std::string& english) const;
    [[nodiscard]] std::string hostName() const;
    void showStatus(const std::string& english) const;
    void dismissProgress() const { platform().progress->dismiss(); }
    // A screen that has left the view leaves the progress to whatever is on view now.
    void showOwnStatus(const std::string& english) const;
    void dismissOwnProgress() const;
    /// A text about opening the chat, unless `silent`.
    void showOpeningStatus(const std::string& english) const;
    /// Sends a line to the room of this screen. False, and the person is told why, when it does not
    /// go out.
    bool sendLine(const std::string& text, bool sendOnly);
    /// This screen, for a callback that may outlive it.
    template <typename Screen>
    [[nodiscard]] static std::weak_ptr<Screen> weak(Screen* screen) {
        return std::static_pointer_cast<Screen>(screen->shared_from_this());
    }

 private:
    void putBack(const std::vector<std::string>& texts);

    const std::shared_ptr<QuorrandChat> engine_;
    bool hasLeftView_ = false;
    /// Of the participants that mentionSuggestions tell of.
    std::optional<std::uint64_t> mentionsRevision_;
    bool areSuggestionsInView_ = false;
    Registration reloadTimer_;
    /// From the first line that is not shown yet.
    Registration reloadDeadline_;
    Registration refreshTimer_;
};

}  // namespace supportsdk
