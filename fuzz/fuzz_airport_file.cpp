#include <cstdint>
#include <cstdlib>
#include <pugixml.hpp>

#include "core/model/tables.h"
#include "parking/adjacency.h"
#include "parking/learned_file.h"
#include "parking/quality.h"
#include "parking/stands_xml.h"
#include "shell/messages.h"
#include "shell/xml.h"

// An airport file of any content, merged with itself as what was learned there: every stand has a place and a size, its
// options are numbered, neighbours know each other, and what is written of it is read as the same.

namespace {

using namespace hcr;

void lf_check(bool good) {
    if (!good) std::abort();
}

bool lf_knows(const ParkPos& stand, u32 number) {
    for (const u32 neighbour : stand.adjacent) {
        if (neighbour == number) return true;
    }
    return false;
}

void lf_checkStand(const ParkPos& stand, const std::vector<ParkPos>& stands) {
    lf_check(!stand.id.empty() && stand.lat >= -90 && stand.lat <= 90 && stand.lon >= -180 && stand.lon <= 180);
    lf_check(stand.radius >= 0 && stand.radius <= 1 && stands.at(stand.number - 1).id == stand.id);
    for (const u32 number : stand.adjacent) lf_check(lf_knows(stands.at(number - 1), stand.number));
    for (const StandOption& option : stand.options) {
        lf_check(option.index >= 1 && option.day >= 1 && option.day <= 7 && option.hard <= 1);
    }
}

/// How many options of a stand can be written, since their half hours are one run.
std::size_t lf_writable(const ParkPos& stand) {
    std::size_t count = 0;
    for (const StandOption& option : stand.options) count += gf_bitset2hours(option.hours).has_value() ? 1 : 0;
    return count;
}

void lf_checkWriting(const std::vector<ParkPos>& stands) {
    for (const ParkPos& stand : stands) {
        pugi::xml_document document;
        pugi::xml_node element = document.append_child("parkpos");
        gf_writeStandAttributes(element, stand);
        gf_writeOptions(element, stand);
        ParkPos again;
        const bool somewhere = gf_readStand(element, 1, again);
        lf_check(!somewhere || again.options.size() == lf_writable(stand));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pugi::xml_document document;
    if (!document.load_buffer(data, size)) return 0;
    std::vector<ParkPos> stands;
    AirportFile info;
    bool handmade = false;
    try {
        gf_readStands(gf_rootOf(document), 1, stands);
        gf_mergeLearned(document, "EHAM.xml", info, stands, handmade);
    } catch (const UserErrorException&) {
        return 0;  // without an id, or with one twice
    }
    gf_numberStands(stands);
    for (const ParkPos& stand : stands) lf_checkStand(stand, stands);
    const auto [real, soft] = gf_qualityFactor(stands);
    lf_check(real >= -1 && real <= 100 && soft >= -1 && soft <= 100);
    lf_checkWriting(stands);
    return 0;
}
