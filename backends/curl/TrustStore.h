#pragma once

#include <openssl/x509_vfy.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <vector>

#include "supportsdk/platform/Log.h"

namespace supportsdk {

/// The certificate authorities that servers are checked against: the system's and the host's own.
/// Read from files with the first connection that needs them and then shared by all, since reading
/// the system's bundle takes longer than a handshake. One thread.
class TrustStore {
 public:
    TrustStore(std::vector<std::filesystem::path> extraAuthorities, std::shared_ptr<Log> log);

    /// The store; null when OpenSSL has no memory for it.
    [[nodiscard]] X509_STORE* get();

 private:
    void load();

    std::vector<std::filesystem::path> extraAuthorities_;
    std::shared_ptr<Log> log_;
    std::unique_ptr<X509_STORE, decltype(&X509_STORE_free)> store_{nullptr, X509_STORE_free};
    std::chrono::steady_clock::time_point loaded_;
};

}  // namespace supportsdk
