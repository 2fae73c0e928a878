#include "fuzz/Fuzzing.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/Fields.h"
#include "tests/support/FakePlatform.h"

using namespace supportsdk;
using fuzz::require;

namespace {

std::shared_ptr<QuorrandChat> makeEngine(const test::FakePlatform& fakes) {
    fakes.kitBundle->files = {
        {"smile.png", "picture"},
        {"user-placeholder-round.png", "picture"},
        {"Emoticons.json",
         R"json({"Emoticons": {"smile.png": {"Equivalents": ["(smile)", "(\u00e9)"]}}})json"}};
    auto chat = QuorrandChat::create(fakes.platform);
    chat->userPermissions = Json::array({"agent"});
    chat->setParticipantsEligible(Json{{"a:1", {{"name", "Ann"}}}});
    return chat;
}

std::shared_ptr<const Stanza> stanzaWith(const std::string& body) {
    auto stanza = std::make_shared<Stanza>("message");
    auto message = stanza->root();
    message.append_attribute("type").set_value("groupchat");
    message.append_attribute("from").set_value("room@chat.test/a:1;tab");
    message.append_child("body").text().set(body.c_str());
    return stanza;
}

/// Damaged UTF-8 cannot come through a stream; everything else must survive being stored.
void checkForms(QuorrandChat& chat, const QuorrandChatMessage& line) {
    const auto dictionary = line.dict();
    require(dictionary.size() == 22 && parseJson(dumpJson(dictionary)));
    const auto again = QuorrandChatMessage::createWithDict(chat, dictionary);
    require(again->id == line.id);
    auto archive = line.archive();
    archive.erase("fromnickname");
    require(QuorrandChatMessage::createWithArchive(chat, archive)->archive() == archive);
}

void check(QuorrandChat& chat, QuorrandChatMessage& line) {
    require(line.id && !line.id->empty() && line.from && line.date);
    require(!line.text || line.attributedString().plainText() == *line.text);
    require(line.message() == line.text);
    require(line.chatActionButtons.size() <= QuorrandChatMessage::maximumActions);
    require(line.isChatButtonMessage() == (line.chatButtonCollectionView != nullptr));
    line.disableChatActionButtons();
    checkForms(chat, line);
}

}  // namespace

/// The input is the body of a room's message.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::FakePlatform fakes;
    static const auto chat = makeEngine(fakes);
    const std::string body(reinterpret_cast<const char*>(data), size);

    const auto line = QuorrandChatMessage::createWithXMPPMessage(*chat, stanzaWith(body));
    check(*chat, *line);
    // A person may have typed the very text that a host puts into its dictionaries.
    if (const auto json = parseJson(body)) {
        check(*chat, *QuorrandChatMessage::createWithDict(*chat, *json));
        (void)QuorrandChatMessage::createWithArchive(*chat, *json)->dict();
    }
    fakes.settle();
    chat->avatars.clear();
    return 0;
}
