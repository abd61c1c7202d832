#include "parking/airport_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <fstream>

#include "core/model/tables.h"
#include "parking/catalogue.h"
#include "shell/download.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/text.h"

namespace hcr {

AirportFile gAirportFile;
f64 gAirportAltitude = 0;
std::atomic<bool> gAirportLoaded{false};
u32 gLearnedUpdates = 0;
bool gHandmade = false;
std::filesystem::path gLearnedPath;

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kLocalStart = "airports";
constexpr std::string_view kServerFolder = "MSFS/", kServerFolder2024 = "MSFS2024/";
constexpr std::string_view kForbidden = "<>:\"|?*/\\";
constexpr std::size_t kLongestName = 120;  // leaves room for the folders around it on every system
constexpr std::size_t kLongestLink = 1000;

bool lf_endsInXml(std::string_view text) {
    constexpr std::string_view kEnd = ".XML";
    return text.size() > kEnd.size() && gf_upper(text.substr(text.size() - kEnd.size())) == kEnd;
}

/// Names that Windows keeps for devices, with whatever stands behind a dot.
bool lf_isDevice(std::string_view name) {
    const std::string stem = gf_upper(gf_trim(name.substr(0, name.find('.'))));
    static constexpr std::array<std::string_view, 4> kDevices{"CON", "PRN", "AUX", "NUL"};
    if (std::find(kDevices.begin(), kDevices.end(), stem) != kDevices.end()) return true;
    const bool port = stem.starts_with("COM") || stem.starts_with("LPT");
    return port && stem.size() == 4 && stem[3] >= '1' && stem[3] <= '9';
}

/// Whether each component of a server's path may be one; "%20" and the like are harmless in them.
bool lf_isServerPath(std::string_view path) {
    const std::vector<std::string_view> pieces = gf_split(path, '/');
    return std::all_of(pieces.begin(), pieces.end(), gf_isFileName);
}

/// The path that a link file names, empty when it names none.
std::string lf_linkedPath(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return {};
    std::string line;
    std::getline(stream, line);
    if (line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3);
    while (!line.empty() && (line.back() == ' ' || line.back() == '\r' || line.back() == '\t')) line.pop_back();
    if (!lf_endsInXml(line)) return {};
    if (line.size() > kLongestLink || !lf_isServerPath(line)) {
        gf_log(fmt::format("{} names a path that isn't followed: {}", gf_shownPath(file), gf_quoted(line)));
        return {};
    }
    return line;
}

/// Link or file of the airport in one of the user's folders; empty for neither.
std::string lf_userFile(const fs::path& folder, const std::string& code) {
    std::error_code ignored;
    if (const fs::path link = folder / (code + ".txt"); fs::is_regular_file(link, ignored)) {
        if (std::string path = lf_linkedPath(link); !path.empty()) return path;
    }
    const fs::path file = folder / (code + ".xml");
    return fs::is_regular_file(file, ignored) ? file.generic_string() : std::string();
}

}  // namespace

bool gf_isFileName(std::string_view text) {
    if (text.empty() || text.size() > kLongestName || text == "." || text.find("..") != std::string_view::npos) {
        return false;
    }
    const bool bad = std::any_of(text.begin(), text.end(), [](char c) {
        return static_cast<unsigned char>(c) < ' ' || c == 0x7F || kForbidden.find(c) != std::string_view::npos;
    });
    return !bad && text.back() != ' ' && text.back() != '.' && !lf_isDevice(text) && gf_isUtf8(text);
}

std::string gf_airportFilePath(std::string_view code) {
    const std::string name(code);
    if (!gf_isFileName(name)) {
        if (!name.empty()) gf_log("No file can have the name of airport " + gf_quoted(name));
        return {};
    }
    for (const fs::path& folder : {gFiles().myThirdparty, gFiles().mySimaddon}) {
        if (std::string path = lf_userFile(folder, name); !path.empty()) return path;
    }
    const AirportEntry* airport = gf_findAirport(name);
    return airport != nullptr && airport->stands >= 1 ? "archive/stock/" + name + ".xml" : std::string();
}

bool gf_airportFileAvailable(std::string_view code) {
    const std::string name(code);
    if (!gf_isFileName(name)) return false;
    for (const fs::path& folder : {gFiles().myThirdparty, gFiles().mySimaddon}) {
        std::error_code ignored;
        if (fs::exists(folder / (name + ".txt"), ignored) || fs::exists(folder / (name + ".xml"), ignored)) return true;
    }
    const AirportEntry* airport = gf_findAirport(name);
    return airport != nullptr && airport->stands >= 1;
}

bool gf_isLocalAirportPath(std::string_view path) {
    return path.starts_with(kLocalStart);
}

std::string gf_downloadApf(std::string_view path, const fs::path& target) {
    const bool common = path.find("simaddon") != std::string_view::npos || path.find("stock") != std::string_view::npos;
    const std::string_view folder = gf_sim2024Chosen() && !common ? kServerFolder2024 : kServerFolder;
    const std::string base = gf_dataBase();
    const CurlHandle handle = gf_openCurl();
    const std::string url = fmt::format("{}{}{}", base, folder, path);
    if (!base.empty() && gf_download(handle.get(), url, target, true)) return {};
    std::error_code ignored;
    fs::remove(target, ignored);
    std::string fault = fmt::format("failed to download: '{}'", path);
    gf_log(fault);
    return fault;
}

void gf_resetAirportFile() {
    gAirportFile = AirportFile{};
    gAirportAltitude = 0;
    gAirportLoaded = false;
    gLearnedUpdates = 0;
    gHandmade = false;
    gLearnedPath.clear();
}

ParkPos* gf_standById(std::string_view id) {
    const auto found =
        std::find_if(gStands.begin(), gStands.end(), [id](const ParkPos& stand) { return stand.id == id; });
    return found == gStands.end() ? nullptr : &*found;
}

}  // namespace hcr
