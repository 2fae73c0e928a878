// What a host pays for loading the kit before it uses it: no thread and no descriptor. And the
// resources are found from where the library lies.
#include <backends/LinuxPlatform.h>
#include <backends/asio/AsioMainQueue.h>
#include <supportsdk/platform/Version.h>

#include <filesystem>
#include <iostream>
#include <iterator>

namespace {

long entries(const char* folder) {
    const std::filesystem::directory_iterator all(folder);
    return std::distance(begin(all), end(all));
}

int failures = 0;

void expect(bool holds, const char* what) {
    if (holds) return;
    std::cerr << "not so: " << what << '\n';
    ++failures;
}

}  // namespace

int main() {
    const long threads = entries("/proc/self/task");
    const long descriptors = entries("/proc/self/fd");
    expect(threads == 1, "one thread after loading the library");

    const auto loop = std::make_shared<supportsdk::AsioMainQueue>();
    const auto platform = supportsdk::linuxPlatform({.mainQueue = loop, .languages = {"de"}});
    expect(entries("/proc/self/task") == threads, "the platform starts no thread");
    expect(entries("/proc/self/fd") == descriptors, "the platform opens no descriptor");

    expect(platform->http && platform->xmpp && platform->reachability, "network is there");
    expect(platform->userDefaults && platform->images && platform->urlOpener, "the rest is there");
    expect(platform->presenter && platform->progress && platform->traits &&
               platform->globalAppearance && platform->netServices,
           "screens and services are there");
    expect(platform->kitBundle->identifier() == "com.goquorrand.supportsdk", "resources are found");
    expect(platform->kitBundle->info("CFBundleShortVersionString") == supportsdk::libraryVersion(),
           "one version");
    expect(platform->localizer->localized("Cancel") == "Abbrechen", "translations are found");
    expect(!supportsdk::linuxPlatform({}), "no platform without a main queue");
    return failures;
}
