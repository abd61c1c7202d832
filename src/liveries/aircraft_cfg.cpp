#include "liveries/aircraft_cfg.h"

#include <fmt/format.h>

#include <utility>

#include "liveries/aircraft_cfg_type.h"
#include "liveries/fltsim_section.h"
#include "liveries/ivao_section.h"
#include "liveries/scan_threads.h"
#include "shell/log.h"

namespace hcr {
namespace {

/// A worker of the scan while it works.
struct Worker {
    Worker() = default;
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    ~Worker() { --scanThreadsActive; }
};

}  // namespace

void lf_readSections(CfgFile& file) {
    if (!lf_checkSectionNumbers(file)) return;
    file.type = lf_typeFromFile(file);
    if (!file.type.empty()) lf_splitSections(file, lf_procesFltSimSection);
}

void lf_readIvaoSections(CfgFile& file) {
    if (lf_checkSectionNumbers(file)) lf_splitSections(file, lf_ivaoSection);
}

CfgContent lf_searchLiveriesinFile(i32 folderOrder, const std::filesystem::path& path) {
    const Worker worker;
    CfgFile file = lf_cfgFile(folderOrder, path);
    try {
        if (lf_readCfgText(file)) lf_readSections(file);
    } catch (const std::exception& exception) {
        gf_logError(fmt::format("! Exception in lf_searchLiveriesinFile {}: {}", file.shownPath, exception.what()));
    }
    return std::move(file.content);
}

CfgContent lf_searchLiveriesinIVAOFile(i32 folderOrder, const std::filesystem::path& path) {
    const Worker worker;
    CfgFile file = lf_cfgFile(folderOrder, path);
    try {
        file.type = lf_typeFromIvaoPath(file);
        if (!file.type.empty() && lf_readCfgText(file)) lf_readIvaoSections(file);
    } catch (const std::exception& exception) {
        gf_logError(fmt::format("! Exception in lf_searchLiveriesinIVAOFile {}: {}", file.shownPath, exception.what()));
    } catch (...) {
        gf_logError(fmt::format("! Unknown exception in lf_searchLiveriesinIVAOFile {}", file.shownPath));
    }
    return std::move(file.content);
}

}  // namespace hcr
