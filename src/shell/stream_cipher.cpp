#include "shell/stream_cipher.h"

#include <fmt/format.h>
#include <sodium.h>

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <streambuf>
#include <system_error>

#include "shell/generations.h"
#include "shell/log.h"
#include "shell/run_stop.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr std::size_t kHeaderBytes = crypto_secretstream_xchacha20poly1305_HEADERBYTES;
constexpr std::size_t kPlainBytes = 4096;
constexpr std::size_t kChunkBytes = kPlainBytes + crypto_secretstream_xchacha20poly1305_ABYTES;
static_assert(kHeaderBytes == 24 && kChunkBytes == 4113);

constexpr i32 lf_digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

constexpr std::optional<CipherKey> lf_keyFromHex(std::string_view hex) {
    CipherKey key{};
    if (hex.size() != 2 * key.size()) return std::nullopt;
    for (std::size_t i = 0; i < key.size(); ++i) {
        const i32 high = lf_digit(hex[2 * i]);
        const i32 low = lf_digit(hex[2 * i + 1]);
        if (high < 0 || low < 0) return std::nullopt;
        key[i] = static_cast<u8>(16 * high + low);
    }
    return key;
}

static_assert(lf_keyFromHex(HALCYRANE_DATA_KEY).has_value(), "HALCYRANE_DATA_KEY needs 64 hexadecimal digits");

void lf_startLibrary() {
    static const int result = sodium_init();
    if (result < 0) throw std::runtime_error("the cipher library can't start");
}

template <std::size_t Size>
std::size_t lf_read(std::istream& in, std::array<u8, Size>& buffer, std::size_t wanted = Size) {
    in.read(reinterpret_cast<char*>(buffer.data()), static_cast<std::streamsize>(wanted));
    if (in.bad()) throw std::runtime_error("Reading failed");
    return static_cast<std::size_t>(in.gcount());
}

/// The stream says only that it failed; the system has left its reason.
std::string lf_writeFault() {
    const std::error_code error(errno, std::generic_category());
    return error ? "Writing failed: " + gf_writeFaultText(error) : "Writing failed";
}

void lf_write(std::ostream& out, const u8* bytes, std::size_t size) {
    errno = 0;
    out.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size));
    if (!out) throw std::runtime_error(lf_writeFault());
}

/// Takes everything and keeps nothing, until a stop is asked for.
struct Nowhere : std::streambuf {
    std::streamsize xsputn(const char*, std::streamsize size) override { return gf_stopAsked() ? 0 : size; }
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
};

using Transform = void (*)(std::istream& in, std::ostream& out, const CipherKey& key);

/// Runs `transform` from file to file; a failure is logged under `name` and leaves no target,
/// neither a half-written one nor an old one that would pass for the form of this source.
bool lf_transformFile(const char* name, Transform transform, const std::filesystem::path& source,
                      const std::filesystem::path& target, const CipherKey& key) {
    try {
        std::ifstream in(source, std::ios::binary);
        if (!in) throw std::runtime_error("Could not open input file: " + gf_pathToUtf8(source));
        std::ofstream out(target, std::ios::binary | std::ios::trunc);
        if (!out) throw std::runtime_error("Could not open output file: " + gf_pathToUtf8(target));
        transform(in, out, key);
        errno = 0;
        out.close();
        if (!out) throw std::runtime_error(lf_writeFault());
        return true;
    } catch (const std::exception& e) {
        gf_log(fmt::format("{} exception: {}", name, e.what()));
    }
    gf_removeIfPresent(target);
    return false;
}

}  // namespace

const CipherKey& gf_cipherKey() {
    static constexpr CipherKey key = *lf_keyFromHex(HALCYRANE_DATA_KEY);
    return key;
}

std::optional<CipherKey> gf_cipherKeyFromHex(std::string_view hex) {
    return lf_keyFromHex(hex);
}

bool gf_decipher(std::istream& in, std::ostream& out, const CipherKey& key) {
    lf_startLibrary();
    std::array<u8, kHeaderBytes> header{};
    crypto_secretstream_xchacha20poly1305_state state;
    if (lf_read(in, header) != kHeaderBytes ||
        crypto_secretstream_xchacha20poly1305_init_pull(&state, header.data(), key.data()) != 0) {
        throw std::runtime_error("Invalid header or key");
    }

    std::array<u8, kChunkBytes> chunk{};
    std::array<u8, kPlainBytes> plain{};
    while (const std::size_t read = lf_read(in, chunk)) {
        unsigned long long size = 0;
        unsigned char tag = 0;
        if (crypto_secretstream_xchacha20poly1305_pull(&state, plain.data(), &size, &tag, chunk.data(), read, nullptr,
                                                       0) != 0) {
            throw std::runtime_error("Decryption failed");
        }
        lf_write(out, plain.data(), static_cast<std::size_t>(size));
        if (tag == crypto_secretstream_xchacha20poly1305_TAG_FINAL) {
            return in.peek() == std::istream::traits_type::eof();
        }
    }
    return false;
}

void gf_encipher(std::istream& in, std::ostream& out, const CipherKey& key) {
    lf_startLibrary();
    std::array<u8, kHeaderBytes> header{};
    crypto_secretstream_xchacha20poly1305_state state;
    crypto_secretstream_xchacha20poly1305_init_push(&state, header.data(), key.data());
    lf_write(out, header.data(), header.size());

    std::array<u8, kPlainBytes> plain{};
    std::array<u8, kChunkBytes> chunk{};
    bool last = false;
    while (!last) {
        const std::size_t read = lf_read(in, plain);
        last = in.eof() || in.peek() == std::istream::traits_type::eof();
        const unsigned char tag = last ? crypto_secretstream_xchacha20poly1305_TAG_FINAL : 0;
        unsigned long long size = 0;
        crypto_secretstream_xchacha20poly1305_push(&state, chunk.data(), &size, plain.data(), read, nullptr, 0, tag);
        lf_write(out, chunk.data(), static_cast<std::size_t>(size));
    }
}

bool gf_streamDecrypt(const std::filesystem::path& source, const std::filesystem::path& target, const CipherKey& key) {
    const auto decipher = [](std::istream& in, std::ostream& out, const CipherKey& used) {
        gf_decipher(in, out, used);
    };
    return lf_transformFile("gf_streamDecrypt", decipher, source, target, key);
}

bool gf_streamEncrypt(const std::filesystem::path& source, const std::filesystem::path& target, const CipherKey& key) {
    return lf_transformFile("gf_streamEncrypt", gf_encipher, source, target, key);
}

std::string gf_dataFileFault(const std::filesystem::path& path, const CipherKey& key) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return "it can't be read";
    Nowhere nowhere;
    std::ostream out(&nowhere);
    try {
        return gf_decipher(in, out, key) ? "" : "its end is missing or isn't its end";
    } catch (const std::exception& e) {
        return gf_stopAsked() ? "the program was stopped" : e.what();
    }
}

std::string gf_decryptFaultText(const std::filesystem::path& path) {
    const std::string start = gf_pathToUtf8(path) + " stream decrypt failed: ";
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored)) return start + "the file is missing, it is fetched at the next start";
    if (gf_dataFileFault(path).empty()) return start + "the deciphered file could not be written, see Log.txt";
    return start + "the file is damaged; delete it, it is fetched anew at the next start";
}

void gf_removeIfPresent(const std::filesystem::path& path) {
    std::error_code error;
    std::filesystem::remove(path, error);
    if (!error) return;
    gf_logError(fmt::format("Warning: could not remove {}, errorcode: {}", gf_pathToUtf8(path), gf_errorText(error)));
}

}  // namespace hcr
