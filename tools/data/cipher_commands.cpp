#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <fstream>

#include "commands.h"
#include "shell/generations.h"
#include "shell/text.h"

using namespace hcr;

namespace {

/// The stream says only that it failed; the system has left its reason.
std::error_code streamFault() {
    return {errno != 0 ? errno : EIO, std::generic_category()};
}

/// From file to file. The output takes its place when it is whole; an old one stays when the work fails.
int transformFile(const CipherArguments& files,
                  void (*transform)(std::istream& in, std::ostream& out, const CipherKey& key)) {
    try {
        std::ifstream in(files.in, std::ios::binary);
        if (!in) throw std::runtime_error("the file can't be read");
        const auto make = [&](const std::filesystem::path& file, std::error_code& fault) {
            errno = 0;
            std::ofstream out(file, std::ios::binary | std::ios::trunc);
            if (out) transform(in, out, files.key);
            if (out) errno = 0;
            out.close();
            if (!out) fault = streamFault();
        };
        std::error_code error;
        if (gf_makeInPlace(files.out, make, error)) return kExitGood;
        fmt::print(stderr, "halcyrane-data: {} can't be written: {}\n", gf_pathToUtf8(files.out),
                   gf_writeFaultText(error));
    } catch (const std::exception& e) {
        fmt::print(stderr, "halcyrane-data: {}: {}\n", gf_pathToUtf8(files.in), e.what());
    }
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
