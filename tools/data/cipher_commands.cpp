#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <fstream>

#include "commands.h"
#include "platform/files.h"
#include "shell/generations.h"
#include "shell/text.h"

using namespace hcr;

namespace {

/// From file to file. The output takes its place when it is whole; an old one stays when the work fails.
int transformFile(const CipherArguments& files,
                  void (*transform)(std::istream& in, std::ostream& out, const CipherKey& key)) {
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

int runEncipher(const CipherArguments& arguments) {
    return transformFile(arguments, gf_encipher);
}

int runDecipher(const CipherArguments& arguments) {
    return transformFile(arguments,
                         [](std::istream& in, std::ostream& out, const CipherKey& key) { gf_decipher(in, out, key); });
}
