#include <backends/LinuxPlatform.h>
#include <backends/asio/AsioMainQueue.h>
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
    // Now and then, once the settings are in; nothing is sent without it:
    diagnostics->checkQueueFlushHandler();
    loop->poll();  // or loop->run()
}
