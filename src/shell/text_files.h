#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace hcr {

enum class Charset : i32 {
    ansi = 0,
    unicode = 1,
    unicodeBigEndian = 2,
    utf8WithBom = 3,
    utf8WithoutBom = 4,
    noneFound = 5,
};

Charset gf_detectCharset(const std::filesystem::path& path);
/// The fixed name of a charset; std::out_of_range for any other value.
const char* gf_charsetName(Charset charset);
/// Fills `lines` with UTF-8 lines; failures are shown and give false.
bool gf_readTextFileLines(Charset charset, const std::filesystem::path& path, std::vector<std::string>& lines);

/// Path and reused lines of gf_readFileLines.
struct LineReader {
    std::filesystem::path path;
    std::string content;
    std::vector<std::string_view> lines;  ///< into content
};
/// The lines of the file as they stand in it; false, with the text "open_failed" in `error`, when it can't be opened.
bool gf_readFileLines(LineReader& reader, std::size_t reserveHint, std::string& error);

/// Writes beside the target and then in its place; false if that can't be done.
bool gf_writeTextFile(std::string_view text, const std::filesystem::path& path, bool withNewline);

void gf_removeFilesFromDirectory(const std::filesystem::path& path);
void gf_removeXMLFilesFromDirectory();
u64 gf_countDirectoryEntries(const std::filesystem::path& path);

}  // namespace hcr
