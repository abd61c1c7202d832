#include "liveries/results.h"

#include <fmt/format.h>

#include <atomic>

#include "liveries/categories.h"
#include "liveries/livery_tables.h"
#include "liveries/match_memory.h"
#include "liveries/regcodes.h"
#include "liveries/scanned_file.h"
#include "liveries/similar_types.h"
#include "shell/log.h"
#include "shell/window_state.h"

namespace hcr {
namespace {

std::atomic<bool> gLoaded{false};

void lf_dropScanList() {
    gScanList = {};  // with its memory
}

void lf_showLiveryCount(std::size_t count) {
    gWindow.liveryCount = count;
    gf_repaint(Band::liveries);
}

std::size_t lf_airlineCount() {
    std::size_t count = 0;
    std::string_view last;
    for (const LiveryGroup& group : liveryIndex) {
        if (count == 0 || group.airline != last) ++count;
        last = group.airline;
    }
    return count;
}

void lf_buildTables(std::vector<ScannedLivery>& liveries) {
    gf_buildLiveryIndex(liveries);
    gf_buildAirlineTitles();
    gf_mergeInlineRegcodes(liveries);
    gf_processOfflineRegcodes();
    gf_log(fmt::format("{} registration codes", regcodeTitles.size()));
    gf_buildGenericTitles();
    gf_log(fmt::format("{} airlines, {} pax aircraft models and {} cargo aircraft models", lf_airlineCount(),
                       genericTitles[0].size(), genericTitles[1].size()));
}

void lf_emptyTables() {
    gf_forgetLiveries();
    similarTypes = {};
    gf_emptyLiveryTables();
}

void lf_readAndBuild() {
    pugi::xml_document document;
    std::vector<ScannedLivery> liveries = gf_readScannedLiveries(document);
    lf_showLiveryCount(liveries.size());
    lf_buildTables(liveries);
}

}  // namespace

void gf_loadScanResults() {
    if (gLoaded) {
        gf_log("Processing scanned liveries skipped; already done in previous start-up");
        lf_dropScanList();
        return;
    }
    lf_emptyTables();  // an earlier loading may have failed half-way
    lf_readAndBuild();
    gf_buildSimilarTables();
    gf_reportCategories();
    gLoaded = true;
    gf_repaint(Band::liveries);
    lf_dropScanList();
}

void gf_clearLiveryTables() {
    lf_emptyTables();
    gLoaded = false;
}

bool gf_liveryTablesLoaded() {
    return gLoaded;
}

}  // namespace hcr
