#include "bench/chat/Kit.h"

#include "backends/LinuxPlatform.h"
#include "bench/chat/Figures.h"
#include "bench/chat/Floods.h"

namespace supportsdk::bench {

namespace {

constexpr std::chrono::seconds patience{120};

struct Silence : Log {
    void write(std::string_view) override {}
};

}  // namespace

Kit::Kit() {
    LinuxPlatformOptions options;
    options.mainQueue = loop;
    options.dataFolder = folder.path;
    options.log = std::make_shared<Silence>();
    options.resourcesFolder = SUPPORTSDK_RESOURCES;
    options.allowClearTextOnLoopback = true;
    chat = QuorrandChat::create(linuxPlatform(options));
    chat->loadEmoticons();
    Json participants = Json::object();
    for (const char* key : {"agent-0", "agent-1", "agent-2", "users:0", "users:1", "users:2"})
        participants[key] = {{"name", std::string("Agent ") + key}, {"alias", key}};
    chat->setParticipantsEligible(participants);
    chat->me = "agent-0";
}

Kit::~Kit() {
    chat.reset();
    while (loop->poll() > 0) {
    }
}

void Kit::enterRoom(std::uint16_t port) {
    chat->host = "127.0.0.1";
    chat->port = port;
    chat->jid = "ann@raw.test/desk";
    chat->password = "p";
    chat->muc = roomJid;
    chat->nickname = occupant;
    require(chat->connect(), "connect");
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!chat->isRoomJoined()) {
        require(std::chrono::steady_clock::now() < deadline, "join");
        loop->runOne(std::chrono::seconds{1});
    }
}

void Kit::awaitLines(std::size_t count) const {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (chat->viewModel->messages().size() < count) {
        require(std::chrono::steady_clock::now() < deadline, "lines");
        loop->runOne(std::chrono::seconds{1});
    }
}

}  // namespace supportsdk::bench
