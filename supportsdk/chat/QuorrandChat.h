#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "supportsdk/chat/ChatAppearance.h"
#include "supportsdk/chat/ChatLineParts.h"
#include "supportsdk/chat/QDChatActionButton.h"
#include "supportsdk/chat/QDChatViewModel.h"
#include "supportsdk/chat/QuorrandChatDelegate.h"
#include "supportsdk/chat/RoomRecovery.h"
#include "supportsdk/chat/SentLines.h"
#include "supportsdk/chat/UnsentTexts.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Platform.h"
#include "supportsdk/theme/ChatImageReceiver.h"

namespace supportsdk {

class ChatPictures;
class QDChatActionButton;
class ImageLoader;
class NetworkWatch;
class QDChatCollectionView;
class Stanza;
class XmppLink;

/// Posted after each change of the unread count, with the count as its object and no user
/// information.
inline constexpr std::string_view unreadCountUpdatedNotification =
    "com.goquorrand.chat.unreadcountupdated";

/// What became of a line that was to be sent.
enum class ChatSend {
    /// On its way. It may still get lost; chatDidNotSend() tells.
    sent,
    /// Nothing was left of it once control characters were taken out.
    empty,
    /// It would make a stanza of more than maximumStanzaBytes.
    tooLong,
    /// Not in a room.
    offline
};

/// The chat engine: owns the XMPP stream, the room (XEP-0045), the keep-alive (XEP-0199), the
/// connect and join timers, the unread count, the emoticon tables and the chat's look. A screen
/// fills in credentials and calls connect(); every step comes back through the delegate. A lost
/// stream is connected again, and the room joined again, until somebody calls disconnect(); the
/// lines that were known then come back to the list with the first message of the room.
///
/// Main thread only; no callback runs inside a call, except where an operation reports a state that
/// it finds.
class SUPPORTSDK_API QuorrandChat : public std::enable_shared_from_this<QuorrandChat>,
                                    public ChatActionButtonDelegate,
                                    public ChatImageReceiver,
                                    public ChatParticipants {
 public:
    /// The process's engine: the living one, or a new one on `platform` when there is none. It
    /// lives as long as somebody holds it, as every Support does, so that the stream's thread ends
    /// with the kit and not among the process's static objects.
    static std::shared_ptr<QuorrandChat> sharedInstance(const PlatformPtr& platform);

    /// An engine beside the shared one.
    static std::shared_ptr<QuorrandChat> create(PlatformPtr platform);
    ~QuorrandChat() override;
    QuorrandChat(const QuorrandChat&) = delete;
    QuorrandChat& operator=(const QuorrandChat&) = delete;

    // --- Stream (QuorrandChatConnection.cpp) ---

    /// True when an attempt is under way or the stream is up. On a live stream it reports
    /// chatDidConnect() and joins; while one is connecting it starts no other. Who has left the
    /// room meanwhile wants to be in it again. False, without a report, when `jid` or `password` is
    /// absent.
    bool connect();

    /// Leaves the room and, unless `maintainConnection`, ends the stream, which is reported before
    /// and after.
    void disconnect();

    /// Authenticated on a live stream.
    [[nodiscard]] bool isConnected() const;

    // --- Room (QuorrandChatRoom.cpp) ---

    /// Enters the room (XEP-0045, 7.2) with up to 50 lines of its history. Reports at once, with a
    /// null room, when it is joined already. A refusal is logged, and heard as the join's time-out;
    /// a taken nickname, which may be one's own of a connection that the server takes for alive,
    /// and what the room calls temporary, is tried again every few seconds, also after the
    /// time-out. Another room is left first.
    void joinRoom(const std::optional<std::string>& roomJid,
                  const std::optional<std::string>& occupantNickname);
    /// Also ends the joining: a room that lets one in afterwards is left without a report.
    void leaveRoom();
    [[nodiscard]] bool isRoomJoined() const;
    /// Since the last connect() or joinRoom() nobody has left.
    [[nodiscard]] bool isRoomWanted() const { return joinWanted_; }

    /// "<history maxstanzas='50'/>".
    [[nodiscard]] std::shared_ptr<Stanza> historyStanza() const;
    /// Asks the room for its history again.
    void requestRoomHistory();

    /// Gives the list to this conversation. The lines of the room come back if they are its own;
    /// the room of another conversation is left without a report, and `muc` is to be set anew.
    void openConversation(const std::string& conversation);
    /// Gives the list, empty, to a conversation that is read and no more. The room goes on: its
    /// lines are kept until openConversation() asks for them.
    void openTranscripts(const std::string& conversation);
    /// Whether the engine is in a room or on its way to one.
    [[nodiscard]] bool hasRoom() const { return xmppRoom_ || link_; }

    /// Sends one line to the room. Control characters are removed and damaged UTF-8 becomes U+FFFD.
    /// Unless `sendOnly`, the delegate then gets a local echo; the list gets the line when the room
    /// reflects it. A line that is not reflected for 10 seconds has the connection checked.
    ChatSend sendGroupchatMessage(const std::string& text, bool sendOnly);
    /// A line for one user instead of the room (RFC 6121, 5.2.2).
    void sendMessage(const std::string& text, const std::string& user);
    /// Asks for the roster (RFC 6121, 2.1.3); its items go to the log.
    void fetchFriends();

    /// Makes the room outlive its last occupant: fills in `form` and sends it back to the room.
    void roomDidFetchConfigurationForm(XmppRoom& room, const Stanza& form);

    // --- Participants (QuorrandChatParticipants.cpp) ---

    /// Participant key to an object with the participant's details; nothing until they are known.
    [[nodiscard]] const std::optional<Json>& participantsEligible() const {
        return participantsEligible_;
    }
    void setParticipantsEligible(std::optional<Json> participants);
    void refreshEligibleParticipants();
    /// The aliases of the eligible participants and "@all", in the order of the user's language,
    /// ignoring case.
    [[nodiscard]] std::vector<std::string> createMentionSuggestions() const;
    /// A detail ("name", "alias", ...) of the participant whose key is `resource` up to its first
    /// ";". "" for an absent resource, an unknown participant and a null value; nothing when the
    /// participant has no such text.
    [[nodiscard]] std::optional<std::string> getInfoType(
        const std::string& type, const std::optional<std::string>& resource) const;
    /// Whether `resource`, up to its first ";", is an eligible participant; the key "chimebot"
    /// always is, and everybody with `ignoreParticipantStatus`.
    [[nodiscard]] bool isParticipant(const std::optional<std::string>& resource) const override;
    [[nodiscard]] std::uint64_t participantsRevision() const override;

    // --- Received traffic (QuorrandChatRoom.cpp) ---

    /// Takes one message of the room: drops it unless it is a valid line, else puts it into the
    /// list, counts it, and hands it to the delegate.
    void handleReceivedMessage(const std::shared_ptr<const Stanza>& stanza);
    /// Tells delegate and observers the unread count.
    void updateUnreadMessageCount();
    /// Null is not sent.
    void sendMessageToDelegate(const std::shared_ptr<QuorrandChatMessage>& message);
    /// Of a button whose delegate is the engine: tells the engine's delegate.
    void buttonDidPerformAction(QDChatActionButton& button, const std::string& action) override;
    /// A person tapped a part of a line: tells the delegate. False when the line has no such part.
    bool lineWasTapped(ChatLinePart part, const std::shared_ptr<QuorrandChatMessage>& message);
    /// Does nothing: the chat screen has its own.
    void addTypingMessage() {}

    // --- Resources (QuorrandChatResources.cpp) ---

    /// Gives the appearance its defaults again.
    void setDefaults();
    void setChatAttachmentButtonImage(ImagePtr image) override;
    void setChatSendButtonImage(ImagePtr image) override;
    [[nodiscard]] std::shared_ptr<Bundle> getBundle() const { return platform->kitBundle; }
    /// A resource of the kit as a file address, and as a path; nothing when it is missing.
    [[nodiscard]] std::optional<std::string> URLForResource(const std::string& name,
                                                            const std::string& extension) const;
    [[nodiscard]] std::optional<std::string> pathForResource(const std::string& name,
                                                             const std::string& type) const;
    /// Puts a picture among the person's own. False when the platform has no place for it.
    bool savePhotoToAlbum(const ImagePtr& photo);
    /// A picture of the kit by its file name; null when it is missing or damaged.
    [[nodiscard]] ImagePtr imageForResource(const std::string& fileName) const;
    /// The frames of an emoticon's picture; null when it is missing or damaged. Decoded once.
    [[nodiscard]] std::shared_ptr<const AnimatedImage> imageForEmoticon(
        const std::string& fileName) const;
    /// Loads the avatars of the chat's lines.
    [[nodiscard]] ImageLoader& imageLoader() { return *imageLoader_; }
    /// Tells the delegate that lines have got their pictures.
    void picturesDidLoad();
    [[nodiscard]] ChatPictures& pictures() { return *pictures_; }
    /// Fills the emoticon tables from the resource "Emoticons"; leaves them empty without it.
    void loadEmoticons();
    /// `text` as an HTML document with pictures in the place of its emoticons; nothing when it has
    /// none. The text is taken as HTML.
    [[nodiscard]] std::optional<std::string> htmlStringWithEmoticonsFromChatMessage(
        const std::string& text) const;
    [[nodiscard]] std::string getImgTagForImageName(const std::string& fileName) const;

    void setHttpHeaders(HttpHeaders headers) { httpHeaders = std::move(headers); }

    // --- State ---

    const PlatformPtr platform;

    /// disconnect() only leaves the room.
    bool maintainConnection = false;
    /// Received lines count as unread.
    bool postUnreadMessageCount = false;
    /// Copied onto each received line.
    bool showNotifications = false;
    bool hideAvatars = false;
    bool hideTextEntryAccessoryView = false;
    bool transparentMode = false;
    /// Everybody counts as a participant.
    bool ignoreParticipantStatus = false;
    /// A chat screen hands over to another one and will be back.
    bool isActionRequested = false;
    /// Nothing sets it.
    bool isOffline = false;
    /// Until the first line is sent.
    bool firstUse = true;
    bool connectTimeoutFired = false;
    /// The end of the stream that is closing was asked for.
    bool disconnectRequested = false;
    /// 0 none, 2 the agent is being waited for.
    std::int32_t typingType = 0;
    double avatarSize = 0;
    std::weak_ptr<QuorrandChatDelegate> delegate;
    std::uint64_t unreadMessageCount = 0;

    std::optional<std::string> server;
    std::optional<std::string> techCommId;
    std::optional<std::string> userid;
    std::optional<std::string> resource;
    /// Full JID, as issued by the service.
    std::optional<std::string> jid;
    /// The domain of `jid` when absent.
    std::optional<std::string> host;
    /// 0, and what is no port, mean 5222.
    std::int64_t port = 0;
    /// The conversation; the room of the view model.
    std::optional<std::string> commId;
    std::optional<std::string> password;
    std::optional<std::string> muc = "Lobby";
    /// For the connect timer, the join timer and the stream's attempt; taken as at least one second
    /// and at most a day.
    std::chrono::seconds timeout{30};
    /// In the room; also the sender key of one's own lines.
    std::optional<std::string> nickname;
    /// The sender key that marks a line as this user's.
    std::optional<std::string> me;

    /// A number or an array: what the user may press.
    std::optional<Json> userPermissions;
    /// What the list shows. Never null.
    std::shared_ptr<QDChatViewModel> viewModel;
    std::string avatarRetrievalAPIBaseURL;

    /// Image file name to an object whose "Equivalents" are its text forms.
    Json emoticons = Json::object();
    /// Text form to image file name.
    std::map<std::string, std::string> emoticonsByName;
    std::set<std::string> emoticonPredictors;
    /// All text forms, sorted ignoring case.
    std::vector<std::string> emoticonKeys;

    std::shared_ptr<QuorrandChatMessage> lastChatMessageReceived;
    std::weak_ptr<QDChatCollectionView> collectionView;
    /// Avatar pictures by address, for the life of the engine.
    std::map<std::string, ImagePtr> avatars;
    /// Keys of the action buttons pressed so far.
    std::vector<std::string> selectedActions;
    ImagePtr missingImage;
    /// Sent with every download of the chat.
    HttpHeaders httpHeaders;
    /// The room's JID while joined.
    std::optional<std::string> roomName;
    std::shared_ptr<UserDefaults> defaults;
    ChatAppearance appearance;

    // Held for hosts; the kit keeps its lines in the view model.
    std::vector<Json> transcriptHistory;
    Json chatHistory = Json::object();
    std::vector<Json> dateHistory;

 private:
    explicit QuorrandChat(PlatformPtr platform);

    bool startConnecting();
    bool openStream();
    void retire(std::shared_ptr<XmppLink> link);
    void dropStream();
    void networkDidChange();
    void linkDidAuthenticate(XmppLink& link);
    bool linkDidReceive(XmppLink& link, const std::shared_ptr<const Stanza>& stanza);
    void linkDidEnd(XmppLink& link, const XmppStreamEnd& end);
    void closingLinkDidEnd(const XmppStreamEnd& end);
    void didNotAuthenticate(const XmppStreamEnd& failure);
    void didReceiveIQ(const Stanza& iq);

    void startConnectTimer();
    void handleConnectTimeout(const ChatError& error);
    void startJoinRoomTimer();
    void handleJoinRoomTimeout();
    [[nodiscard]] std::chrono::milliseconds boundedTimeout() const;

    void sendStanza(std::string xml);
    std::shared_ptr<XmppRoom> makeRoom(const std::string& roomJid);
    std::shared_ptr<QDChatViewModel> makeViewModel();
    [[nodiscard]] QDChatViewModel& roomLines() { return aside_ ? *aside_ : *viewModel; }
    void dropRoom();
    void reportJoined(const std::shared_ptr<XmppRoom>& room);
    void roomDidJoin();
    void roomDidRefuseJoin(const Stanza& presence);
    void roomDidLeave(bool requested);
    void roomDidRefuseMessage(const Stanza& error);
    void roomDidReceive(const std::shared_ptr<const Stanza>& stanza);
    [[nodiscard]] bool fits(const Stanza& stanza) const;
    void echo(const std::shared_ptr<const Stanza>& stanza, const std::string& text);

    // After a lost connection (QuorrandChatRecovery.cpp)
    [[nodiscard]] ChatPlace place();
    void rememberLines();
    bool putLinesBack();
    void confirmSentLine(const Stanza& reflection);
    void historyDidEnd();
    void watchSentLine(const std::string& id, const std::string& text);
    [[nodiscard]] SentLines::Texts giveUpRecovery();
    void reportNotSent(const SentLines::Texts& texts);

    template <typename Operation, typename... Arguments>
    void tellDelegate(Operation operation, const Arguments&... arguments) {
        if (const auto listener = delegate.lock())
            (listener.get()->*operation)(*this, arguments...);
    }

    std::optional<Json> participantsEligible_;
    std::uint64_t participantsRevision_ = 0;
    const std::unique_ptr<ImageLoader> imageLoader_;
    const std::unique_ptr<ChatPictures> pictures_;
    /// By file name; null for those that cannot be shown.
    mutable std::map<std::string, std::shared_ptr<const AnimatedImage>> emoticonImages_;
    /// From connect() to disconnect().
    std::unique_ptr<NetworkWatch> networkStatus_;
    std::shared_ptr<XmppLink> link_;
    std::shared_ptr<XmppLink> closingLink_;
    std::shared_ptr<XmppRoom> xmppRoom_;
    /// The room's lines while the list shows another conversation; null while it shows them.
    std::shared_ptr<QDChatViewModel> aside_;
    /// Since the last connect() nobody has asked for the end of the stream.
    bool streamWanted_ = false;
    bool joinWanted_ = false;
    RoomRecovery recovery_;
    SentLines sentLines_;
    UnsentTexts unsentTexts_;
    Registration connectTimer_;
    Registration joinRoomTimer_;
    /// Until a refused join is tried again.
    Registration rejoinTimer_;
};

}  // namespace supportsdk
