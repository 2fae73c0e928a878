#include <backends/LinuxPlatform.h>
#include <backends/asio/AsioMainQueue.h>
#include <supportsdk/launcher/SupportButton.h>

struct Host : supportsdk::SupportButtonDelegate {
    void supportButtonDisplayViewController(
        supportsdk::SupportButton&, std::shared_ptr<supportsdk::ScreenController> screen) override {
        shown = std::move(screen);  // hand it to your user interface
    }
    std::shared_ptr<supportsdk::ScreenController> shown;
};

int main() {
    auto loop = std::make_shared<supportsdk::AsioMainQueue>();
    auto host = std::make_shared<Host>();
    auto button = supportsdk::SupportButton::create(supportsdk::linuxPlatform({.mainQueue = loop}));
    button->delegate = host;
    button->loadConfigurationJSON(R"({"apiHost": "https://api.example.com", "integrationId": "acme",
                                      "apiKey": "secret"})", supportsdk::Json());
    button->clicked();  // what your button does when it is tapped
    loop->poll();       // or loop->run(), or a loop of your own behind supportsdk::MainQueue
}
