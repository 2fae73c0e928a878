#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "supportsdk/chat/ChatLineParts.h"
#include "supportsdk/chat/RareText.h"
#include "supportsdk/chat/StyledText.h"
#include "supportsdk/chat/xmpp/ChatState.h"
#include "supportsdk/platform/Clock.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Platform.h"

namespace supportsdk {

class QDChatActionButton;
class QDChatButtonCollectionView;
class QuorrandChat;
class Stanza;
struct ChatEnvelope;

/// What a line is, first of all. A line with action buttons is one of these too.
enum class ChatMessageType : std::int64_t { CallInvitation, Attachment, KnowledgeBase, Text };

/// One line of a chat: a room's message stanza, a transcript record of the service, or a stored
/// dictionary. Mutable while it is built, and finished once a create operation has returned; after
/// that only `showNotifications`, `disabled`, its buttons, its pictures when they have come,
/// `cellSize`, `isMe` of a transcript line, and the fields that the engine fills in on a local echo
/// change. Main thread.
class SUPPORTSDK_API QuorrandChatMessage
    : public std::enable_shared_from_this<QuorrandChatMessage> {
 public:
    /// A line without content, to be filled in by hand.
    static std::shared_ptr<QuorrandChatMessage> create(QuorrandChat& chat);
    /// A line from a `message` stanza; isValidMessage tells whether it is one to show. Never null.
    static std::shared_ptr<QuorrandChatMessage> createWithXMPPMessage(
        QuorrandChat& chat, std::shared_ptr<const Stanza> stanza);
    /// The same without validation and completion: the stanza's fields as they are, and a date only
    /// if it carries one.
    static std::shared_ptr<QuorrandChatMessage> createBasicWithXMPPMessage(
        QuorrandChat& chat, std::shared_ptr<const Stanza> stanza);
    /// A line from a transcript record ("from", "message", "from_avatar", "sent"). It is not
    /// validated, has no sender, and its type is never determined.
    static std::shared_ptr<QuorrandChatMessage> createWithTranscript(QuorrandChat& chat,
                                                                     const Json& record);
    /// A line from what dict() gave.
    static std::shared_ptr<QuorrandChatMessage> createWithDict(QuorrandChat& chat,
                                                               const Json& dictionary);
    /// A line from what archive() gave, as it was: neither validated nor completed. Its nickname
    /// does not come back.
    static std::shared_ptr<QuorrandChatMessage> createWithArchive(QuorrandChat& chat,
                                                                  const Json& archive);
    /// Of more than these in one line the first stay: stanzas have room for a hundred thousand.
    static constexpr std::size_t maximumActions = 250;

    QuorrandChatMessage(const QuorrandChatMessage&) = delete;
    QuorrandChatMessage& operator=(const QuorrandChatMessage&) = delete;
    ~QuorrandChatMessage();

    /// The body of the one JSON message that the kit itself sends: a button's address back to the
    /// bot whose line, `source`, carried it. The room's reflection of it is no valid line.
    [[nodiscard]] static std::string createJSONMessage(const std::string& message,
                                                       const std::string& sender,
                                                       const std::string& source);
    /// Lower-case hexadecimal MD5 (RFC 1321) of the text up to its first zero byte.
    [[nodiscard]] static std::string MD5(std::string_view text);
    /// The "message" of a JSON object, nothing where that is no text; of any other text itself.
    [[nodiscard]] static std::optional<std::string> preprocessMessage(const std::string& text);
    /// Every "+" becomes a blank, then percent escapes (RFC 3986) are decoded. Nothing when one is
    /// damaged or the outcome is not UTF-8.
    [[nodiscard]] static std::optional<std::string> URLDecodeString(std::string_view text);
    /// The value if it is of that type.
    [[nodiscard]] static std::optional<std::string> stringFromDict(const Json& dictionary,
                                                                   std::string_view key);
    [[nodiscard]] static std::optional<double> numberFromDict(const Json& dictionary,
                                                              std::string_view key);

    /// The stanza that the line came from, made anew from `xml`; null on transcript and dictionary
    /// lines. A tree for each line of a long chat would be most of its memory.
    [[nodiscard]] std::shared_ptr<const Stanza> xmppMessage() const;
    // Chat states that came with the stanza; all false without one.
    [[nodiscard]] bool hasChatState() const { return !chatStates_.isEmpty(); }
    [[nodiscard]] bool hasActiveChatState() const { return chatStates_.has(ChatState::active); }
    [[nodiscard]] bool hasComposingChatState() const {
        return chatStates_.has(ChatState::composing);
    }
    [[nodiscard]] bool hasPausedChatState() const { return chatStates_.has(ChatState::paused); }
    [[nodiscard]] bool hasInactiveChatState() const { return chatStates_.has(ChatState::inactive); }
    [[nodiscard]] bool hasGoneChatState() const { return chatStates_.has(ChatState::gone); }
    /// Nobody sends words with such a one.
    [[nodiscard]] bool hasChatStateBesidesComposing() const {
        return chatStates_.hasBesides(ChatState::composing);
    }

    [[nodiscard]] bool isAttachmentMessage() const { return url && !url->empty(); }
    [[nodiscard]] bool isCallInvitationMessage() const { return callId && !callId->empty(); }
    [[nodiscard]] bool isChatButtonMessage() const { return !chatActionButtons.empty(); }
    [[nodiscard]] bool isKBMessage() const {
        return kb_preview && !kb_preview->empty() && kb_id && !kb_id->empty();
    }
    [[nodiscard]] bool isGroupChat() const;
    /// Whether the sender is this user, as the engine knows them now.
    [[nodiscard]] bool isMine() const;
    [[nodiscard]] bool hasPreview() const { return preview && !preview->empty() && previewImage; }
    /// Whether the picture itself has come: no placeholder stands for it any more.
    [[nodiscard]] bool isAvatarLoaded() const;
    [[nodiscard]] bool isPreviewLoaded() const;
    /// Whether one of these dictionary forms has this line's id.
    [[nodiscard]] bool isFoundInArray(const Json& dictionaries) const;

    /// The line as a dictionary of 22 keys, for storage; "" stands for what is absent, and the date
    /// is in milliseconds since 1970.
    [[nodiscard]] Json dict() const;
    /// Reads those keys back. Values of another type count as missing.
    void setDict(const Json& dictionary);
    /// The line for a file of the host's: what it has of 18 keys, none of an article's.
    [[nodiscard]] Json archive() const;

    // `date` as a text in the device's time zone; nothing without a date.

    /// "2026-01-31T13:00:30.250Z". The Z notwithstanding, it is no UTC.
    [[nodiscard]] std::optional<std::string> fullDateString() const;
    /// The day in a few characters, as the user's language writes it.
    [[nodiscard]] std::optional<std::string> dateString() const;
    /// Hours and minutes, likewise.
    [[nodiscard]] std::optional<std::string> timeString() const;
    /// By a pattern of formattedDate().
    [[nodiscard]] std::optional<std::string> dateWithFormat(const std::string& format) const;
    /// The moment that "2026-01-31 13:00:30.250" names in the device's time zone; nothing for any
    /// other text.
    [[nodiscard]] std::optional<Clock::Time> getDateFromFullDateString(
        const std::string& dateText) const;

    /// What is shown of the text, emoticons as pictures; made at the first reading. Of a complete
    /// line it has the colour of the time of completion, and no regard to the line's type.
    [[nodiscard]] const StyledText& attributedString() const;
    /// The text as it was when the line was complete; nothing before.
    [[nodiscard]] std::optional<std::string> message() const;

    /// Decides whether this is a line at all, and unpacks the JSON envelope in its text. Keys of
    /// the line's buttons are taken out of the engine's `selectedActions`.
    bool validateMessage();
    /// Gives a line without an id one: the digest of sender, text and date.
    void calculateId();
    void determineMessageType();
    /// Whether the user may press a button that requires `permissions`; null pointer for nothing.
    [[nodiscard]] bool isPermitted(const Json* permissions) const;
    void disableChatActionButtons();
    /// Makes text, dates, actions and an article absent.
    void clear();

    /// Shows the placeholder and asks for the picture of the sender with this key, "kind:number" or
    /// "relay"; there is none for other senders.
    void getAvatarForSender(const std::string& sender);
    /// Shows the placeholder and asks for this picture.
    void getAvatarWithUrl(const std::optional<std::string>& address);
    /// Shows a picture that stands for none, and asks for that at `preview`; nothing without one.
    void getPreviewImage();

    /// Copied from the engine once the line is complete.
    bool showNotifications = false;
    bool isMe = false;
    /// It came with a date of its own: room history, no live traffic.
    bool isDelayed = false;
    /// False on transcript lines, which are never validated.
    bool isValidMessage = false;
    /// A newer line has frozen its buttons.
    bool disabled = false;
    /// It came without an id, and `id` is a digest.
    bool hasComputedId = false;
    std::optional<std::string> id;
    std::optional<std::string> type;
    /// The sender's key: its room nickname up to the first ";". "" when it has none.
    std::optional<std::string> from;
    std::optional<std::string> fromName;
    std::optional<std::string> fromMention;
    RareText fromNickname;
    /// The call to join, on an invitation.
    RareText callId;
    RareText channel;
    RareText service;
    std::optional<std::string> text;
    /// When it was sent. Lines that were completed from a stanza or a dictionary have one, with the
    /// seconds cut off; all others have what was read, or none.
    std::optional<Clock::Time> date;
    std::optional<std::string> xml;
    RareText avatar;
    /// Addresses of an attachment and its small picture.
    RareText preview;
    RareText url;
    RareText buttonText;
    RareText buttonAction;
    /// Nothing sets it.
    RareText html;
    /// The permitted entries of the envelope's "actions"; an array if there were any "actions".
    std::optional<Json> buttonActions;
    std::vector<std::shared_ptr<QDChatActionButton>> chatActionButtons;
    RareText kb_title;
    RareText kb_preview;
    RareText kb_id;
    std::optional<double> kb_preview_length;
    ChatMessageType messageType = ChatMessageType::CallInvitation;

    /// A placeholder until the picture has come; null where there is none.
    ImagePtr avatarImage;
    ImagePtr previewImage;
    // The parts that the line is drawn with; absent where it has none. Null without buttons.
    std::optional<QDChatMessageView> messageView;
    std::optional<QDChatAttachmentView> attachmentView;
    std::optional<QDKBView> kbView;
    std::shared_ptr<QDChatButtonCollectionView> chatButtonCollectionView;
    /// In points, as the list has laid it out.
    ChatCellSize cellSize;

 private:
    explicit QuorrandChatMessage(QuorrandChat& chat);

    void readStanza(const Stanza& stanza);
    void readEnvelope(ChatEnvelope envelope);
    void readActions(Json actions);
    void completeMessage();
    void completeTranscript();
    void setSenderInformation();
    void trimText();
    void prepareChatButtons();
    void chooseTextColor();
    [[nodiscard]] StyledText styledText() const;

    const std::weak_ptr<QuorrandChat> chat_;
    const PlatformPtr platform_;
    ChatStates chatStates_;
    bool hasStanza_ = false;
    /// Present once the line is complete.
    std::optional<Color> textColor_;
    mutable std::unique_ptr<const StyledText> attributedString_;
};

}  // namespace supportsdk
