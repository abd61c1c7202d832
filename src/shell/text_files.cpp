#include "shell/text_files.h"

#include <fmt/format.h>
#include <utf8cpp/utf8.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "shell/file_names.h"
#include "shell/generations.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/text.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kSampleBytes = 4096;  // so much of a file tells its encoding
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kUtf16BigEndianMark = "\xFE\xFF";
constexpr const char* kOpenFailed = "open_failed";

constexpr std::array<const char*, 6> kCharsetNames = {"ANSI",          "Unicode",          "Unicode_big_endian",
                                                      "UTF8_with_BOM", "UTF8_without_BOM", "none_found"};

u8 lf_byte(std::string_view text, std::size_t place) {
    return static_cast<u8>(text[place]);
}

/// The size is asked for before a file is opened: only a regular file has one, and what isn't one, a folder or a pipe,
/// must not be opened.
std::optional<u64> lf_sizeOf(const fs::path& path) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    if (error) return std::nullopt;
    return size;
}

/// So many bytes from the start of the file, or fewer if it has become shorter.
bool lf_readBytes(const fs::path& path, u64 count, std::string& content) {
    content.clear();
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) return false;
    content.resize(static_cast<std::size_t>(count));
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    content.resize(static_cast<std::size_t>(file.gcount()));
    return !file.bad();
}

/// Up to `limit` bytes from the start of the file.
bool lf_readStart(const fs::path& path, std::size_t limit, std::string& content) {
    content.clear();
    const std::optional<u64> size = lf_sizeOf(path);
    return size && lf_readBytes(path, std::min<u64>(*size, limit), content);
}

bool lf_readWhole(const fs::path& path, std::string& content) {
    return lf_readStart(path, std::string().max_size(), content);
}

/// Length of the part at the start that holds no byte above 127, to whole blocks.
std::size_t lf_asciiBlocks(std::string_view text) {
    constexpr std::size_t kBlock = 64;
    const auto isAscii = [](const char* block) {
        u8 bits = 0;
        for (std::size_t i = 0; i < kBlock; ++i) bits |= static_cast<u8>(block[i]);
        return bits <= 0x7F;
    };
    std::size_t length = 0;
    while (length + kBlock <= text.size() && isAscii(text.data() + length)) length += kBlock;
    return length;
}

bool lf_isAscii(std::string_view text) {
    return std::all_of(text.begin() + static_cast<std::ptrdiff_t>(lf_asciiBlocks(text)), text.end(),
                       [](char c) { return static_cast<u8>(c) <= 0x7F; });
}

/// Half of a UTF-16 pair written as if it were a character.
bool lf_isHalfOfPair(std::string_view text) {
    return text.size() >= 3 && text[0] == '\xED' && lf_byte(text, 1) >= 0xA0 && (lf_byte(text, 1) & 0xC0U) == 0x80 &&
           (lf_byte(text, 2) & 0xC0U) == 0x80;
}

/// Halves of pairs, which the rest of the program doesn't take, are no reason to refuse a sample. A character cut by
/// its end is one.
bool lf_isUtf8(std::string_view sample) {
    sample.remove_prefix(lf_asciiBlocks(sample));
    while (!sample.empty()) {
        const auto fault = utf8::find_invalid(sample.begin(), sample.end());
        sample.remove_prefix(static_cast<std::size_t>(fault - sample.begin()));
        if (sample.empty()) return true;
        if (!lf_isHalfOfPair(sample)) return false;
        sample.remove_prefix(3);
    }
    return true;
}

/// What the rest of the program takes for UTF-8.
bool lf_isStrictUtf8(std::string_view text) {
    return gf_isUtf8(text.substr(lf_asciiBlocks(text)));
}

/// UTF-16 by its mark, or by the zero bytes of two ASCII characters.
Charset lf_utf16Kind(std::string_view sample) {
    if (sample.size() < 2) return Charset::noneFound;
    if (sample.starts_with(kUtf16Mark)) return Charset::unicode;
    if (sample.starts_with(kUtf16BigEndianMark)) return Charset::unicodeBigEndian;
    const bool isLong = sample.size() >= 4;
    if (sample[1] == 0 && (!isLong || sample[3] == 0)) return Charset::unicode;
    if (sample[0] == 0 && (!isLong || sample[2] == 0)) return Charset::unicodeBigEndian;
    return Charset::noneFound;
}

std::string_view lf_withoutUtf8Mark(std::string_view text) {
    if (text.starts_with(kUtf8Mark)) text.remove_prefix(kUtf8Mark.size());
    return text;
}

template <typename Take>
void lf_eachLine(std::string_view text, Take take) {
    TextLines lines{lf_withoutUtf8Mark(text)};
    for (std::string_view line; lines.next(line);) take(line);
}

/// The text behind the mark; empty without a mark or with half a code unit.
std::string lf_utf16FileToUtf8(std::string_view bytes) {
    const bool isBig = bytes.starts_with(kUtf16BigEndianMark);
    if ((!isBig && !bytes.starts_with(kUtf16Mark)) || bytes.size() % 2 != 0) return {};
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t i = 2; i < bytes.size(); i += 2) {
        const u8 high = lf_byte(bytes, isBig ? i : i + 1);
        const u8 low = lf_byte(bytes, isBig ? i + 1 : i);
        units += static_cast<char16_t>(high << 8U | low);
    }
    return gf_utf16ToUtf8(units);
}

Charset lf_charsetOf(std::string_view sample) {
    if (sample.starts_with(kUtf8Mark)) return Charset::utf8WithBom;
    if (const Charset utf16 = lf_utf16Kind(sample); utf16 != Charset::noneFound) return utf16;
    return lf_isUtf8(sample) ? Charset::utf8WithoutBom : Charset::ansi;
}

