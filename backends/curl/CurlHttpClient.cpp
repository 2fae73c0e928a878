#include "backends/curl/CurlHttpClient.h"

#include <future>
#include <unordered_map>

#include "backends/curl/CurlWorker.h"

namespace supportsdk {

/// Completions never leave the main thread: the worker knows them by number only.
struct CurlHttpClient::Pending {
    std::unordered_map<std::uint64_t, Completion> completions;
    std::uint64_t last = 0;

    void finish(std::uint64_t number, HttpResponse response) {
        auto found = completions.extract(number);
        if (!found.empty() && found.mapped()) found.mapped()(std::move(response));
    }
};

namespace {

HttpResponse failed(std::string error) {
    HttpResponse response;
    response.error = std::move(error);
    return response;
}

}  // namespace

CurlHttpClient::CurlHttpClient(CurlHttpClientOptions options)
    : mainQueue_(std::move(options.mainQueue)),
      pending_(std::make_shared<Pending>()),
      worker_(std::make_unique<CurlWorker>(std::move(options.extraAuthorities),
                                           std::move(options.log))) {}

CurlHttpClient::~CurlHttpClient() = default;

void CurlHttpClient::send(HttpRequest request, Completion completion) {
    const auto number = ++pending_->last;
    pending_->completions.emplace(number, std::move(completion));
    auto deliver = [queue = mainQueue_, pending = std::weak_ptr(pending_),
                    number](HttpResponse response) {
        queue->post([pending, number, response = std::move(response)]() mutable {
            if (const auto held = pending.lock()) held->finish(number, std::move(response));
        });
    };
    auto first = firstHop(request);
    if (auto* error = std::get_if<std::string>(&first)) {
        deliver(failed(std::move(*error)));
        return;
    }
    auto transfer = std::make_unique<CurlTransfer>(std::move(request),
                                                   std::move(std::get<HttpHop>(first)), deliver);
    if (!worker_->submit(std::move(transfer))) deliver(failed("The request could not be started."));
}

std::optional<Bytes> CurlHttpClient::read(const std::string& url, std::chrono::milliseconds limit) {
    HttpRequest request;
    request.url = url;
    request.maximumResponseBytes = maximumReadBytes;
    request.totalTimeout = limit;
    auto first = firstHop(request);
    auto* hop = std::get_if<HttpHop>(&first);
    if (!hop) return std::nullopt;
    auto outcome = std::make_shared<std::promise<HttpResponse>>();
    auto future = outcome->get_future();
    auto transfer = std::make_unique<CurlTransfer>(
        std::move(request), std::move(*hop),
        [outcome](HttpResponse response) { outcome->set_value(std::move(response)); });
    if (!worker_->submit(std::move(transfer))) return std::nullopt;
    const auto bounded = std::min(limit, std::chrono::milliseconds{std::chrono::hours{24}});
    if (future.wait_for(bounded) != std::future_status::ready) return std::nullopt;
    auto response = future.get();
    const bool succeeded = response.error.empty() && response.status / 100 == 2;
    return succeeded ? std::optional(std::move(response.body)) : std::nullopt;
}

}  // namespace supportsdk
