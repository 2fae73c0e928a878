#include "backends/curl/TrustStore.h"

#include <curl/curl.h>
#include <openssl/err.h>
#include <openssl/x509.h>

namespace supportsdk {
namespace {

// The system's authorities change with its updates, and a host may run for months.
constexpr auto kLifetime = std::chrono::hours{24};

void addSystemAuthorities(X509_STORE* store) {
    const auto* curl = curl_version_info(CURLVERSION_NOW);
    if (curl->cainfo) X509_STORE_load_file(store, curl->cainfo);
    if (curl->capath) X509_STORE_load_path(store, curl->capath);
    if (!curl->cainfo && !curl->capath) X509_STORE_set_default_paths(store);
}

}  // namespace

TrustStore::TrustStore(std::vector<std::filesystem::path> extraAuthorities,
                       std::shared_ptr<Log> log)
    : extraAuthorities_(std::move(extraAuthorities)), log_(std::move(log)) {}

X509_STORE* TrustStore::get() {
    if (!store_ || std::chrono::steady_clock::now() - loaded_ > kLifetime) load();
    return store_.get();
}

void TrustStore::load() {
    store_.reset(X509_STORE_new());
    loaded_ = std::chrono::steady_clock::now();
    if (!store_) return;
    // As libcurl does for stores of its own: an intermediate authority may be what is trusted.
    X509_STORE_set_flags(store_.get(), X509_V_FLAG_TRUSTED_FIRST | X509_V_FLAG_PARTIAL_CHAIN);
    addSystemAuthorities(store_.get());
    for (const auto& file : extraAuthorities_) {
        if (X509_STORE_load_file(store_.get(), file.c_str()) == 1) continue;
        if (log_) log_->write("HTTP: no certificate authority could be read from " + file.string());
    }
    ERR_clear_error();
}

}  // namespace supportsdk
