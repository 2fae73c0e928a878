#include <gmock/gmock.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>

#include "tests/e2e/Road.h"
#include "tests/support/MdnsResponder.h"

// The device on the local network, as another program sees it.

namespace supportsdk::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Key;
using testing::Pair;

/// Base64 of the keyed hash (HMAC-SHA-256).
std::string keyedHash(const std::string& key, const std::string& text) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> hash{};
    unsigned int length = 0;
    HMAC(EVP_sha256(), key.data(), static_cast<int>(key.size()),
         reinterpret_cast<const unsigned char*>(text.data()), text.size(), hash.data(), &length);
    std::array<unsigned char, 2 * EVP_MAX_MD_SIZE> base64{};
    EVP_EncodeBlock(base64.data(), hash.data(), static_cast<int>(length));
    return reinterpret_cast<const char*>(base64.data());
}

class AdvertiseTest : public Road {
 protected:
    void SetUp() override {
        if (const auto obstacle = MdnsResponder::obstacle(); !obstacle.empty())
            GTEST_SKIP() << obstacle;
        ASSERT_TRUE(responder.startBus());
        Road::SetUp();
        load();
    }

    void advertise(const Json& shown, const Json& hidden) {
        host->send({{"do", "advertise"}, {"public", shown}, {"private", hidden}});
    }

    MdnsResponder responder;
};

TEST_F(AdvertiseTest, TheRecordSaysWhatRunsHereAndHidesWhatIsPrivate) {
    ASSERT_TRUE(responder.startDaemon());
    ServiceBrowser browser("_connect._tcp");
    advertise({{"version", "host's own"}, {"private", "forged"}, {"floor", 3}}, {{"door", "7"}});
    const auto found = browser.awaitService("device");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->domain, "local");
    EXPECT_EQ(found->port, 22666);
    const auto key = service->configuration().value("privateKey", "");
    ASSERT_NE(key, "");
    EXPECT_THAT(found->txt, AllOf(Contains(Key("provider_id")), Contains(Pair("floor", "3")),
                                  Contains(Pair("version", "host's own")),
                                  Contains(Pair("private", keyedHash(key, R"({"door":"7"})")))));

    host->send({{"do", "quit"}});
    EXPECT_EQ(host->waitForEnd(), 0);
    EXPECT_TRUE(browser.awaitGone("device"));
}

TEST_F(AdvertiseTest, WithoutADaemonNothingElseSuffers) {
    advertise(Json::object(), nullptr);
    const auto told =
        host->await("delegate", {{"operation", "supportButtonDidFailToAdvertiseService"}});
    EXPECT_LT(told["errors"].value("code", 0), 0);
    EXPECT_NE(told["errors"].value("description", ""), "");
    host->send({{"do", "tap"}});
    EXPECT_FALSE(host->await("menu")["entries"].empty());

    ASSERT_TRUE(responder.startDaemon());
    host->await("delegate", {{"operation", "supportButtonDidAdvertiseService"}});
}

}  // namespace
}  // namespace supportsdk::test
