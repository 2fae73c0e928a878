#include "service/state/CredentialBlock.h"

#include <openssl/evp.h>

#include <array>
#include <memory>
#include <vector>

#include "supportsdk/platform/Values.h"

namespace supportsdk::service {

namespace {

constexpr std::size_t blockSize = 16;
constexpr std::size_t keySize = 32;

struct FreeContext {
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};

std::string base64(const std::vector<unsigned char>& bytes) {
    std::vector<unsigned char> text((bytes.size() + 2) / 3 * 4 + 1);
    const int length = EVP_EncodeBlock(text.data(), bytes.data(), static_cast<int>(bytes.size()));
    return {text.begin(), text.begin() + length};
}

std::string asText(const ChatCredentials& credentials) {
    const Json json{{"comm_id", credentials.commId},    {"jid", credentials.jid},
                    {"password", credentials.password}, {"host", credentials.host},
                    {"port", credentials.port},         {"resource", credentials.resource}};
    return json.dump(-1, ' ', true, Json::error_handler_t::replace);
}

}  // namespace

std::optional<std::string> encryptCredentials(const ChatCredentials& credentials,
                                              const std::string& apiKey) {
    std::string plain = asText(credentials);
    plain.resize((plain.size() + blockSize - 1) / blockSize * blockSize, '\0');
    std::array<unsigned char, keySize> key{};
    std::copy_n(apiKey.begin(), std::min(apiKey.size(), keySize), key.begin());

    const std::unique_ptr<EVP_CIPHER_CTX, FreeContext> context(EVP_CIPHER_CTX_new());
    std::vector<unsigned char> cipher(plain.size() + blockSize);
    int length = 0;
    const bool done =
        EVP_EncryptInit_ex(context.get(), EVP_aes_256_ecb(), nullptr, key.data(), nullptr) == 1 &&
        EVP_CIPHER_CTX_set_padding(context.get(), 0) == 1 &&
        EVP_EncryptUpdate(context.get(), cipher.data(), &length,
                          reinterpret_cast<const unsigned char*>(plain.data()),
                          static_cast<int>(plain.size())) == 1;
    if (!done) return std::nullopt;
    cipher.resize(static_cast<std::size_t>(length));
    return base64(cipher);
}

}  // namespace supportsdk::service
