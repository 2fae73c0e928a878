// What a REST call through the kit's HTTP client costs beside libcurl alone: the same server, the
// same call over a kept connection, one after the other in alternation.

#include <curl/curl.h>
#include <httplib.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

#include "backends/asio/AsioMainQueue.h"
#include "backends/curl/CurlHttpClient.h"

namespace {

using supportsdk::AsioMainQueue;
using supportsdk::CurlHttpClient;
using supportsdk::HttpHeaders;
using supportsdk::HttpRequest;
using supportsdk::HttpResponse;
using supportsdk::Json;
using Clock = std::chrono::steady_clock;
using Micros = std::chrono::duration<double, std::micro>;

constexpr int kWarmUp = 500;
constexpr int kCalls = 5000;

/// A page of a customer's history, as the service would send it.
Json history() {
    Json results = Json::array();
    for (int i = 0; i < 20; ++i) {
        results.push_back({{"id", std::to_string(1000 + i)},
                           {"description", "The picture freezes after some minutes"},
                           {"status", i % 3 ? "resolved" : "open"},
                           {"created", "2026-01-31T12:00:30+00:00"},
                           {"technician", {{"name", "Ada"}, {"rating", i % 5}}}});
    }
    return {{"results", results}};
}

/// A server on loopback that makes each answer anew.
class Server {
 public:
    Server() {
        server_.Post("/sdk/v1/issues/history", [](const httplib::Request& request, auto& response) {
            const Json body = Json::parse(request.body, nullptr, false);
            response.status = body.is_object() ? 200 : 400;
            response.set_content(history().dump(), "application/json");
        });
        server_.set_tcp_nodelay(true);
        server_.set_keep_alive_max_count(1000000);
        port_ = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
        while (!server_.is_running()) std::this_thread::yield();
    }
    ~Server() {
        server_.stop();
        thread_.join();
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    [[nodiscard]] std::string url() const {
        return "http://127.0.0.1:" + std::to_string(port_) + "/sdk/v1/issues/history";
    }

 private:
    httplib::Server server_;
    int port_ = 0;
    std::thread thread_;
};

const std::string& requestBody() {
    static const std::string body = R"({"members_locations_id":"42","page":1})";
    return body;
}

const HttpHeaders& requestHeaders() {
    static const HttpHeaders headers = {{"Content-Type", "application/json"},
                                        {"X-Quorrand-Token", "0123456789abcdef"},
                                        {"X-Quorrand-Integration", "17"},
                                        {"X-Quorrand-User-Agent", "bench/1.0"}};
    return headers;
}

/// libcurl alone: one easy handle, set up once and kept.
class PlainCurl {
 public:
    explicit PlainCurl(const std::string& url) : easy_(curl_easy_init()) {
        for (const auto& [name, value] : requestHeaders()) {
            headers_ = curl_slist_append(headers_, (name + ": " + value).c_str());
        }
        curl_easy_setopt(easy_, CURLOPT_URL, url.c_str());
        curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, headers_);
        curl_easy_setopt(easy_, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(easy_, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
        curl_easy_setopt(easy_, CURLOPT_POSTFIELDS, requestBody().c_str());
        curl_easy_setopt(easy_, CURLOPT_WRITEFUNCTION, collect);
        curl_easy_setopt(easy_, CURLOPT_WRITEDATA, &body_);
    }
    ~PlainCurl() {
        curl_easy_cleanup(easy_);
        curl_slist_free_all(headers_);
    }
    PlainCurl(const PlainCurl&) = delete;
    PlainCurl& operator=(const PlainCurl&) = delete;

    std::size_t call() {
        body_.clear();
        long status = 0;
        if (curl_easy_perform(easy_) != CURLE_OK) return 0;
        curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &status);
        return status == 200 ? body_.size() : 0;
    }

 private:
    static std::size_t collect(char* data, std::size_t, std::size_t size, void* body) {
        static_cast<std::string*>(body)->append(data, size);
        return size;
    }

    CURL* easy_;
    curl_slist* headers_ = nullptr;
    std::string body_;
};

/// The kit's client, with its completion on the main queue of a host without a loop.
class Kit {
 public:
    explicit Kit(std::string url) : url_(std::move(url)) {}

    std::size_t call() {
        HttpRequest request;
        request.method = "POST";
        request.url = url_;
        request.headers = requestHeaders();
        request.body = supportsdk::toBytes(requestBody());
        std::optional<HttpResponse> response;
        client_.send(std::move(request), [&](HttpResponse got) { response = std::move(got); });
        while (!response) queue_->runOne(std::chrono::seconds{10});
        return response->error.empty() && response->status == 200 ? response->body.size() : 0;
    }

 private:
    std::string url_;
    std::shared_ptr<AsioMainQueue> queue_ = std::make_shared<AsioMainQueue>();
    CurlHttpClient client_{{queue_, {}, nullptr}};
};

template <typename Caller>
double timed(Caller& caller) {
    const auto before = Clock::now();
    if (caller.call() == 0) {
        std::fputs("a call failed\n", stderr);
        std::exit(1);
    }
    return Micros(Clock::now() - before).count();
}

double median(std::vector<double> times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

}  // namespace

int main() {
    const Server server;
    PlainCurl plain(server.url());
    Kit kit(server.url());
    std::vector<double> plainTimes;
    std::vector<double> kitTimes;
    for (int i = 0; i < kWarmUp + kCalls; ++i) {
        const double plainTime = timed(plain);
        const double kitTime = timed(kit);
        if (i < kWarmUp) continue;
        plainTimes.push_back(plainTime);
        kitTimes.push_back(kitTime);
    }
    const double plainMedian = median(plainTimes);
    const double kitMedian = median(kitTimes);
    std::printf("REST call over a kept connection, median of %d\n", kCalls);
    std::printf("  libcurl alone, kept handle  %8.1f us\n", plainMedian);
    std::printf("  kit, completion on main     %8.1f us\n", kitMedian);
    std::printf("  ratio                       %8.2f\n", kitMedian / plainMedian);
}
