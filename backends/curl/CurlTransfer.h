#pragma once

#include <array>
#include <chrono>
#include <functional>

#include "backends/curl/EasyHandle.h"
#include "backends/curl/HttpHop.h"

namespace supportsdk {

/// One request on its way, redirects included. Made on any thread, used on the worker's.
class CurlTransfer {
 public:
    using Clock = std::chrono::steady_clock;
    using Done = std::function<void(HttpResponse)>;

    /// `done` takes the outcome, on the worker's thread.
    CurlTransfer(HttpRequest request, HttpHop first, Done done);

    /// Prepares `easy` for the next exchange; false when there is no memory for it.
    [[nodiscard]] bool prepare(EasyPtr easy, TrustStore& trust);

    /// The exchange ended with `code`. True when a redirect asks for another one.
    [[nodiscard]] bool followsRedirect(CURLcode code);

    /// Hands over the outcome; once.
    void finish(CURLcode code);

    /// When it has failed unless something moves before.
    [[nodiscard]] Clock::time_point deadline() const;

    [[nodiscard]] CURL* easy() const { return easy_.get(); }
    [[nodiscard]] EasyPtr takeEasy() { return std::move(easy_); }
    /// For the log: method, host and cause; "" after a success.
    [[nodiscard]] std::string failure() const;

 private:
    static std::size_t onHeader(char* data, std::size_t one, std::size_t size, void* self);
    static std::size_t onBody(char* data, std::size_t one, std::size_t size, void* self);
    static int onProgress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent);
    static int onSend(void* self, char*, char*, int, int);

    [[nodiscard]] int status() const;
    [[nodiscard]] std::string location() const;
    [[nodiscard]] HttpHeaders responseHeaders() const;

    HttpRequest request_;
    HttpHop hop_;
    Done done_;
    EasyPtr easy_;
    HeaderListPtr headerList_;
    Bytes body_;
    std::size_t headerBytes_ = 0;
    bool hasWholeHead_ = false;
    curl_off_t sentBytes_ = 0;
    int sends_ = 0;
    int redirects_ = 0;
    std::string error_;
    std::array<char, CURL_ERROR_SIZE> detail_{};
    Clock::time_point moved_;
    Clock::time_point end_;
};

}  // namespace supportsdk
