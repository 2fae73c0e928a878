#pragma once

#include <curl/curl.h>

#include <memory>

#include "backends/curl/HttpHop.h"
#include "backends/curl/TrustStore.h"

namespace supportsdk {

struct EasyDeleter {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using EasyPtr = std::unique_ptr<CURL, EasyDeleter>;
using HeaderListPtr = std::unique_ptr<curl_slist, EasyDeleter>;

/// The request headers as libcurl takes them. Null when there is no memory.
[[nodiscard]] HeaderListPtr makeHeaderList(const HttpHop& hop);

/// Resets `easy` and sets it up for one exchange: no redirects, no other protocols, no signals,
/// certificates verified against `trust`. `headers` and `body` must outlive the exchange; callbacks
/// are left to the caller.
void configureEasy(CURL* easy, const HttpHop& hop, const curl_slist* headers, const Bytes& body,
                   std::chrono::milliseconds connectTimeout, TrustStore& trust);

}  // namespace supportsdk
