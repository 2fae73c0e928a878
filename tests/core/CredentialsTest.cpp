#include "supportsdk/core/Credentials.h"
#include "tests/core/SupportFixture.h"
#include "tests/support/SealedBlock.h"

namespace supportsdk::test {
namespace {

constexpr std::string_view longKey = "0123456789abcdefghijklmnopqrstuvwxyzABCD";

// The two blocks were made with the openssl command: enc -aes-256-ecb -nopad.

TEST(CredentialBlockTest, opensWithTheFirst32BytesOfALongKey) {
    const auto opened = openCredentialBlock(
        "Pt13BDveQDF/aakD3mGjOW02nkb5A97yMlY9R6y9qd4bDmdrb9QbFg0M91oXMwRG", longKey);
    EXPECT_EQ(opened, Json({{"comm_id", "c-1"}, {"port", 5222}, {"x", "y"}}));
}

TEST(CredentialBlockTest, opensWithAShortKeyAndLeavesOutTabsZerosAndOuterBlanks) {
    const std::string block = "NMexMOWRRFSrZZLX1IgOoQMMJUJ1x3aPsCrB//UX1o8=";
    EXPECT_EQ(openCredentialBlock(block, "secret"), Json({{"jid", "j@x"}}));
    EXPECT_EQ(openCredentialBlock(block, "Secret"), std::nullopt);
}

TEST(CredentialBlockTest, staysClosedWhenItIsDamaged) {
    const auto block = sealedBlock(R"({"jid":"j"})", "k");
    ASSERT_TRUE(openCredentialBlock(block, "k"));
    for (const auto& damaged :
         {block + "\n", " " + block, block.substr(1), block + "AAAA", std::string("=AAA"),
          std::string("A==="), std::string("AA=A"), std::string(), std::string("!!!!")}) {
        EXPECT_EQ(openCredentialBlock(damaged, "k"), std::nullopt) << damaged;
    }
    for (const auto* plaintext : {"[1]", "\"text\"", "{\"a\":\"\xC3\xA4\"}", "{", ""}) {
        EXPECT_EQ(openCredentialBlock(sealedBlock(plaintext, "k"), "k"), std::nullopt) << plaintext;
    }
    // Line ends are white space to JSON, not padding.
    EXPECT_TRUE(openCredentialBlock(sealedBlock("\n{}\r\n  ", "k"), "k"));
}

TEST(CipherTest, cbcDropsAKeyThatIsTooLongWhereEcbCutsIt) {
    const auto data = toBytes("attack at dawn");
    std::array<std::byte, 16> iv{};
    EXPECT_EQ(base64Encode(*Support::AES256Encrypt(data, "secret")), "3O70Gt/9aw4sJXiEZgVNjg==");
    EXPECT_EQ(base64Encode(*Support::AES256Encrypt(data, longKey)), "zwC2TfQYWtb95uE2vW37BQ==");
    for (std::size_t at = 0; at < iv.size(); ++at) iv[at] = static_cast<std::byte>(at);
    EXPECT_EQ(Support::AES256Decrypt(*base64Decode("4812Urt+RH+el3yC8++SQw=="), "secret", iv),
              data);
    EXPECT_EQ(Support::AES256Decrypt(toBytes("not whole blocks"), "secret", iv), std::nullopt);
    EXPECT_EQ(Support::AES256Decrypt(toBytes("fifteen bytes.."), "secret"), std::nullopt);
}

TEST(CipherTest, base64ComesBackAndMd5FollowsItsVector) {
    for (const std::string text : {"", "f", "fo", "foo", "\xff\xfe"})
        EXPECT_EQ(base64Decode(base64Encode(toBytes(text))), toBytes(text));
    EXPECT_EQ(base64Encode(toBytes("\xff\xfe")), "//4=");
    EXPECT_EQ(md5Hex("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
}

using ExtractXmppInformationTest = SupportTest;

TEST_F(ExtractXmppInformationTest, usesTheApiKeyOfTheConfiguration) {
    const auto block = sealedBlock(R"({"jid":"j@x"})", "key-of-acme");
    EXPECT_EQ(start()->extractXmppInformation(block), Json({{"jid", "j@x"}}));
    EXPECT_EQ(start()->extractXmppInformation(std::nullopt), std::nullopt);
    EXPECT_EQ(start(Json::object())->extractXmppInformation(block), std::nullopt);
}

}  // namespace
}  // namespace supportsdk::test
