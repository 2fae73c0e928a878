#include "backends/strophe/StreamThread.h"

#include <poll.h>
#include <pthread.h>

#include <algorithm>
#include <array>

#include "backends/posix/Threads.h"
#include "backends/strophe/TrustBundle.h"

namespace supportsdk {

namespace {

using Clock = std::chrono::steady_clock;

// TLS hands out a record of 16 KiB in four reads, of which only the first shows on the socket, and
// what a read sets off is written in the next round.
constexpr int roundsToDrain = 6;

// Stanzas handed over at once, at most with those of one step more.
constexpr std::size_t largestBatch = 128;
constexpr std::size_t largestBatchBytes = std::size_t{256} << 10U;

// A round on a writable socket writes at least this much.
constexpr std::size_t leastWrite = 4096;
// Rounds on a writable socket that negotiation needs before the first stanza.
constexpr std::size_t writesOfConnect = 8;

// After this a further address of the host is tried, if there is one.
constexpr auto addressPatience = std::chrono::seconds{5};

// How long an orderly end waits for the server's.
constexpr auto closePatience = std::chrono::milliseconds{500};

// libstrophe walks stanzas recursively; only what is touched becomes memory.
constexpr std::size_t stackSize = std::size_t{64} << 20U;

constexpr std::uint16_t defaultPort = 5222;

std::string domainOf(const std::string& jid) {
    const auto bare = jid.substr(0, jid.find('/'));
    const auto at = bare.find('@');
    return at == std::string::npos ? bare : bare.substr(at + 1);
}

// What libstrophe would write into its stream header as it is.
bool isAccount(const std::string& jid) {
    const auto at = jid.find('@');
    const auto domain = domainOf(jid);
    return at != std::string::npos && at != 0 && !domain.empty() &&
           domain.find_first_of("\"'<>& ") == std::string::npos &&
           std::none_of(jid.begin(), jid.end(), [](unsigned char c) { return c < 0x20; });
}

}  // namespace

StreamThread::StreamThread(Setup setup) : setup_(std::move(setup)) {}

StreamThread::~StreamThread() {
    cut();
    if (thread_) pthread_join(*thread_, nullptr);
}

bool StreamThread::start() {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, stackSize);
    pthread_t thread{};
    // Also because a write to a dead TLS connection raises SIGPIPE.
    const BlockedSignals inherited;
    const bool started =
        commands_.descriptor() >= 0 && pthread_create(&thread, &attributes, &enter, this) == 0;
    pthread_attr_destroy(&attributes);
    if (started) thread_ = thread;
    return started;
}

void StreamThread::cut() {
    guard_.cut();
    commands_.wake();
}

void* StreamThread::enter(void* self) {
    pthread_setname_np(pthread_self(), "support-xmpp");
    static_cast<StreamThread*>(self)->run();
    return nullptr;
}

void StreamThread::run() {
    auto end = attempt();
    setup_.lowDescriptor->reserve();
    if (end && !guard_.isCut()) setup_.inbox->add(std::move(*end));
}

std::optional<XmppStreamEnd> StreamThread::attempt() {
    const auto& options = setup_.options;
    if (!isAccount(options.jid) || options.password.find('\0') != std::string::npos)
        return XmppStreamEnd{XmppLoss::credentials, "", "The account is malformed."};
    const auto addresses = resolve();
    const TrustBundle authorities(setup_.authorities);
    for (const auto& address : addresses) {
        const bool last = &address == &addresses.back();
        giveUpAt_.reset();
        if (!last) giveUpAt_ = Clock::now() + addressPatience;
        const auto facts = stream(address, authorities.path());
        if (closing_) return XmppStreamEnd{XmppLoss::requested, "", "Closed as asked."};
        if (facts.connected || last) return endOf(facts);
        if (guard_.isCut()) return std::nullopt;
    }
    return XmppStreamEnd{XmppLoss::unresolved, "", "The host name has no address."};
}

