#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace hcr {

/// How the bytes of a text file are to be read.
enum class Charset : i32 {
    ansi = 0,
    unicode = 1,
    unicodeBigEndian = 2,
    utf8WithBom = 3,
    utf8WithoutBom = 4,
    noneFound = 5,
};

/// By the mark at the file's start, else by its bytes; noneFound when it can't be opened.
Charset gf_detectCharset(const std::filesystem::path& path);
/// The fixed name of a charset; std::out_of_range for any other value.
const char* gf_charsetName(Charset charset);
/// Fills `lines` with UTF-8 lines; failures are shown and give false.
bool gf_readTextFileLines(Charset charset, const std::filesystem::path& path, std::vector<std::string>& lines);

/// How gf_readText ended.
enum class TextRead { fine, notOpened, tooLarge, failed };
/// gf_detectCharset and gf_readTextFileLines in one, for files that come by the thousand: opened and read once, and
/// left in one piece, to be walked by TextLines. A line that isn't UTF-8, though the start of the file is, is taken for
/// the code page: `text` is UTF-8 whatever the file holds. It stays empty when the file can't be opened, when it has
/// more than `largest` bytes, and when it can't be converted, which is shown. Any thread.
TextRead gf_readText(const std::filesystem::path& path, u64 largest, std::string& text);

/// What gf_readText makes of a file's bytes. Throws std::runtime_error for UTF-16 that can't be converted. Any thread.
std::string gf_textOf(std::string bytes);

/// Walks the lines of a text, which come without their line ends.
struct TextLines {
    std::string_view rest;

    /// False behind the last line.
    bool next(std::string_view& line) {
        if (rest.empty()) return false;
        const std::size_t end = rest.find('\n');
        line = rest.substr(0, end);
        if (line.ends_with('\r')) line.remove_suffix(1);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        return true;
    }
};

/// Path and reused lines of gf_readFileLines.
struct LineReader {
    std::filesystem::path path;
    std::string content;
    std::vector<std::string_view> lines;  ///< into content
};
/// The lines of the file as they stand in it; false, with the text "open_failed" in `error`, when it can't be opened.
bool gf_readFileLines(LineReader& reader, std::size_t reserveHint, std::string& error);

/// Writes beside the target and then in its place; false if that can't be done, which is told.
bool gf_writeTextFile(std::string_view text, const std::filesystem::path& path, bool withNewline);

/// Removes the files of a folder, not its folders; what can't be removed is logged.
void gf_removeFilesFromDirectory(const std::filesystem::path& path);
void gf_removeXMLFilesFromDirectory();
u64 gf_countDirectoryEntries(const std::filesystem::path& path);

}  // namespace hcr
