#include "parking/learned_path.h"

#include <algorithm>
#include <optional>

#include "parking/airport_file.h"
#include "shell/file_names.h"
#include "shell/text.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kThirdpartyArchive = "archive\\thirdparty\\";

std::optional<int> lf_hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return {};
}

/// "%20" and the like as the bytes that they stand for.
std::string lf_decoded(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            const auto high = lf_hexDigit(text[i + 1]), low = lf_hexDigit(text[i + 2]);
            if (high && low) {
                decoded += static_cast<char>(*high * 16 + *low);
                i += 2;
                continue;
            }
        }
        decoded += text[i];
    }
    return decoded;
}

bool lf_isUnfit(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == 0x7F ||
           std::string_view("<>:\"|?*/\\").find(c) != std::string_view::npos;
}

/// A folder for the learned files and a file in it; empty when one of the names can be none.
fs::path lf_in(const fs::path& folder, std::string_view file) {
    return gf_isFileName(file) ? folder / gf_pathFromUtf8(file) : fs::path();
}

fs::path lf_ofPublisher(std::string_view publisher, std::string_view file) {
    const std::string folder = gf_cleanedName(publisher);
    return folder.empty() ? fs::path() : lf_in(gFiles().learnedThirdparty / gf_pathFromUtf8(folder), file);
}

fs::path lf_elsewhere(std::string_view rest) {
    fs::path path = gFiles().learned;
    for (const std::string_view piece : gf_split(rest, '\\')) {
        if (!gf_isFileName(piece)) return {};
        path /= gf_pathFromUtf8(piece);
    }
    return path;
}

bool lf_beginsWithOneOf(std::string_view text, std::initializer_list<std::string_view> starts) {
    return std::any_of(starts.begin(), starts.end(),
                       [text](std::string_view start) { return text.starts_with(start); });
}

}  // namespace

std::string gf_cleanedName(std::string_view text) {
    std::string name = lf_decoded(text);
    std::replace_if(name.begin(), name.end(), lf_isUnfit, ' ');
    while (!name.empty() && (name.back() == ' ' || name.back() == '.')) name.pop_back();
    name.erase(0, std::min(name.find_first_not_of(' '), name.size()));
    if (name.empty() || !gf_isUtf8(name)) return {};
    if (!gf_isFileName(name)) name += '_';
    return gf_isFileName(name) ? name : std::string();
}

fs::path gf_learnedPath(std::string_view airportPath, std::string_view publisher) {
    std::string path(airportPath);
    std::replace(path.begin(), path.end(), '/', '\\');
    if (path.size() < 4 || gf_upper(std::string_view(path).substr(path.size() - 4)) != ".XML") return {};
    const std::string_view whole = path;
    const std::string_view file = whole.substr(whole.rfind('\\') + 1);  // npos + 1 is 0
    if (const std::size_t at = whole.find(kThirdpartyArchive); at != std::string_view::npos) {
        const std::string_view rest = whole.substr(at + kThirdpartyArchive.size());
        const std::size_t end = rest.find('\\');
        return end == std::string_view::npos ? fs::path() : lf_ofPublisher(rest.substr(0, end), file);
    }
    if (lf_beginsWithOneOf(whole, {"airports\\my_thirdparty2024\\", "airports\\my_thirdparty\\"})) {
        return lf_ofPublisher(publisher, file);
    }
    if (lf_beginsWithOneOf(whole, {"airports\\stock\\", "archive\\stock\\"})) return lf_in(gFiles().learnedStock, file);
    if (lf_beginsWithOneOf(whole, {"airports\\my_simaddon\\", "archive\\simaddon\\"})) {
        return lf_in(gFiles().learnedSimaddon, file);
    }
    constexpr std::string_view kAirports = "airports\\";
    return whole.starts_with(kAirports) ? lf_elsewhere(whole.substr(kAirports.size())) : fs::path();
}

}  // namespace hcr
