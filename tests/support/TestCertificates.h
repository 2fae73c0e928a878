#pragma once

#include <openssl/ssl.h>

#include <memory>
#include <string>

namespace supportsdk::test {

/// What may be wrong with a server certificate.
enum class CertificateFlaw { none, expired, otherName };

/// A certificate authority made for one test, with a new key each time.
class TestAuthority {
 public:
    explicit TestAuthority(const std::string& name = "Test authority");

    /// The authority's own certificate.
    [[nodiscard]] std::string pem() const;

    /// A server's TLS context with a certificate for localhost and 127.0.0.1, signed by this
    /// authority.
    [[nodiscard]] std::shared_ptr<SSL_CTX> serverContext(
        CertificateFlaw flaw = CertificateFlaw::none) const;

    /// The same certificate and its key as PEM, for servers that read files.
    struct Files {
        std::string certificate;
        std::string key;
    };
    [[nodiscard]] Files serverFiles(CertificateFlaw flaw = CertificateFlaw::none) const;

 private:
    std::shared_ptr<EVP_PKEY> key_;
    std::shared_ptr<X509> certificate_;
};

}  // namespace supportsdk::test
