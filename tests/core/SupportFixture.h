#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "supportsdk/core/Configuration.h"
#include "supportsdk/core/Support.h"
#include "tests/support/FakePlatform.h"

namespace supportsdk::test {

struct RecordingDelegate : SupportDelegate {
    void supportDidRetrieveSettings(const Json& response) override {
        retrieved.push_back(response);
    }
    void supportDidFailToRetrieveSettings(const Json& response) override {
        failed.push_back(response);
    }

    std::vector<Json> retrieved;
    std::vector<Json> failed;
};

/// A Support on a platform of fakes. Request 0 is the one for its settings.
class SupportTest : public testing::Test {
 protected:
    SupportTest() {
        fakes.kitBundle->infos = {{"CFBundleName", "SupportSDK"},
                                  {"CFBundleShortVersionString", "4.2"},
                                  {"CFBundleVersion", "77"}};
        fakes.kitBundle->files["deployment.json"] = R"({
            "productionHost": "https://api.now.example",
            "legacyDomainSuffix": ".old.example", "domainSuffix": ".now.example",
            "developerServers": {"UAT": "https://uat.now.example", "Integ": "https://i.now.example"}
        })";
        fakes.mainBundle->infos = {{"CFBundleIdentifier", "com.example.host"},
                                   {"CFBundleShortVersionString", "1.0"},
                                   {"CFBundleVersion", "100"}};
    }

    std::shared_ptr<Support> start(const Json& configuration) {
        return Support::create(configuration, delegate, fakes.platform);
    }
    std::shared_ptr<Support> start() { return start(acme); }
    /// With its settings in, so that request 1 is the test's first one.
    std::shared_ptr<Support> startWithSettings(const Json& settings = Json::object()) {
        auto support = start();
        fakes.http->answer(0, 200, settings);
        return support;
    }

    FakeUserDefaults& stored() { return fakes.defaults->fake(); }

    FakePlatform fakes;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    const Json acme = {{"apiHost", "https://api.now.example"},
                       {"apiKey", "key-of-acme"},
                       {"integrationId", "acme"},
                       {"partnerToken", "token-of-acme"},
                       {"privateKey", "private"}};
    const Json other = {{"apiHost", "https://other.example"},
                        {"integrationId", "other"},
                        {"apiKey", "key-of-other"}};
};

}  // namespace supportsdk::test
