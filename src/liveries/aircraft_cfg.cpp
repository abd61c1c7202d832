#include "liveries/aircraft_cfg.h"

#include <fmt/format.h>

#include "liveries/aircraft_cfg_file.h"
#include "liveries/scan.h"
#include "shell/log.h"

namespace hcr {
namespace {

/// A worker of the scan while it works.
struct Worker {
    Worker() = default;
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    ~Worker() {
        --scanThreadsActive;
    }
};

void lf_readFile(CfgFile& file, std::vector<LiveryData>& liveries) {
    if (!lf_readCfgText(file) || !lf_checkSectionNumbers(file)) return;
    file.type = lf_typeFromFile(file);
    if (!file.type.empty()) lf_splitSections(file, lf_procesFltSimSection, liveries);
}

void lf_readIvaoFile(CfgFile& file, std::vector<LiveryData>& liveries) {
    file.type = lf_typeFromIvaoPath(file);
    if (file.type.empty() || !lf_readCfgText(file) || !lf_checkSectionNumbers(file)) return;
    lf_splitSections(file, lf_ivaoSection, liveries);
}

}  // namespace

std::vector<LiveryData> lf_searchLiveriesinFile(i32 folderOrder, const std::filesystem::path& path) {
    const Worker worker;
    std::vector<LiveryData> liveries;
    CfgFile file = lf_cfgFile(folderOrder, path);
    try {
        lf_readFile(file, liveries);
    } catch (const std::exception& exception) {
        gf_logError(fmt::format("! Exception in lf_searchLiveriesinFile {}: {}", file.shownPath, exception.what()));
    }
    return liveries;
}

std::vector<LiveryData> lf_searchLiveriesinIVAOFile(i32 folderOrder, const std::filesystem::path& path) {
    const Worker worker;
    std::vector<LiveryData> liveries;
    CfgFile file = lf_cfgFile(folderOrder, path);
    try {
        lf_readIvaoFile(file, liveries);
    } catch (const std::exception& exception) {
        gf_logError(fmt::format("! Exception in lf_searchLiveriesinIVAOFile {}: {}", file.shownPath, exception.what()));
    } catch (...) {
        gf_logError(fmt::format("! Unknown exception in lf_searchLiveriesinIVAOFile {}", file.shownPath));
    }
    return liveries;
}

}  // namespace hcr
