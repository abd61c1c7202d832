#include "shell/text_files.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
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

/// Up to `limit` bytes from the start of the file. The size is asked for first: only a regular file has one, and what
/// isn't one, a folder or a pipe, must not be opened.
bool lf_readStart(const fs::path& path, std::size_t limit, std::string& content) {
    content.clear();
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    if (error) return false;
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) return false;
    content.resize(static_cast<std::size_t>(std::min<std::uintmax_t>(size, limit)));
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    content.resize(static_cast<std::size_t>(file.gcount()));
    return !file.bad();
}

bool lf_readWhole(const fs::path& path, std::string& content) {
    return lf_readStart(path, std::string().max_size(), content);
}

/// Bytes that must follow a lead byte above 127; 0 when it can't lead.
std::size_t lf_continuations(u8 lead) {
    if (lead >= 0xC2 && lead <= 0xDF) return 1;
    if (lead >= 0xE0 && lead <= 0xEF) return 2;
    if (lead >= 0xF0 && lead <= 0xF4) return 3;
    return 0;
}

/// Overlong forms and what lies beyond the last code point show in the byte behind the lead.
bool lf_isSecondByteFine(u8 lead, u8 second) {
    if (lead == 0xE0) return second >= 0xA0;
    if (lead == 0xF0) return second >= 0x90;
    if (lead == 0xF4) return second <= 0x8F;
    return true;
}

bool lf_isUtf8(std::string_view sample) {
    for (std::size_t i = 0; i < sample.size(); ++i) {
        const u8 lead = lf_byte(sample, i);
        if (lead <= 0x7F) continue;
        const std::size_t count = lf_continuations(lead);
        // A character cut by the end of the sample counts as wrong.
        if (count == 0 || i + count >= sample.size()) return false;
        for (std::size_t k = 1; k <= count; ++k) {
            if ((lf_byte(sample, i + k) & 0xC0U) != 0x80) return false;
        }
        if (!lf_isSecondByteFine(lead, lf_byte(sample, i + 1))) return false;
        i += count;
    }
    return true;
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

template <typename Take>
void lf_eachLine(std::string_view text, Take take) {
    if (text.starts_with(kUtf8Mark)) text.remove_prefix(kUtf8Mark.size());
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r')) line.remove_suffix(1);
        take(line);
        if (end == std::string_view::npos) return;
        text.remove_prefix(end + 1);
    }
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

bool lf_writeWhole(std::string_view text, const fs::path& path, bool withNewline) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file.is_open()) return false;
    file << text;
    if (withNewline) file << '\n';
    file.close();
    if (file) return true;
    std::error_code error;
    fs::remove(path, error);
    return false;
}

}  // namespace

Charset gf_detectCharset(const fs::path& path) {
    std::string sample;
    if (!lf_readStart(path, kSampleBytes, sample)) return Charset::noneFound;
    if (sample.starts_with(kUtf8Mark)) return Charset::utf8WithBom;
    if (const Charset utf16 = lf_utf16Kind(sample); utf16 != Charset::noneFound) return utf16;
    return lf_isUtf8(sample) ? Charset::utf8WithoutBom : Charset::ansi;
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
    fs::path temporary = path;
    temporary += ".new";
    return lf_writeWhole(text, temporary, withNewline) && gf_replaceFile(temporary, path);
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
