#include "backends/curl/EasyHandle.h"

#include <openssl/ssl.h>

namespace supportsdk {
namespace {

/// libcurl drops a header that ends after its colon; a semicolon in its place sends it empty.
std::string headerLine(const std::string& name, const std::string& value) {
    const bool isBlank = value.find_first_not_of(" \t") == std::string::npos;
    return isBlank ? name + ";" : name + ": " + value;
}

bool append(HeaderListPtr& list, const std::string& line) {
    curl_slist* longer = curl_slist_append(list.get(), line.c_str());
    if (!longer) return false;
    static_cast<void>(list.release());
    list.reset(longer);
    return true;
}

CURLcode useTrustStore(CURL*, void* sslContext, void* trust) {
    X509_STORE* store = static_cast<TrustStore*>(trust)->get();
    if (!store) return CURLE_OUT_OF_MEMORY;
    SSL_CTX_set1_cert_store(static_cast<SSL_CTX*>(sslContext), store);
    return CURLE_OK;
}

void configureMethod(CURL* easy, const HttpHop& hop, const Bytes& body) {
    if (hop.sendsBody) {
        const auto size = static_cast<curl_off_t>(body.size());
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, size);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS,
                         size ? static_cast<const void*>(body.data()) : "");
    }
    if (hop.method == "HEAD") {
        curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
    } else if (hop.method != (hop.sendsBody ? "POST" : "GET")) {
        curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, hop.method.c_str());
    }
}

void configureTls(CURL* easy, TrustStore& trust) {
    constexpr long kAtMostTls13 = CURL_SSLVERSION_TLSv1_3
                                  << 16;  // ..._MAX_TLSv1_3, overflowing its enum
    curl_easy_setopt(easy, CURLOPT_SSLVERSION, kAtMostTls13);
    // The store brings all authorities with it; libcurl would read its own for each connection.
    curl_easy_setopt(easy, CURLOPT_CAINFO, nullptr);
    curl_easy_setopt(easy, CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(easy, CURLOPT_SSL_CTX_FUNCTION, useTrustStore);
    curl_easy_setopt(easy, CURLOPT_SSL_CTX_DATA, &trust);
}

}  // namespace

HeaderListPtr makeHeaderList(const HttpHop& hop) {
    HeaderListPtr list;
    // Neither is libcurl's to add: waiting for "100 Continue" delays every longer post by a second,
    // and a body is what the caller says it is.
    bool complete = append(list, "Expect:");
    const auto isContentType = [](const auto& header) {
        return curl_strequal(header.first.c_str(), "Content-Type");
    };
    if (std::none_of(hop.headers.begin(), hop.headers.end(), isContentType)) {
        complete = complete && append(list, "Content-Type:");
    }
    for (const auto& [name, value] : hop.headers) {
        complete = complete && append(list, headerLine(name, value));
    }
    return complete ? std::move(list) : nullptr;
}

void configureEasy(CURL* easy, const HttpHop& hop, const curl_slist* headers, const Bytes& body,
                   std::chrono::milliseconds connectTimeout, TrustStore& trust) {
    curl_easy_reset(easy);
    curl_easy_setopt(easy, CURLOPT_URL, hop.address.text().c_str());
    curl_easy_setopt(easy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(easy, CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers);
    configureMethod(easy, hop, body);
    configureTls(easy, trust);
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_2TLS});
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    // A name that is still being looked up must not hold up whoever ends the transfer.
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
    curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    if (hop.address.isLoopback()) curl_easy_setopt(easy, CURLOPT_PROXY, "");
    // Shared out by libcurl among the addresses of a host, so that a dead one leaves time for the
    // next.
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(connectTimeout.count()));
}

}  // namespace supportsdk