std::vector<PeerAddress> StreamThread::resolve() {
    const auto& options = setup_.options;
    const auto host = options.host.empty() ? domainOf(options.jid) : options.host;
    const Resolution resolution(host.find('\0') == std::string::npos ? host : std::string());
    while (!guard_.isCut()) {
        std::array<pollfd, 2> entries{
            {{resolution.descriptor(), POLLIN, 0}, {commands_.descriptor(), POLLIN, 0}}};
        poll(entries.data(), entries.size(), -1);
        if (entries[0].revents != 0) return resolution.addresses();
        // Nobody sends before the stream is up; what woke us is a cut.
        (void)commands_.take();
    }
    return {};
}

StreamFacts StreamThread::stream(const PeerAddress& address, const std::string& authorities) {
    ConnectionOptions options;
    options.jid = setup_.options.jid;
    options.password = setup_.options.password;
    options.port = setup_.options.port != 0 ? setup_.options.port : defaultPort;
    options.authorities = authorities;
    options.requireTls = !(setup_.allowClearTextOnLoopback && address.loopback);

    StropheConnection connection(options, guard_,
                                 {[this](const std::string& jid) {
                                      authenticated_ = true;
                                      batch_.emplace_back(StreamAuthenticated{jid});
                                  },
                                  [this](std::shared_ptr<const Stanza> stanza) {
                                      batchBytes_ += stanza->memory();
                                      batch_.emplace_back(std::move(stanza));
                                  }});
    if (!setup_.lowDescriptor->release()) {
        StreamFacts facts;
        facts.noDescriptor = true;
        return facts;
    }
    connection.connect(address);
    drive(connection);
    setup_.inbox->add(batch_);
    return connection.facts();
}

void StreamThread::drive(StropheConnection& connection) {
    quietRounds_ = 0;
    pendingWrites_ = writesOfConnect;
    while (!connection.hasEnded() && !guard_.isCut() && !isTimeUp()) {
        // A main thread that does not keep up holds back the server, not memory.
        const bool paused = setup_.inbox->isFull();
        const bool writing = pendingWrites_ > 0 || connection.hasQueuedSends();
        const auto events = static_cast<short>(POLLIN | (writing ? POLLOUT : 0));
        std::array<pollfd, 2> entries{
            {{commands_.descriptor(), POLLIN, 0}, {guard_.descriptor(), events, 0}}};
        poll(entries.data(), paused ? 1 : 2, paused ? -1 : pollTimeout());
        if (entries[0].revents != 0) execute(connection);
        if (!paused) advance(connection, entries[1].revents);
    }
}

void StreamThread::advance(StropheConnection& connection, int socketEvents) {
    connection.step();
    // The step also reads what came in after the poll; what that left to do must not wait for the
    // next wake-up.
    const bool readable = (socketEvents & ~POLLOUT) != 0;
    quietRounds_ = connection.hasRead() || readable ? 0 : quietRounds_ + 1;
    // While there is more, a later step will do: waking the main thread costs as much as some
    // lines.
    const bool isLarge = batch_.size() >= largestBatch || batchBytes_ >= largestBatchBytes;
    if (isLarge || !connection.hasMore()) {
        setup_.inbox->add(batch_);
        batchBytes_ = 0;
    }
    if ((socketEvents & POLLOUT) != 0 && pendingWrites_ > 0) --pendingWrites_;
    if (connection.facts().connected && !closing_) giveUpAt_.reset();
}

bool StreamThread::isTimeUp() const {
    return giveUpAt_ && Clock::now() >= *giveUpAt_;
}

int StreamThread::pollTimeout() const {
    if (quietRounds_ < roundsToDrain) return 0;
    if (!giveUpAt_) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*giveUpAt_ - Clock::now());
    return static_cast<int>(std::max(left, std::chrono::milliseconds{0}).count());
}

void StreamThread::execute(StropheConnection& connection) {
    const auto commands = commands_.take();
    quietRounds_ = 0;
    if (!authenticated_ || closing_) return;
    for (const auto& xml : commands.sends) {
        connection.send(xml);
        pendingWrites_ += xml.size() / leastWrite + 1;
    }
    if (commands.disconnect) {
        connection.close();
        closing_ = true;
        giveUpAt_ = Clock::now() + closePatience;
    }
}

}  // namespace supportsdk