/// The lines that aren't UTF-8, all of them in a file of the code page, converted one by one.
std::string lf_convertLines(std::string_view content, bool isAnsi) {
    std::string text;
    text.reserve(content.size() + content.size() / 16);
    lf_eachLine(content, [&](std::string_view line) {
        const bool isFine = isAnsi ? lf_isAscii(line) : lf_isStrictUtf8(line);
        if (isFine) {
            text += line;
        } else {
            text += gf_ansiToUtf8(line);
        }
        text += '\n';
    });
    return text;
}

/// The text of a file's bytes. Throws std::runtime_error when they are no UTF-16 though their mark says so.
std::string lf_toUtf8(std::string content) {
    const Charset charset = lf_charsetOf(std::string_view(content).substr(0, kSampleBytes));
    if (charset == Charset::unicode || charset == Charset::unicodeBigEndian) return lf_utf16FileToUtf8(content);
    if (charset == Charset::ansi || !lf_isStrictUtf8(content)) {
        return lf_convertLines(content, charset == Charset::ansi);
    }
    return content;
}

void lf_readLines(Charset charset, const fs::path& path, std::vector<std::string>& lines) {
    const char* name = gf_charsetName(charset);
    if (charset == Charset::noneFound) {
        throw std::runtime_error(fmt::format("file {} has unknown charset: {}", gf_pathToUtf8(path), name));
    }
    std::string content;
    if (!lf_readWhole(path, content)) throw std::runtime_error(kOpenFailed);
    if (charset == Charset::unicode || charset == Charset::unicodeBigEndian) content = lf_utf16FileToUtf8(content);
    const bool isAnsi = charset == Charset::ansi;
    lf_eachLine(content,
                [&](std::string_view line) { lines.push_back(isAnsi ? gf_ansiToUtf8(line) : std::string(line)); });
}

/// The entries are listed first: what a folder shows while it is being emptied differs between systems.
template <typename Wanted>
void lf_removeEntries(const char* operation, const fs::path& folder, Wanted wanted) {
    try {
        if (!fs::is_directory(folder)) return;
        std::vector<fs::path> entries;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            if (wanted(entry.path())) entries.push_back(entry.path());
        }
        for (const fs::path& entry : entries) fs::remove(entry);
    } catch (const std::exception& exception) {
        gf_logError(fmt::format("{} exception: {}", operation, exception.what()));
    }
}

bool lf_isXml(const fs::path& path) {
    const fs::path extension = path.extension();
    constexpr std::string_view kXml = ".XML";
    return std::ranges::equal(extension.native(), kXml, [](auto unit, char wanted) {
        return unit == wanted || (wanted >= 'A' && unit == wanted - 'A' + 'a');
    });
}

}  // namespace

Charset gf_detectCharset(const fs::path& path) {
    std::string sample;
    if (!lf_readStart(path, kSampleBytes, sample)) return Charset::noneFound;
    return lf_charsetOf(sample);
}

const char* gf_charsetName(Charset charset) {
    return kCharsetNames.at(static_cast<std::size_t>(charset));
}

bool gf_readTextFileLines(Charset charset, const fs::path& path, std::vector<std::string>& lines) {
    lines.clear();
    try {
        lf_readLines(charset, path, lines);
        return true;
    } catch (const std::exception& exception) {
        lines.clear();
        gf_showMessage(fmt::format("Read failed for '{}': {}", gf_shownPath(path), exception.what()), true);
        return false;
    }
}

std::string gf_textOf(std::string bytes) {
    std::string text = lf_toUtf8(std::move(bytes));
    if (text.starts_with(kUtf8Mark)) text.erase(0, kUtf8Mark.size());
    return text;
}

TextRead gf_readText(const fs::path& path, u64 largest, std::string& text) {
    text.clear();
    try {
        const std::optional<u64> size = lf_sizeOf(path);
        if (!size) return TextRead::notOpened;
        if (*size > largest) return TextRead::tooLarge;
        std::string content;
        if (!lf_readBytes(path, *size, content)) return TextRead::notOpened;
        text = gf_textOf(std::move(content));
        return TextRead::fine;
    } catch (const std::exception& exception) {
        gf_showMessage(fmt::format("Read failed for '{}': {}", gf_shownPath(path), exception.what()), true);
        return TextRead::failed;
    }
}

bool gf_readFileLines(LineReader& reader, std::size_t reserveHint, std::string& error) {
    reader.lines.clear();
    if (!lf_readWhole(reader.path, reader.content)) {
        error = kOpenFailed;
        return false;
    }
    if (reader.lines.capacity() < reserveHint) reader.lines.reserve(reserveHint);
    lf_eachLine(reader.content, [&](std::string_view line) { reader.lines.push_back(line); });
    return true;
}

bool gf_writeTextFile(std::string_view text, const fs::path& path, bool withNewline) {
    std::error_code error;
    const bool written =
        withNewline ? gf_writeInPlace(path, std::string(text) + '\n', error) : gf_writeInPlace(path, text, error);
    if (!written) gf_tellWriteFault(path, error);
    return written;
}

void gf_removeFilesFromDirectory(const fs::path& path) {
    lf_removeEntries("gf_removeFilesFromDirectory", path, [](const fs::path&) { return true; });
}

void gf_removeXMLFilesFromDirectory() {
    lf_removeEntries("gf_removeXMLFilesFromDirectory", gFiles().tblo, lf_isXml);
}

u64 gf_countDirectoryEntries(const fs::path& path) {
    std::error_code error;
    u64 count = 0;
    for (fs::directory_iterator entry(path, error), end; !error && entry != end; entry.increment(error)) ++count;
    return count;
}

}  // namespace hcr
