#include "service/prosody/CertificateAuthority.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>
#include <unistd.h>

namespace supportsdk::service {

namespace {

template <auto Free>
struct Deleter {
    template <typename T>
    void operator()(T* object) const {
        Free(object);
    }
};
using Key = std::unique_ptr<EVP_PKEY, Deleter<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Deleter<X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Deleter<X509_EXTENSION_free>>;

struct Validity {
    std::chrono::seconds from;
    std::chrono::seconds to;
};

Certificate blankCertificate(EVP_PKEY& key, const std::string& commonName, Validity validity) {
    Certificate certificate(X509_new());
    X509_set_version(certificate.get(), X509_VERSION_3);
    std::uint64_t serial = 0;
    RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial);
    ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate.get()), serial >> 1U);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), validity.from.count());
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), validity.to.count());
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>(commonName.c_str()), -1, -1,
                               0);
    X509_set_pubkey(certificate.get(), &key);
    return certificate;
}

bool addExtension(X509& certificate, X509& issuer, int nid, const std::string& value) {
    X509V3_CTX context;
    X509V3_set_ctx(&context, &issuer, &certificate, nullptr, nullptr, 0);
    const Extension extension(X509V3_EXT_conf_nid(nullptr, &context, nid, value.c_str()));
    return extension && X509_add_ext(&certificate, extension.get(), -1) == 1;
}

bool writePem(const std::filesystem::path& path, mode_t mode, const auto& write) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode);
    std::FILE* file = descriptor < 0 ? nullptr : fdopen(descriptor, "w");
    if (!file) return false;
    const bool written = write(file) == 1;
    return std::fclose(file) == 0 && written;
}

bool writeCertificate(const std::filesystem::path& path, X509& certificate) {
    return writePem(path, 0644,
                    [&](std::FILE* file) { return PEM_write_X509(file, &certificate); });
}

bool writeKey(const std::filesystem::path& path, EVP_PKEY& key) {
    return writePem(path, 0600, [&](std::FILE* file) {
        return PEM_write_PrivateKey(file, &key, nullptr, nullptr, 0, nullptr, nullptr);
    });
}

// A comma would begin another entry in OpenSSL's notation.
bool isPlain(const std::string& name) {
    return !name.empty() && name.find_first_of(",:\n") == std::string::npos;
}

std::optional<std::string> subjectNames(const CertificateRequest& request) {
    std::string names;
    for (const auto& name : request.dnsNames) {
        if (!isPlain(name)) return std::nullopt;
        names += (names.empty() ? "DNS:" : ",DNS:") + name;
    }
    for (const auto& address : request.addresses) {
        if (address.find_first_of(",\n") != std::string::npos) return std::nullopt;
        names += (names.empty() ? "IP:" : ",IP:") + address;
    }
    return names;
}

}  // namespace

struct CertificateAuthority::State {
    std::filesystem::path folder;
    Key key;
    Certificate certificate;
};

CertificateAuthority::CertificateAuthority(std::unique_ptr<State> state)
    : state_(std::move(state)) {}
CertificateAuthority::~CertificateAuthority() = default;

std::unique_ptr<CertificateAuthority> CertificateAuthority::create(
    const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    auto state = std::make_unique<State>();
    state->folder = folder;
    state->key = Key(EVP_EC_gen("P-256"));
    if (!state->key) return nullptr;
    state->certificate = blankCertificate(*state->key, "SupportSDK local authority",
                                          {-std::chrono::hours{24}, std::chrono::hours{24 * 365}});
    X509& own = *state->certificate;
    X509_set_issuer_name(&own, X509_get_subject_name(&own));
    const bool made = addExtension(own, own, NID_basic_constraints, "critical,CA:TRUE") &&
                      addExtension(own, own, NID_key_usage, "critical,keyCertSign,cRLSign") &&
                      addExtension(own, own, NID_subject_key_identifier, "hash") &&
                      X509_sign(&own, state->key.get(), EVP_sha256()) > 0;
    if (!made || !writeCertificate(folder / "authority.crt", own)) return nullptr;
    return std::unique_ptr<CertificateAuthority>(new CertificateAuthority(std::move(state)));
}

std::filesystem::path CertificateAuthority::certificate() const {
    return state_->folder / "authority.crt";
}

std::optional<CertificateFiles> CertificateAuthority::issue(const CertificateRequest& request) {
    const auto names = subjectNames(request);
    const Key key(EVP_EC_gen("P-256"));
    if (!key || !names || names->empty()) return std::nullopt;
    // Some verifiers want the start before the end even of what has expired.
    const Validity validity{
        std::min(request.validFrom, request.validTo - std::chrono::seconds{3600}), request.validTo};
    const Certificate certificate = blankCertificate(*key, request.name, validity);
    X509& authority = *state_->certificate;
    X509_set_issuer_name(certificate.get(), X509_get_subject_name(&authority));
    const bool made =
        addExtension(*certificate, authority, NID_subject_alt_name, *names) &&
        addExtension(*certificate, authority, NID_basic_constraints, "CA:FALSE") &&
        addExtension(*certificate, authority, NID_ext_key_usage, "serverAuth") &&
        addExtension(*certificate, authority, NID_authority_key_identifier, "keyid") &&
        X509_sign(certificate.get(), state_->key.get(), EVP_sha256()) > 0;
    CertificateFiles files{state_->folder / (request.name + ".crt"),
                           state_->folder / (request.name + ".key")};
    if (!made || !writeCertificate(files.certificate, *certificate) || !writeKey(files.key, *key)) {
        return std::nullopt;
    }
    return files;
}

}  // namespace supportsdk::service
