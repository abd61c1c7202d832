#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <fstream>
#include <optional>

#include "commands.h"
#include "platform/files.h"
#include "shell/generations.h"
#include "shell/stream_cipher.h"
#include "shell/text.h"

using namespace hcr;

namespace {

struct CipherArguments {
    std::filesystem::path in, out;
    CipherKey key = gf_cipherKey();
};

CipherArguments parseArguments(const std::vector<std::string>& arguments) {
    CipherArguments result;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i] != "--key") {
            if (arguments[i].starts_with("--")) throw UsageError{fmt::format("unknown option {}", arguments[i])};
            names.push_back(arguments[i]);
            continue;
        }
        const std::optional<CipherKey> key =
            i + 1 < arguments.size() ? gf_cipherKeyFromHex(arguments[++i]) : std::nullopt;
        if (!key) throw UsageError{"--key needs 64 hexadecimal digits"};
        result.key = *key;
    }
    if (names.size() != 2) throw UsageError{"one input file and one output file are needed"};
    result.in = gf_pathFromUtf8(names[0]);
    result.out = gf_pathFromUtf8(names[1]);
    return result;
}

/// From file to file. The output takes its place when it is whole; an old one stays when the work fails.
int transformFile(const std::vector<std::string>& arguments,
                  void (*transform)(std::istream& in, std::ostream& out, const CipherKey& key)) {
    const CipherArguments files = parseArguments(arguments);
    std::filesystem::path temporary = files.out;
    temporary += ".part";
    try {
        std::ifstream in(files.in, std::ios::binary);
        if (!in) throw std::runtime_error("the file can't be read");
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (!out) throw std::runtime_error(fmt::format("{} can't be written", gf_pathToUtf8(files.out)));
        transform(in, out, files.key);
        errno = 0;
        out.close();
        std::error_code error;
        if (!out) error = {errno, std::generic_category()};
        if (out) gf_moveOnto(temporary, files.out, error);
        if (!out || error) {
            throw std::runtime_error(
                fmt::format("{} can't be written: {}", gf_pathToUtf8(files.out), gf_writeFaultText(error)));
        }
        return kExitGood;
    } catch (const std::exception& e) {
        fmt::print(stderr, "halcyrane-data: {}: {}\n", gf_pathToUtf8(files.in), e.what());
    }
    std::error_code ignored;
    std::filesystem::remove(temporary, ignored);
    return kExitFailed;
}

}  // namespace

int runEncipher(const std::vector<std::string>& arguments) {
    return transformFile(arguments, gf_encipher);
}

int runDecipher(const std::vector<std::string>& arguments) {
    return transformFile(arguments,
                         [](std::istream& in, std::ostream& out, const CipherKey& key) { gf_decipher(in, out, key); });
}
