#include "shell/data_update.h"

#include <fmt/format.h>

#include <fstream>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "shell/controls.h"
#include "shell/download.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/parameter_file.h"
#include "shell/program_update.h"
#include "shell/run_stop.h"
#include "shell/sim_addons.h"
#include "shell/text.h"

namespace fs = std::filesystem;

namespace hcr {
namespace {

/// An enciphered file of reference data and the parameter that holds its version.
struct DataFile {
    const char* key;
    const fs::path& path;
    StringParameter& version;
};

i32 lf_versionNumber(const nlohmann::json& entry, const char* name) {
    const auto& value = entry.at(name).get_ref<const nlohmann::json::number_integer_t&>();
    if (value < 0 || value > std::numeric_limits<i32>::max()) {
        throw std::out_of_range(fmt::format("{} of a version is out of range", name));
    }
    return static_cast<i32>(value);
}

/// Text of the data server's version file, which doesn't stay behind; nothing when it can't be had.
std::optional<std::string> lf_fetchVersions(const std::string& url) {
    const fs::path& path = gFiles().versionsJson;
    const CurlHandle handle = gf_openCurl();
    if (!gf_download(handle.get(), url, path, false)) {
        gf_logError("Downloading version info from my web site failed!");
        return std::nullopt;
    }
    std::ifstream file(path);
    if (!file) {
        gf_logError("Cannot open versions.json");
        return std::nullopt;
    }
    std::string text{std::istreambuf_iterator<char>(file), {}};
    file.close();
    fs::remove(path);
    return text;
}

/// What came isn't what a data server sends; `fault` has the parser's words.
[[noreturn]] void lf_failVersions(const std::string& url, std::string_view text, const char* fault) {
    const std::string words = gf_isUtf8(fault) ? std::string(fault) : gf_ansiToUtf8(fault);
    const bool isPage = gf_trim(text).starts_with('<');
    const char* reason = isPage ? "It looks like a web page, such as the login page of a network: open a page in your "
                                  "browser, log in there if you are asked to"
                                : "It was cut short or changed on its way, or the server has trouble: wait a while";
    throw std::runtime_error(fmt::format("What {} sends is no list of versions. {}, and start {} again. ({})", url,
                                         reason, kProgramName, words));
}

void lf_logUpdated(const char* key, const VersionData& web) {
    gf_log(fmt::format("{} updated to {}", key, web.text()));
}

void lf_logUpToDate(const char* key) {
    gf_log(fmt::format("{} version up-to-date", key));
}

bool lf_isNewer(const VersionData& web, const StringParameter& local) {
    return web > VersionData(local.current.get());
}

void lf_keepVersion(StringParameter& parameter, const VersionData& web) {
    parameter.current.set(web.text());
    gf_storeParameter(parameter);
}

/// False when a new program was fetched.
bool lf_handleProgram(const char* key, const VersionData& web) {
    gf_log(fmt::format("{} program version at web = {}", kProgramName, web.text()));
    if (web > gf_programVersion()) return !gf_updateProgram(web);
    lf_logUpToDate(key);
    return true;
}

void lf_handleSimAddons(const char* key, const VersionData& web) {
    if (gf_updateSimAddons(web)) {
        lf_logUpdated(key, web);
    } else {
        lf_logUpToDate(key);
    }
}

void lf_handleDataFile(const DataFile& file, const VersionData& web) {
    if (!lf_isNewer(web, file.version) && fs::exists(file.path)) {
        lf_logUpToDate(file.key);
    } else if (gf_downloadDataFile(gf_pathToUtf8(file.path.filename()), file.path)) {
        lf_keepVersion(file.version, web);
        lf_logUpdated(file.key, web);
    }
}

void lf_handleScan(const char* key, const VersionData& web, CheckBox& scan, StringParameter& version, bool resultGone) {
    if (!lf_isNewer(web, version) && !resultGone) {
        lf_logUpToDate(key);
        return;
    }
    scan.current = true;
    gf_storeParameter(scan);
    gf_showInControl(scan);
    lf_keepVersion(version, web);
    lf_logUpdated(key, web);
}

/// Entry by entry, so that a damaged one doesn't keep those before it from being updated. False when a new program was
/// fetched. Throws what the parser throws.
bool lf_handleVersions(const nlohmann::json& versions) {
    const auto versionOf = [&](const char* key) -> std::optional<VersionData> {
        if (gf_stopAsked()) return std::nullopt;
        const std::optional<VersionData> version = gf_webVersion(versions, key);
        if (!version) gf_logError(fmt::format("{} version not found", key));
        return version;
    };
    const FileNames& files = gFiles();
    if (const auto web = versionOf("msfs"); web && !lf_handleProgram("msfs", *web)) return false;
    if (gf_sim2024Chosen()) {
        if (const auto web = versionOf("simaddon")) lf_handleSimAddons("simaddon", *web);
    }
    for (const DataFile& file :
         {DataFile{"airports", files.airportsEnc, AIRPORTS_VERSION}, DataFile{"aig", files.aigEnc, AIG_VERSION}}) {
        if (const auto web = versionOf(file.key)) lf_handleDataFile(file, *web);
    }
    if (const auto web = versionOf("liveries")) {
        lf_handleScan("liveries", *web, SCAN_LIVERIES, LIV_SCAN_VERSION, !fs::exists(files.liveriesScanned));
    }
    if (const auto web = versionOf("addons")) {
        lf_handleScan("addons", *web, SCAN_AIRPORTS, ADDONS_SCAN_VERSION, false);
    }
    if (const auto web = versionOf("dbase")) {
        lf_handleDataFile({"dbase", files.dbaseEnc, DBASE_VERSION}, *web);
    }
    return true;
}

}  // namespace

std::optional<VersionData> gf_webVersion(const nlohmann::json& versions, std::string_view key) {
    if (!versions.is_object()) return std::nullopt;
    const auto found = versions.find(key);
    if (found == versions.end()) return std::nullopt;
    return VersionData(lf_versionNumber(*found, "major"), lf_versionNumber(*found, "minor"),
                       lf_versionNumber(*found, "patch"));
}

bool gf_updateData() {
    const std::string base = gf_dataBase();
    if (base.empty()) {
        gf_log("No data server is set, the data files are taken as they are");
        return true;
    }
    const std::string url = base + "versions.json";
    const std::optional<std::string> text = lf_fetchVersions(url);
    if (!text) return true;
    try {
        return lf_handleVersions(nlohmann::json::parse(*text));
    } catch (const nlohmann::json::exception& e) {
        lf_failVersions(url, *text, e.what());
    } catch (const std::out_of_range& e) {
        lf_failVersions(url, *text, e.what());
    }
}

}  // namespace hcr
