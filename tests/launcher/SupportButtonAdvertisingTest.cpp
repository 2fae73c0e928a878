#include "supportsdk/core/TxtRecord.h"
#include "tests/launcher/ButtonFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;

class SupportButtonAdvertisingTest : public ButtonTest {
 protected:
    SupportButtonAdvertisingTest() {
        fakes.kitBundle->infos["CFBundleShortVersionString"] = "1.2";
        load();
    }
    FakeNetService& service() { return dynamic_cast<FakeNetService&>(*button->service); }
    /// The kit's own pairs but for those that are "" in `changes`, and the others of these.
    Bytes record(const std::map<std::string, std::string>& changes) {
        auto pairs = button->createTXTDictionary();
        for (const auto& [key, value] : changes) {
            value.empty() ? (void)pairs.erase(key) : (void)(pairs[key] = toBytes(value));
        }
        return dataFromTXTRecordDictionary(pairs);
    }
    std::string hash(const std::string& text) { return button->support->encodeString(text); }
};

TEST_F(SupportButtonAdvertisingTest, PutsTheDeviceOnTheLocalNetwork) {
    EXPECT_TRUE(button->advertiseServiceWithPublicData(Json(), {{"b", "\u00FC"}, {"a", 1}}));
    EXPECT_TRUE(service().published && service().peerToPeer);
    EXPECT_EQ(service().type() + service().domain() + service().name(), "_connect._tcplocal.");
    EXPECT_EQ(service().port(), 22666);
    EXPECT_EQ(service().record, record({{"private", hash("{\"a\":1,\"b\":\"\u00FC\"}")}}));
    std::vector<std::string> keys;
    for (const auto& [key, value] : button->createTXTDictionary()) keys.push_back(key);
    EXPECT_THAT(keys, ElementsAre("client_app_identifier", "device", "manufacturer", "provider_id",
                                  "version"));
    EXPECT_EQ(fakes.netServices->services.size(), 2U);
    EXPECT_TRUE(fakes.netServices->services[0].expired()) << "one device, one record";
}

TEST_F(SupportButtonAdvertisingTest, LetsPublicDataWinOverAllButThePrivate) {
    const Json data = {{"Version", "9"}, {"private", "forged"}, {"PRIVATE", "forged"},
                       {"port", 80},     {"list", {1, 2}},      {"device", Json()}};
    EXPECT_TRUE(button->advertiseServiceWithPublicData(data, "text"));
    EXPECT_EQ(service().record, record({{"version", ""},
                                        {"Version", "9"},
                                        {"device", ""},
                                        {"port", "80"},
                                        {"list", "[1,2]"},
                                        {"private", hash("text")}}));
    EXPECT_TRUE(button->advertiseServiceWithPublicData({{"Private", "forged"}}, Json()));
    EXPECT_EQ(service().record, record({}));
    button->support = nullptr;
    EXPECT_TRUE(button->advertiseServiceWithPublicData({{"a", "b"}}, "there is no key"));
    EXPECT_EQ(service().record, record({{"a", "b"}}));
}

TEST_F(SupportButtonAdvertisingTest, TellsWhatBecameOfTheRecord) {
    EXPECT_TRUE(button->advertiseServiceWithPublicData(Json(), Json()));
    const auto listener = service().delegate.lock();
    listener->netServiceDidPublish(service());
    listener->netServiceDidNotPublish(service(), {{"code", -26}});
    fakes.netServices->available = false;
    EXPECT_FALSE(button->advertiseServiceWithPublicData(Json(), Json()));
    EXPECT_EQ(button->service, nullptr);
    EXPECT_EQ(fakes.log->lines.back(), "An error occurred initializing the NSNetService object.");
    EXPECT_THAT(told(), ElementsAre("advertised _connect._tcp", "not advertised {\"code\":-26}"));
}

}  // namespace
}  // namespace supportsdk::test
