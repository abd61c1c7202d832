#include <cstdint>
#include <cstdlib>
#include <pugixml.hpp>

#include "liveries/dbase.h"
#include "liveries/livery_tables.h"
#include "liveries/results.h"
#include "liveries/similar_types.h"
#include "shell/messages.h"

// A list of scanned liveries of any content: each livery that is read stands in every table in which it belongs.

namespace {

void lf_check(bool good) {
    if (!good) std::abort();
}

void lf_loadTables(std::vector<hcr::ScannedLivery> liveries) {
    const std::size_t count = liveries.size();
    hcr::gf_buildLiveryIndex(liveries);
    hcr::gf_buildAirlineTitles();
    hcr::gf_buildGenericTitles();
    std::size_t indexed = 0, generic = 0, ofAirlines = 0;
    for (const hcr::LiveryGroup& group : hcr::liveryIndex) {
        indexed += group.liveries.size();
        for (const hcr::IndexedLivery& livery : group.liveries) {
            lf_check(hcr::gf_findTitle(livery.title) == livery.title);
        }
    }
    for (const auto& types : hcr::genericTitles) {
        for (const auto& [type, titles] : types) generic += titles.size();
    }
    for (const auto& airlines : hcr::airlineTitles) {
        for (const auto& [airline, types] : airlines) {
            for (const auto& [type, titles] : types) ofAirlines += titles.size();
        }
    }
    lf_check(indexed == count && generic == count && ofAirlines == count);
    hcr::similarGroups = {{"A320", "B738"}, {"B738", "C172"}};
    hcr::gf_buildSimilarTables();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pugi::xml_document document;
    if (!document.load_buffer(data, size)) return 0;
    hcr::gf_clearLiveryTables();
    try {
        lf_loadTables(hcr::gf_readScannedDocument(document, "LiveriesScanned.xml"));
    } catch (const hcr::UserErrorException&) {
        // no usable list
    }
    return 0;
}
