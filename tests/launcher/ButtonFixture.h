#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "supportsdk/core/Error.h"
#include "supportsdk/core/EventManager.h"
#include "supportsdk/launcher/SupportButton.h"
#include "tests/support/FakePlatform.h"

namespace supportsdk::test {

/// Writes down what the button tells, in short words, and keeps what it hands over.
class RecordingHost : public SupportButtonDelegate, public SupportButton::View {
 public:
    void supportButtonDidGetSettings(SupportButton&) override { note("settings"); }
    void supportButtonDidFailToGetSettingsWithError(SupportButton&,
                                                    const SupportError& error) override {
        note("no settings: " + words(error));
    }
    void supportButtonDidGetCustomer(SupportButton&) override { note("customer"); }
    void supportButtonDidFailToGetCustomerWithError(SupportButton&,
                                                    const SupportError& error) override {
        note("no customer: " + words(error));
    }
    void supportButtonDidFailWithError(SupportButton&, const SupportError& error) override {
        note("failed: " + words(error));
    }
    void supportButtonDisplaySupportMenu(SupportButton&, ActionSheet popup) override {
        sheet = std::move(popup);
        note("popup");
    }
    void supportButtonDisplayView(SupportButton&, std::shared_ptr<SupportMenuView> view) override {
        menu = std::move(view);
        note("menu");
    }
    void supportButtonDisplayViewController(SupportButton&,
                                            std::shared_ptr<ScreenController> shown) override {
        screen = std::move(shown);
        note(std::string(screen->className()));
    }
    void supportButtonDidRequestExit(SupportButton&) override { note("exit"); }
    void supportButtonDidAdvertiseService(SupportButton&, NetService& service) override {
        note("advertised " + service.type());
    }
    void supportButtonDidFailToAdvertiseService(SupportButton&, const Json& errors) override {
        note("not advertised " + errors.dump());
    }
    void badgeDidChange(bool visible, const std::string& text) override {
        note(visible ? "badge " + text : "no badge");
    }

    std::vector<std::string> told;
    std::function<void()> onEach;
    ActionSheet sheet;
    std::shared_ptr<SupportMenuView> menu;
    std::shared_ptr<ScreenController> screen;

 private:
    static std::string words(const SupportError& error) {
        return error.localizedDescription + " | " + error.localizedFailureReason.value_or("-");
    }
    void note(const std::string& what) {
        told.push_back(what);
        if (onEach) onEach();
    }
};

/// A button on a platform of fakes, with a host that listens.
class ButtonTest : public testing::Test {
 protected:
    ButtonTest() {
        button->delegate = host;
        button->view = host;
    }

    /// Settings of the second layout with these components, and `more` beside them.
    static Json settings(Json components, const Json& more = Json::object()) {
        Json advanced = more;
        advanced["version"] = "2";
        advanced["components"] = std::move(components);
        advanced.emplace("defaultMember",
                         Json{{"memberId", "m"}, {"memberUserId", "u"}, {"memberLocationId", "l"}});
        return {{"advancedConfiguration", advanced}};
    }

    void load(const Json& customer = Json()) {
        button->loadConfigurationJSON(configuration, customer);
    }
    /// Forgets what that told and requested.
    void loadWith(const Json& components, const Json& more = Json::object()) {
        load();
        fakes.http->answerTo("/app/get", 200, settings(components, more));
        told();
        events();
        requests();
    }

    // Each gives what came since its latest call, in order.
    std::vector<std::string> told() { return std::exchange(host->told, {}); }
    std::vector<std::string> events() { return std::exchange(events_, {}); }
    std::vector<std::string> requests() {
        std::vector<std::string> paths;
        for (; seen_ < fakes.http->sent.size(); ++seen_) {
            const auto& request = fakes.http->request(seen_);
            paths.push_back(request.method + " " + request.url.substr(request.url.find("/v1") + 3));
        }
        return paths;
    }

    /// Of the latest request to an address with `part` in it.
    Json bodyOf(const std::string& part) const {
        for (auto sent = fakes.http->sent.rbegin(); sent != fakes.http->sent.rend(); ++sent) {
            if (sent->request.url.find(part) != std::string::npos) {
                return Json::parse(toText(sent->request.body));
            }
        }
        return {};
    }

    inline static const std::string configuration =
        R"({"apiHost":"https://api.example.test","integrationId":"i-1","apiKey":"k"})";

    FakePlatform fakes;
    std::shared_ptr<RecordingHost> host = std::make_shared<RecordingHost>();
    std::shared_ptr<SupportButton> button = SupportButton::create(fakes.platform);

 private:
    std::size_t seen_ = 0;
    std::vector<std::string> events_;
    Registration observation_ = EventManager::addObserver(
        [this](const Notification& event) { events_.push_back(event.object.text().value_or("")); });
};

}  // namespace supportsdk::test
