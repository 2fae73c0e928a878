#include <backends/LinuxPlatform.h>
#include <backends/asio/AsioMainQueue.h>
#include <supportsdk/core/Support.h>
#include <supportsdk/proactive/SupportSDKProactive.h>
#include <supportsdk/proactive/files/FileHandle.h>

int main() {
    auto loop = std::make_shared<supportsdk::AsioMainQueue>();  // or a MainQueue over your own loop
    auto diagnostics = supportsdk::SupportSDKProactive::create(
        "support", supportsdk::Json{{"members_users_email", "jo@example.com"}},
        supportsdk::linuxPlatform({.mainQueue = loop, .mainBundleFolder = "/opt/app/share"}));
    // Wherever and whenever you find something out:
    diagnostics->putAppHealthCheck("memory", 2, "81 MiB left");
    diagnostics->putAppCloudCheck("orders.example.com", 0, std::nullopt);
    diagnostics->putAppDumpCheckWithFile(
        supportsdk::FileHandle::forReadingAtPath("/var/log/app.log"), 1, "after a restart");
    // Nothing is sent without this; before the settings are in, checks go back to the queue.
    supportsdk::Registration timer;
    std::function<void()> flush = [&] {
        if (diagnostics->sdk) diagnostics->sdk->getSettings();  // nothing when they are in
        diagnostics->checkQueueFlushHandler();
        timer = loop->after(std::chrono::seconds{20}, flush);
    };
    timer = loop->after(std::chrono::seconds{2}, flush);
    loop->run();
}
