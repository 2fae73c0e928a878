#include "service/prosody/ProsodyServer.h"

#include "tests/support/LineProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::service {
namespace {

using std::chrono::milliseconds;
using test::TemporaryFolder;

TEST(ProsodyServer, RoomsAreSteeredAndTheirTrafficIsRead) {
    const TemporaryFolder folder;
    ProsodyServer server({folder.path});
    ASSERT_TRUE(server.start());
    auto control = server.control();
    const auto room = server.room("case-1");

    EXPECT_FALSE(control.say(room, "tess", {"<message/>"})) << "there is no room yet";
    EXPECT_FALSE(control.occupants(room));
    ASSERT_TRUE(control.createRoom(room));
    ASSERT_TRUE(control.createRoom(room)) << "a second time";
    EXPECT_FALSE(control.say(room, "tess", {"<message><body>a</body></message>", "<broken"}));
    ASSERT_TRUE(control.say(room, "tess \"T\"",
                            {"<message id='1'><body>a &lt; b \xC3\xA9</body></message>",
                             "<message id='2'><body>c</body></message>"}));

    const auto traffic = control.events({}, milliseconds{5000});
    ASSERT_TRUE(traffic);
    ASSERT_EQ(traffic->events.size(), 2U) << "nothing of the malformed call was sent";
    EXPECT_EQ(traffic->events[0].room, room);
    EXPECT_EQ(traffic->events[0].nick, "tess \"T\"");
    EXPECT_THAT(traffic->events[0].xml, testing::HasSubstr("a &lt; b \xC3\xA9"));
    EXPECT_THAT(traffic->events[0].xml, testing::HasSubstr("groupchat"));
    EXPECT_TRUE(control.events(traffic->next, milliseconds{20})->events.empty());
    EXPECT_FALSE(control.kick(room, "nobody"));
    EXPECT_TRUE(control.destroyRoom(room));
    EXPECT_FALSE(control.occupants(room));

    ProsodyControl stranger(server.httpPort(), server.roomsDomain(), "guess");
    EXPECT_FALSE(stranger.createRoom(room));
}

TEST(ProsodyServer, ComesBackOnTheSamePortsWithItsAccounts) {
    const TemporaryFolder folder;
    ProsodyServer server({folder.path});
    ASSERT_TRUE(server.start());
    auto control = server.control();
    ASSERT_TRUE(server.registerAccount("ann", "secret"));
    const auto port = server.c2sPort();
    const auto before = control.events({}, milliseconds{0});

    server.kill();
    EXPECT_FALSE(control.createRoom(server.room("r"))) << "fails, and does not hang";
    ASSERT_TRUE(server.start());
    EXPECT_EQ(server.c2sPort(), port);
    EXPECT_TRUE(control.createRoom(server.room("r")));
    const auto after = control.events(before->next, milliseconds{0});
    ASSERT_TRUE(after);
    EXPECT_NE(after->next.epoch, before->next.epoch);
    EXPECT_TRUE(std::filesystem::exists(folder.path / "data"));

    ProsodyOptions options{folder.path / "other"};
    options.c2sPort = port;
    EXPECT_FALSE(ProsodyServer(options).start()) << "a stranger's port";
    server.stop();
    EXPECT_FALSE(server.isRunning());
}

TEST(ProsodyServer, OutlivesTheThreadThatStartedIt) {
    const TemporaryFolder folder;
    ProsodyServer server({folder.path});
    bool started = false;
    std::thread([&] { started = server.start(); }).join();
    ASSERT_TRUE(started);
    EXPECT_FALSE(test::processEnds(server.processId(), milliseconds{50}));
}

TEST(CertificateAuthority, RefusesWhatCannotStandInACertificate) {
    const TemporaryFolder folder;
    const auto authority = CertificateAuthority::create(folder.path / "new" / "folder");
    ASSERT_TRUE(authority);
    EXPECT_TRUE(authority->issue({"good", {"a.test", "b.test"}, {"127.0.0.1", "::1"}}));
    EXPECT_FALSE(authority->issue({"comma", {"a.test,DNS:evil.test"}, {}}));
    EXPECT_FALSE(authority->issue({"address", {}, {"not an address"}}));
    EXPECT_FALSE(authority->issue({"empty", {}, {}}));
}

}  // namespace
}  // namespace supportsdk::service
