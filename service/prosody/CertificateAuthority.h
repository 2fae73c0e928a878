#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace supportsdk::service {

/// A certificate with its private key, as PEM files. The key is readable by its owner only.
struct CertificateFiles {
    std::filesystem::path certificate;
    std::filesystem::path key;
};

struct CertificateRequest {
    /// Becomes NAME.crt and NAME.key in the authority's folder.
    std::string name;
    std::vector<std::string> dnsNames = {};
    /// Numeric IPv4 or IPv6 addresses.
    std::vector<std::string> addresses = {};
    /// Counted from now; a negative end makes a certificate that has expired.
    std::chrono::seconds validFrom = -std::chrono::hours{1};
    std::chrono::seconds validTo = std::chrono::hours{24 * 30};
};

/// A private certificate authority with a fresh key, made at run time (X.509, ECDSA P-256) for
/// servers on this machine.
class CertificateAuthority {
 public:
    /// Makes the authority and writes its certificate into `folder`, which is created when missing.
    /// Its own key stays in memory. Null when that fails.
    static std::unique_ptr<CertificateAuthority> create(const std::filesystem::path& folder);

    ~CertificateAuthority();
    CertificateAuthority(const CertificateAuthority&) = delete;
    CertificateAuthority& operator=(const CertificateAuthority&) = delete;

    /// What clients must trust (PEM).
    [[nodiscard]] std::filesystem::path certificate() const;

    /// A server certificate signed by this authority; nothing when an address is malformed or a
    /// file cannot be written.
    [[nodiscard]] std::optional<CertificateFiles> issue(const CertificateRequest& request);

 private:
    struct State;
    explicit CertificateAuthority(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

}  // namespace supportsdk::service
