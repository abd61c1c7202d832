#include "tools/feed/recording.h"

#include <fmt/format.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <utility>

#include "shell/generations.h"
#include "shell/text.h"
#include "tools/feed/report_line.h"

namespace hcr {
namespace {

constexpr std::size_t kLongestLine = 16383;       // what one datagram of the feed may hold
constexpr f64 kLongestGapSeconds = 10;            // between two lines without receive times
constexpr std::size_t kLargestText = 1ULL << 30;  // bytes; a file that grows further is no recording
constexpr int kAnyHeader = 15 + 32;               // window bits: zlib or gzip, as the file says
constexpr int kGzipHeader = 15 + 16;

constexpr f64 kNoTime = -1;

// Time and text of one line; without a receive time the line's own timestamp, or none.
TimedLine lf_parseLine(std::string_view text, bool& received) {
    const std::size_t tab = text.find('\t');
    f64 time = kNoTime;
    received = false;
    if (tab != std::string_view::npos) {
        const auto [end, error] = std::from_chars(text.data(), text.data() + tab, time);
        received = error == std::errc() && end == text.data() + tab && std::isfinite(time);
    }
    if (received) return {time, std::string(text.substr(tab + 1))};
    const f64 own = isWeatherLine(text) ? 0 : timestampOf(text);
    return {own > 0 ? own : kNoTime, std::string(text)};
}

// Weather and lines without a timestamp go with the line before them; the others by time, without long silences.
void lf_orderByTimestamps(std::vector<TimedLine>& lines) {
    const auto firstKnown =
        std::find_if(lines.begin(), lines.end(), [](const TimedLine& line) { return line.time != kNoTime; });
    f64 last = firstKnown == lines.end() ? 0 : firstKnown->time;
    for (TimedLine& line : lines) {
        if (line.time == kNoTime) line.time = last;
        last = line.time;
    }
    std::stable_sort(lines.begin(), lines.end(),
                     [](const TimedLine& a, const TimedLine& b) { return a.time < b.time; });
    f64 later = 0;  // by so much the earlier lines move, so that the newest keep their times
    for (std::size_t i = lines.size(); i-- > 1;) {
        const f64 gap = lines[i].time - (lines[i - 1].time + later);
        if (gap > kLongestGapSeconds) later += gap - kLongestGapSeconds;
        lines[i - 1].time += later;
    }
}

[[noreturn]] void lf_fail(const char* what, const std::filesystem::path& path) {
    throw std::runtime_error(fmt::format("{} {}", what, gf_pathToUtf8(path)));
}

bool lf_isCompressed(std::string_view bytes) {
    return bytes.size() > 2 && bytes[0] == '\x1f' && bytes[1] == '\x8b';
}

// Nothing when the bytes are damaged or cut off.
bool lf_inflate(std::string& bytes, std::string& text) {
    z_stream stream{};
    if (inflateInit2(&stream, kAnyHeader) != Z_OK) return false;
    stream.next_in = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_in = static_cast<uInt>(bytes.size());
    std::array<char, 1 << 16> part{};
    int result = Z_OK;
    while (result == Z_OK && text.size() < kLargestText) {
        stream.next_out = reinterpret_cast<Bytef*>(part.data());
        stream.avail_out = static_cast<uInt>(part.size());
        result = inflate(&stream, Z_NO_FLUSH);
        text.append(part.data(), part.size() - stream.avail_out);
    }
    inflateEnd(&stream);
    return result == Z_STREAM_END;
}

std::string lf_deflate(std::string_view text) {
    z_stream stream{};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipHeader, 8, Z_DEFAULT_STRATEGY) != Z_OK) return {};
    std::string in(text);
    std::string out(deflateBound(&stream, static_cast<uLong>(in.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    deflateEnd(&stream);
    return out.substr(0, out.size() - stream.avail_out);
}

}  // namespace

bool isWeatherLine(std::string_view line) {
    return !line.empty() && line.front() == '{';
}

std::vector<TimedLine> parseRecording(std::string_view text) {
    std::vector<TimedLine> lines;
    bool allReceived = true;
    for (std::string_view line : gf_split(text, '\n')) {
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.empty() || line.size() > kLongestLine) continue;
        bool received = false;
        lines.push_back(lf_parseLine(line, received));
        allReceived = allReceived && received;
    }
    if (!allReceived) lf_orderByTimestamps(lines);
    return lines;
}

std::string recordingLine(const TimedLine& line) {
    std::string text = fmt::format("{:.2f}\t{}", line.time, line.line);
    while (text.ends_with('\n') || text.ends_with('\r')) text.pop_back();
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return text + '\n';
}

std::string recordingText(const std::vector<TimedLine>& lines) {
    std::string text;
    for (const TimedLine& line : lines) text += recordingLine(line);
    return text;
}

std::string readRecordingFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (!file.is_open() || file.bad()) lf_fail("can't read", path);
    if (!lf_isCompressed(bytes)) return bytes;
    if (bytes.size() > std::numeric_limits<uInt>::max()) lf_fail("too large a file:", path);
    std::string text;
    if (!lf_inflate(bytes, text)) lf_fail("damaged file", path);
    return text;
}

void writeRecordingFile(const std::filesystem::path& path, std::string_view text) {
    std::error_code error;
    const bool written = gf_writeInPlace(path, path.extension() == ".gz" ? lf_deflate(text) : std::string(text), error);
    if (written) return;
    throw std::runtime_error(fmt::format("can't write {}: {}", gf_pathToUtf8(path), gf_writeFaultText(error)));
}

}  // namespace hcr
