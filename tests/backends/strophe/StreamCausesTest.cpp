#include "tests/backends/strophe/RawServer.h"
#include "tests/backends/strophe/StreamFixture.h"

namespace supportsdk::test {
namespace {

using Causes = ProsodyStreamTest;

std::uint16_t portWithoutListener() {
    return RawServer().port();
}

TEST_F(Causes, OfAttemptsThatFail) {
    std::vector<std::unique_ptr<service::ProsodyServer>> servers;
    const auto portOf = [&](const std::string& name,
                            const std::optional<service::CertificateFiles>& certificate) {
        service::ProsodyOptions options{folder.path / name};
        options.certificate = certificate;
        auto& made = servers.emplace_back(std::make_unique<service::ProsodyServer>(options));
        EXPECT_TRUE(made->start() && made->registerAccount("ann", password));
        return made->c2sPort();
    };
    using std::chrono::hours;
    const auto otherDomain = portOf("other", authority->issue({"other", {"elsewhere.test"}}));
    const auto expired = portOf(
        "expired", authority->issue({"expired", {"support.test"}, {}, -hours{48}, -hours{24}}));
    const auto clear = portOf("clear", std::nullopt);
    const RawServer silent;
    const RawServer hangsUp({{"", ""}}, true);

    struct Case {
        const char* name;
        XmppLoss loss;
        std::string host;
        std::uint16_t port;
        std::vector<std::filesystem::path> trusted;
        std::string jid = "ann@support.test";
        std::string password = "pass-WORD-7";
        std::unique_ptr<WatchedStream> stream = nullptr;
    };
    const std::vector trust{authority->certificate()};
    const std::string here = "127.0.0.1";
    std::vector<Case> cases;
    const auto add = [&](Case one) { cases.push_back(std::move(one)); };
    add({"refused", XmppLoss::refused, here, portWithoutListener(), trust});
    add({"refused on each address", XmppLoss::refused, "localhost", portWithoutListener(), trust});
    add({"unresolved", XmppLoss::unresolved, "nowhere.invalid", 0, trust});
    add({"host of another kind", XmppLoss::unresolved, "not a host\n", 0, trust});
    add({"silent", XmppLoss::timedOut, here, silent.port(), trust});
    add({"hangs up", XmppLoss::lost, here, hangsUp.port(), trust});
    add({"untrusted", XmppLoss::certificate, here, server->c2sPort(), {}});
    add({"other domain", XmppLoss::certificate, here, otherDomain, trust});
    add({"expired", XmppLoss::certificate, here, expired, trust});
    add({"no TLS", XmppLoss::certificate, here, clear, trust});
    add({"password", XmppLoss::credentials, here, server->c2sPort(), trust, "ann@support.test",
         "x"});
    add({"no user", XmppLoss::credentials, here, server->c2sPort(), trust, "nobody@support.test"});
    add({"quote", XmppLoss::credentials, here, server->c2sPort(), trust, "a@b' x='y"});
    add({"empty password", XmppLoss::credentials, here, server->c2sPort(), trust,
         "ann@support.test", ""});

    for (auto& each : cases) {
        each.stream = makeStream(each.trusted);
        const milliseconds timeout{each.loss == XmppLoss::timedOut ? 2000 : 30000};
        each.stream->connect({each.host, each.port, each.jid, each.password, timeout});
        EXPECT_TRUE(each.stream->stream->isConnecting()) << each.name;
    }
    for (auto& each : cases) {
        ASSERT_TRUE(awaitEnd(*each.stream)) << each.name;
        const auto& end = each.stream->ends[0];
        EXPECT_EQ(end.loss, each.loss) << each.name << ": " << end.description;
        EXPECT_FALSE(end.description.empty()) << each.name;
        EXPECT_FALSE(each.stream->stream->isConnecting()) << each.name;
        EXPECT_GE(each.stream->endedAfter, milliseconds{1000}) << each.name;
    }
    EXPECT_EQ(log->text().find("pass-WORD-7"), std::string::npos);
}

TEST_F(Causes, DeadlineHoldsInsideAHandshakeThatBlocks) {
    // Agrees to TLS and then says nothing, where the library waits without a bound.
    const RawServer stuck(
        {{"<stream:stream",
          "<?xml version='1.0'?><stream:stream xmlns='jabber:client' "
          "xmlns:stream='http://etherx.jabber.org/streams' id='1' from='raw.test' version='1.0'>"
          "<stream:features><starttls xmlns='urn:ietf:params:xml:ns:xmpp-tls'/>"
          "</stream:features>"},
         {"<starttls", "<proceed xmlns='urn:ietf:params:xml:ns:xmpp-tls'/>"}});
    auto stream = makeStream({});
    stream->connect({"127.0.0.1", stuck.port(), "ann@raw.test", password, milliseconds{1200}});
    ASSERT_TRUE(awaitEnd(*stream));
    EXPECT_EQ(stream->ends[0].loss, XmppLoss::timedOut);
    EXPECT_LT(stream->endedAfter, milliseconds{2000});
    const auto start = std::chrono::steady_clock::now();
    stream.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds{500});
}

TEST_F(Causes, AnAttemptThatIsGivenUpEndsAtOnce) {
    const RawServer silent;
    auto stream = makeStream({});
    stream->connect({"127.0.0.1", silent.port(), "ann@raw.test", password});
    stream->stream->disconnect();
    ASSERT_TRUE(awaitEnd(*stream));
    EXPECT_EQ(stream->ends[0].loss, XmppLoss::requested);
    EXPECT_LT(stream->endedAfter, milliseconds{500});

    auto failed = makeStream({});
    failed->connect({"127.0.0.1", portWithoutListener(), "ann@raw.test", password});
    queue->pumpFor(milliseconds{200});  // refused, but not reported yet
    failed->stream->disconnect();
    ASSERT_TRUE(awaitEnd(*failed));
    EXPECT_EQ(failed->ends[0].loss, XmppLoss::requested);
    EXPECT_LT(failed->endedAfter, milliseconds{900});
}

TEST_F(StreamTest, ClearTextGoesOnOverLoopbackWhenAllowed) {
    const TemporaryFolder folder;
    service::ProsodyServer server({folder.path});
    ASSERT_TRUE(server.start());
    ASSERT_TRUE(server.registerAccount("ann", "p"));
    auto stream = makeStream({}, true);
    stream->connect({"localhost", server.c2sPort(), "ann@support.test", "p"});
    EXPECT_TRUE(awaitUp(*stream)) << "also by a name whose first address may refuse";
}

TEST_F(StreamTest, HostileServersDoNoHarm) {
    const auto meet = [this](const std::string& say) {
        auto script = RawServer::loginScript();
        script.push_back({"", say});
        const RawServer server(script);
        auto stream = makeStream({}, true);
        stream->connect({"127.0.0.1", server.port(), "ann@raw.test/desk", "p"});
        EXPECT_TRUE(awaitUp(*stream));
        queue->pumpUntil([&] { return !stream->ends.empty() || stream->find("done") != nullptr; });
        return stream;
    };
    std::string deep = "<message id='done'>";
    for (int i = 0; i < 100000; ++i) deep += "<a>";
    for (int i = 0; i < 100000; ++i) deep += "</a>";
    const auto nested = meet(deep + "</message>");
    EXPECT_TRUE(nested->ends.empty()) << "passed on, or at least survived";

    const auto endless = meet("<message><body>" + std::string(std::size_t{8} << 20U, 'x'));
    ASSERT_EQ(endless->ends.size(), 1U);
    EXPECT_EQ(endless->ends[0].loss, XmppLoss::lost);

    const auto broken = meet("<message></body>");
    ASSERT_EQ(broken->ends.size(), 1U);

    const auto unknown = meet(
        "<stream:error><reset xmlns='urn:ietf:params:xml:ns:xmpp-streams'/>"
        "<text xmlns='urn:ietf:params:xml:ns:xmpp-streams'>Why not</text></stream:error>");
    ASSERT_EQ(unknown->ends.size(), 1U);
    EXPECT_EQ(unknown->ends[0].loss, XmppLoss::closedByServer);
    EXPECT_EQ(unknown->ends[0].condition, "reset");

    const auto spaces = meet(
        "<message xml:lang='de' id='done'><x xmlns='urn:x'><y/><body xmlns='jabber:client'>t"
        "</body></x> <body>1 &amp; 2</body></message>");
    ASSERT_EQ(spaces->received.size(), 1U);
    const auto& stanza = *spaces->received[0];
    EXPECT_EQ(stanza.attribute("xml:lang"), "de");
    EXPECT_FALSE(stanza.attribute("lang"));
    EXPECT_EQ(stanza.childText("body"), "1 & 2");
    const auto x = stanza.child("x", "urn:x");
    EXPECT_EQ(namespaceOf(x.child("y")), "urn:x");
    EXPECT_FALSE(x.child("y").attribute("xmlns"));
    EXPECT_EQ(namespaceOf(x.child("body")), "jabber:client");
}

}  // namespace
}  // namespace supportsdk::test
