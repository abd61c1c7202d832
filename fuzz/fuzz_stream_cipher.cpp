#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>

#include "shell/stream_cipher.h"

// The input is taken as an enciphered file, and as a plain one: enciphered it must come back as it was, and with any
// byte of the enciphered form changed it must not come back at all.

namespace {

bool lf_deciphers(const std::string& bytes, std::string& plain) {
    std::istringstream in(bytes);
    std::ostringstream out;
    try {
        hcr::gf_decipher(in, out, hcr::gf_cipherKey());
    } catch (const std::runtime_error&) {
        return false;
    }
    plain = out.str();
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::string plain;
    lf_deciphers(text, plain);

    std::istringstream in(text);
    std::ostringstream out;
    hcr::gf_encipher(in, out, hcr::gf_cipherKey());
    std::string secret = out.str();
    if (!lf_deciphers(secret, plain) || plain != text) std::abort();
    const std::size_t place = (size > 1 ? data[0] * 256U + data[1] : 0U) % secret.size();
    secret[place] = static_cast<char>(secret[place] ^ 0x10);
    if (lf_deciphers(secret, plain)) std::abort();
    return 0;
}
