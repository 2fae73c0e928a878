#include "tests/support/TestCertificates.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <stdexcept>

namespace supportsdk::test {
namespace {

constexpr long kHour = 3600;

template <typename T>
T* must(T* made) {
    if (!made) throw std::runtime_error("OpenSSL refused");
    return made;
}

std::shared_ptr<EVP_PKEY> makeKey() {
    return {must(EVP_EC_gen("P-256")), EVP_PKEY_free};
}

void addExtension(X509* certificate, X509* issuer, int kind, const char* value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    X509_EXTENSION* extension = must(X509V3_EXT_conf_nid(nullptr, &context, kind, value));
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

std::shared_ptr<X509> makeCertificate(const char* name, EVP_PKEY* key, long serial) {
    std::shared_ptr<X509> made(must(X509_new()), X509_free);
    X509_set_version(made.get(), X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(made.get()), serial);
    X509_gmtime_adj(X509_getm_notBefore(made.get()), -48 * kHour);
    X509_gmtime_adj(X509_getm_notAfter(made.get()), 48 * kHour);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(made.get()), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>(name), -1, -1, 0);
    X509_set_pubkey(made.get(), key);
    return made;
}

template <typename Write>
std::string toPem(Write write) {
    const std::shared_ptr<BIO> memory(must(BIO_new(BIO_s_mem())), BIO_free);
    write(memory.get());
    char* first = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &first);
    return {first, static_cast<std::size_t>(size)};
}

std::string toPem(X509* certificate) {
    return toPem([&](BIO* to) { PEM_write_bio_X509(to, certificate); });
}

struct Server {
    std::shared_ptr<EVP_PKEY> key = makeKey();
    std::shared_ptr<X509> certificate;
};

Server makeServer(X509* issuer, EVP_PKEY* issuerKey, CertificateFlaw flaw) {
    const bool otherName = flaw == CertificateFlaw::otherName;
    Server server;
    server.certificate =
        makeCertificate(otherName ? "other.test" : "localhost", server.key.get(), 2);
    X509* made = server.certificate.get();
    if (flaw == CertificateFlaw::expired) X509_gmtime_adj(X509_getm_notAfter(made), -kHour);
    X509_set_issuer_name(made, X509_get_subject_name(issuer));
    addExtension(made, issuer, NID_subject_alt_name,
                 otherName ? "DNS:other.test" : "DNS:localhost,IP:127.0.0.1");
    X509_sign(made, issuerKey, EVP_sha256());
    return server;
}

/// Clients that offer HTTP/1.1 through ALPN get it.
int chooseProtocol(SSL*, const unsigned char** chosen, unsigned char* length,
                   const unsigned char* offered, unsigned int offeredLength, void*) {
    static constexpr unsigned char kHttp1[] = "\x08http/1.1";
    unsigned char* match = nullptr;
    if (SSL_select_next_proto(&match, length, kHttp1, sizeof(kHttp1) - 1, offered, offeredLength) !=
        OPENSSL_NPN_NEGOTIATED) {
        return SSL_TLSEXT_ERR_NOACK;
    }
    *chosen = match;
    return SSL_TLSEXT_ERR_OK;
}

}  // namespace

TestAuthority::TestAuthority(const std::string& name)
    : key_(makeKey()), certificate_(makeCertificate(name.c_str(), key_.get(), 1)) {
    X509_set_issuer_name(certificate_.get(), X509_get_subject_name(certificate_.get()));
    addExtension(certificate_.get(), certificate_.get(), NID_basic_constraints, "critical,CA:TRUE");
    X509_sign(certificate_.get(), key_.get(), EVP_sha256());
}

std::string TestAuthority::pem() const {
    return toPem(certificate_.get());
}

std::shared_ptr<SSL_CTX> TestAuthority::serverContext(CertificateFlaw flaw) const {
    const Server server = makeServer(certificate_.get(), key_.get(), flaw);
    std::shared_ptr<SSL_CTX> context(must(SSL_CTX_new(TLS_server_method())), SSL_CTX_free);
    SSL_CTX_use_certificate(context.get(), server.certificate.get());
    SSL_CTX_use_PrivateKey(context.get(), server.key.get());
    SSL_CTX_set_alpn_select_cb(context.get(), chooseProtocol, nullptr);
    return context;
}

TestAuthority::Files TestAuthority::serverFiles(CertificateFlaw flaw) const {
    const Server server = makeServer(certificate_.get(), key_.get(), flaw);
    return {toPem(server.certificate.get()), toPem([&](BIO* to) {
                PEM_write_bio_PrivateKey(to, server.key.get(), nullptr, nullptr, 0, nullptr,
                                         nullptr);
            })};
}

}  // namespace supportsdk::test
