#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "shell/text_files.h"

// Any bytes as a text file: its charset is detected and its lines are read in it, and in every other one.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("fuzz_text_file_" + std::to_string(getpid()));
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));

    std::vector<std::string> lines;
    const hcr::Charset found = hcr::gf_detectCharset(path);
    const bool isRead = hcr::gf_readTextFileLines(found, path, lines);
    // Only UTF-16 can hold what isn't a text at all.
    const bool isUtf16 = found == hcr::Charset::unicode || found == hcr::Charset::unicodeBigEndian;
    if (!isRead && !isUtf16) std::abort();
    for (const std::string& line : lines) {
        if (line.find('\n') != std::string::npos) std::abort();
    }
    for (hcr::i32 charset = 0; charset <= 4; ++charset) {
        hcr::gf_readTextFileLines(static_cast<hcr::Charset>(charset), path, lines);
    }
    hcr::LineReader reader;
    reader.path = path;
    std::string error;
    if (!hcr::gf_readFileLines(reader, 0, error)) std::abort();
    std::filesystem::remove(path);
    return 0;
}
