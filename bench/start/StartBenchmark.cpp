// From loadConfigurationJSON to supportButtonDidGetSettings, and how much of it is the server's own
// time: on a platform that is new (first thread, first connection, first suite of user defaults)
// and on one in use.

#include <httplib.h>
#include <stdlib.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "backends/LinuxPlatform.h"
#include "backends/asio/AsioMainQueue.h"
#include "supportsdk/core/Error.h"
#include "supportsdk/launcher/SupportButton.h"

namespace {

using namespace supportsdk;
using Clock = std::chrono::steady_clock;
using Micros = std::chrono::duration<double, std::micro>;

constexpr int kLoads = 300;

/// Settings of the layout with components, journeys off, so that nothing else is awaited.
Json settings() {
    Json components = Json::object();
    for (const char* name : {"chat", "callme", "kb", "website", "email", "phone"}) {
        components[name] = {{"enabled", true}, {"title", std::string("Channel ") + name}};
    }
    components["kb"]["enabled"] = false;
    return {
        {"advancedConfiguration",
         {{"version", "2"},
          {"components", components},
          {"defaultMember", {{"memberId", "1"}, {"memberUserId", "2"}, {"memberLocationId", "3"}}},
          {"menuAppearance", {{"heading", "Support"}, {"style", "iconlist"}}}}}};
}

class Server {
 public:
    Server() {
        server_.Get("/sdk/v1/app/get", [this](const httplib::Request&, auto& response) {
            const auto start = Clock::now();
            response.set_content(settings().dump(), "application/json");
            ownTime = Micros(Clock::now() - start).count();
        });
        server_.set_tcp_nodelay(true);
        server_.set_keep_alive_max_count(1000000);
        port = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
        while (!server_.is_running()) std::this_thread::yield();
    }
    ~Server() {
        server_.stop();
        thread_.join();
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    int port = 0;
    std::atomic<double> ownTime = 0;

 private:
    httplib::Server server_;
    std::thread thread_;
};

struct Host : SupportButtonDelegate {
    explicit Host(std::shared_ptr<AsioMainQueue> loop) : queue(std::move(loop)) {}
    void supportButtonDidGetSettings(SupportButton&) override {
        done = Clock::now();
        queue->stop();
    }
    void supportButtonDidFailToGetSettingsWithError(SupportButton&, const SupportError&) override {
        std::fprintf(stderr, "the settings could not be retrieved\n");
        std::exit(1);
    }

    std::shared_ptr<AsioMainQueue> queue;
    Clock::time_point done;
};

/// One load on a fresh button; the time until the callback, less the server's own.
double load(const PlatformPtr& platform, const std::shared_ptr<AsioMainQueue>& queue,
            Server& server) {
    const auto host = std::make_shared<Host>(queue);
    const auto button = SupportButton::create(platform);
    button->delegate = host;
    const Json configuration = {{"apiHost", "http://127.0.0.1:" + std::to_string(server.port)},
                                {"integrationId", "bench"},
                                {"apiKey", "key"}};
    const auto text = configuration.dump();
    const auto start = Clock::now();
    button->loadConfigurationJSON(text, Json());
    queue->run();
    return Micros(host->done - start).count() - server.ownTime;
}

std::shared_ptr<Platform> freshPlatform(const std::shared_ptr<AsioMainQueue>& queue,
                                        const std::filesystem::path& folder) {
    LinuxPlatformOptions options;
    options.mainQueue = queue;
    options.dataFolder = folder;
    options.logFile = folder / "log";
    return linuxPlatform(options);
}

void print(const char* name, std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const auto at = [&values](double share) {
        return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))] /
               1000;
    };
    std::printf("%-22s median %7.3f ms   p95 %7.3f ms   max %7.3f ms   (%zu loads)\n", name,
                at(0.5), at(0.95), at(1), values.size());
}

}  // namespace

int main() {
    std::string name = (std::filesystem::temp_directory_path() / "bench-start-XXXXXX").string();
    const std::filesystem::path folder = mkdtemp(name.data());
    Server server;
    const auto queue = std::make_shared<AsioMainQueue>();

    std::vector<double> first;
    std::vector<double> again;
    for (int number = 0; number < kLoads / 10; ++number) {
        const auto own = folder / std::to_string(number);
        std::filesystem::create_directories(own);
        first.push_back(load(freshPlatform(queue, own), queue, server));
        again.push_back(load(freshPlatform(queue, own), queue, server));
    }
    const auto platform = freshPlatform(queue, folder);
    std::vector<double> warm;
    for (int number = 0; number < kLoads; ++number) warm.push_back(load(platform, queue, server));

    std::printf(
        "loadConfigurationJSON to supportButtonDidGetSettings, less the server's own time\n");
    print("very first start", first);
    print("later start", again);
    print("reload", warm);
    std::filesystem::remove_all(folder);
    return 0;
}
