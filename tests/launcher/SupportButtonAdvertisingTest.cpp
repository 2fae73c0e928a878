#include "supportsdk/core/TxtRecord.h"
#include "tests/launcher/ButtonFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SupportButtonAdvertisingTest : public ButtonTest {
 protected:
    FakeNetService& service() { return dynamic_cast<FakeNetService&>(*button->service); }
    Bytes record(std::map<std::string, std::string> changes) {
        auto pairs = button->createTXTDictionary();
        for (auto& [key, value] : changes) pairs[key] = toBytes(value);
        return dataFromTXTRecordDictionary(pairs);
    }
};

TEST_F(SupportButtonAdvertisingTest, PutsTheDeviceOnTheLocalNetwork) {
    fakes.kitBundle->infos["CFBundleShortVersionString"] = "1.2";
    load();
    EXPECT_TRUE(button->advertiseServiceWithPublicData(Json(), {{"b", "\u00FC"}, {"a", 1}}));
    EXPECT_TRUE(service().published && service().peerToPeer);
    EXPECT_EQ(service().type() + service().domain() + service().name(), "_connect._tcplocal.");
    EXPECT_EQ(service().port(), 22666);
    EXPECT_EQ(service().record,
              record({{"private", button->support->encodeString("{\"a\":1,\"b\":\"\u00FC\"}")}}));
    std::vector<std::string> keys;
    for (const auto& [key, value] : button->createTXTDictionary()) keys.push_back(key);
    EXPECT_THAT(keys, ElementsAre("client_app_identifier", "device", "manufacturer", "provider_id",
                                  "version"));
    EXPECT_EQ(fakes.netServices->services.size(), 2U);
    EXPECT_TRUE(fakes.netServices->services[0].expired()) << "one device, one record";
}

TEST_F(SupportButtonAdvertisingTest, LetsPublicDataWinOverAllButThePrivate) {
    fakes.kitBundle->infos["CFBundleShortVersionString"] = "1.2";
    load();
    const Json data = {{"Version", "9"}, {"private", "forged"}, {"PRIVATE", "forged"},
                       {"port", 80},     {"list", {1, 2}},      {"none", Json()}};
    EXPECT_TRUE(button->advertiseServiceWithPublicData(data, "text"));
    auto pairs = button->createTXTDictionary();
    pairs.erase("version");
    for (const auto& [key, value] :
         std::map<std::string, std::string>{{"Version", "9"},
                                            {"port", "80"},
                                            {"list", "[1,2]"},
                                            {"private", button->support->encodeString("text")}}) {
        pairs[key] = toBytes(value);
    }
    EXPECT_EQ(service().record, dataFromTXTRecordDictionary(pairs));

    EXPECT_TRUE(button->advertiseServiceWithPublicData({{"Private", "forged"}}, Json()));
    EXPECT_EQ(service().record, record({}));
}

TEST_F(SupportButtonAdvertisingTest, TellsWhatBecameOfTheRecord) {
    EXPECT_TRUE(
        button->advertiseServiceWithPublicData({{"a", "b"}}, "no key without configuration"));
    EXPECT_EQ(service().record, record({{"a", "b"}}));
    const auto listener = service().delegate.lock();
    listener->netServiceDidPublish(service());
    listener->netServiceDidNotPublish(service(), {{"code", -26}});
    EXPECT_THAT(told(), ElementsAre("advertised _connect._tcp", "not advertised {\"code\":-26}"));

    fakes.netServices->available = false;
    EXPECT_FALSE(button->advertiseServiceWithPublicData(Json(), Json()));
    EXPECT_EQ(button->service, nullptr);
    EXPECT_THAT(fakes.log->lines,
                ElementsAre("An error occurred initializing the NSNetService object."));
    EXPECT_THAT(told(), IsEmpty());
}

}  // namespace
}  // namespace supportsdk::test
