#include "shell/stream_cipher.h"

#include <gtest/gtest.h>

#include "shell/shell_world.h"

namespace hcr {
namespace {

constexpr std::size_t kHeader = 24;
constexpr std::size_t kChunk = 4113;
constexpr std::size_t kOverhead = 17;

struct StreamCipher : test::ShellWorld {
    static std::string text(std::size_t size) {
        std::string result(size, ' ');
        for (std::size_t i = 0; i < size; ++i) result[i] = static_cast<char>('a' + i * 7 % 26);
        return result;
    }

    static std::string enciphered(const std::string& plain) {
        write("plain", plain);
        EXPECT_TRUE(gf_streamEncrypt("plain", "secret.enc"));
        return read("secret.enc");
    }

    /// Deciphers these bytes; on failure no target may stay.
    static bool deciphers(const std::string& bytes) {
        write("given.enc", bytes);
        write("given.xml", "of an earlier run");
        const bool good = gf_streamDecrypt("given.enc", "given.xml");
        EXPECT_EQ(std::filesystem::exists("given.xml"), good);
        return good;
    }
};

TEST_F(StreamCipher, EveryLengthComesBackAsItWas) {
    for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 8192U, 100000U}) {
        const std::string plain = text(size);
        const std::string secret = enciphered(plain);
        const std::size_t chunks = size == 0 ? 1 : (size + 4095) / 4096;
        EXPECT_EQ(secret.size(), kHeader + size + chunks * kOverhead) << size;
        ASSERT_TRUE(deciphers(secret)) << size;
        EXPECT_EQ(read("given.xml"), plain) << size;
    }
}

TEST_F(StreamCipher, DamageIsNoticedWhereverItIs) {
    const std::string secret = enciphered(text(5000));
    for (const std::size_t size : {std::size_t{0}, kHeader - 1, kHeader + 1, kHeader + kOverhead, secret.size() - 1}) {
        EXPECT_FALSE(deciphers(secret.substr(0, size))) << size;
    }
    for (const std::size_t place : {std::size_t{0}, kHeader, kHeader + 2000, kHeader + kChunk, secret.size() - 1}) {
        std::string damaged = secret;
        damaged[place] = static_cast<char>(damaged[place] ^ 1);
        EXPECT_FALSE(deciphers(damaged)) << place;
    }
    EXPECT_TRUE(logHas("gf_streamDecrypt exception: Invalid header or key\n"));
    EXPECT_TRUE(logHas("gf_streamDecrypt exception: Decryption failed\n"));
}

TEST_F(StreamCipher, AnotherKeyOpensNothing) {
    const std::string secret = enciphered("text");
    CipherKey other = gf_cipherKey();
    other[31] ^= 1;
    EXPECT_FALSE(gf_streamDecrypt("secret.enc", "out.xml", other));
    EXPECT_FALSE(std::filesystem::exists("out.xml"));
}

TEST_F(StreamCipher, FilesThatCantBeOpenedAreNamed) {
    EXPECT_FALSE(gf_streamDecrypt("missing.enc", "out.xml"));
    EXPECT_TRUE(logHas("gf_streamDecrypt exception: Could not open input file: missing.enc\n"));
    enciphered("text");
    EXPECT_FALSE(gf_streamDecrypt("secret.enc", "no/folder/out.xml"));
    EXPECT_TRUE(logHas("gf_streamDecrypt exception: Could not open output file: no/folder/out.xml\n"));
}

TEST_F(StreamCipher, AFileThatCantBeDecipheredIsToldWithTheWayOut) {
    EXPECT_EQ(gf_decryptFaultText("secret.enc"),
              "secret.enc stream decrypt failed: the file is missing, it is fetched at the next start");
    enciphered("text");
    EXPECT_EQ(gf_decryptFaultText("secret.enc"),
              "secret.enc stream decrypt failed: the deciphered file could not be written, see Log.txt");
    write("secret.enc", "no data");
    EXPECT_EQ(gf_decryptFaultText("secret.enc"),
              "secret.enc stream decrypt failed: the file is damaged; delete it, it "
              "is fetched anew at the next start");
}

TEST_F(StreamCipher, AKeyIsSixtyFourHexadecimalDigits) {
    const std::string digits = "00FFa1" + std::string(58, '9');
    const std::optional<CipherKey> key = gf_cipherKeyFromHex(digits);
    ASSERT_TRUE(key.has_value());
    EXPECT_EQ((*key)[0], 0);
    EXPECT_EQ((*key)[1], 255);
    EXPECT_EQ((*key)[2], 0xA1);
    EXPECT_FALSE(gf_cipherKeyFromHex(digits + "0").has_value());
    EXPECT_FALSE(gf_cipherKeyFromHex(digits.substr(1)).has_value());
    EXPECT_FALSE(gf_cipherKeyFromHex("g" + digits.substr(1)).has_value());
}

}  // namespace
}  // namespace hcr
