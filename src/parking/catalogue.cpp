#include "parking/catalogue.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <pugixml.hpp>
#include <stdexcept>

#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/stream_cipher.h"
#include "shell/text.h"
#include "shell/xml.h"

namespace hcr {

std::vector<AirportEntry> gAirports;

namespace {

constexpr i32 kCatalogueUnusable = 88;
constexpr std::size_t kAirports = 15000;
constexpr f64 kMaxLatitude = 90, kMaxLongitude = 180;

/// The whole text as a number; blanks around it don't count.
template <typename Number>
Number lf_number(pugi::xml_attribute attribute) {
    const std::string_view text = gf_trim(attribute.value());
    const char* const end = text.data() + text.size();
    Number number{};
    const auto [stop, fault] = std::from_chars(text.data(), end, number);
    if (fault != std::errc{} || stop != end) throw std::runtime_error(fmt::format("'{}' is no number", text));
    return number;
}

f64 lf_finite(pugi::xml_attribute attribute) {
    const f64 number = lf_number<f64>(attribute);
    if (!std::isfinite(number)) throw std::runtime_error(fmt::format("'{}' is no number", attribute.value()));
    return number;
}

f64 lf_angle(pugi::xml_attribute attribute, f64 largest) {
    const f64 angle = lf_finite(attribute);
    if (std::abs(angle) > largest) throw std::runtime_error(fmt::format("{} is out of range", attribute.value()));
    return angle;
}

/// The attributes of a row that its tests ask for.
struct AirportRow {
    std::string_view code;
    pugi::xml_attribute iata, lat, lon, alt, stands;
};

bool lf_isComplete(const AirportRow& row) {
    const char* missing = nullptr;
    if (!row.lat || !row.lon) {
        missing = "latLons";
    } else if (!row.alt) {
        missing = "alt";
    } else {
        // A row without stands is good all the same: it has no archived airport file.
        if (!row.stands) gf_logError(fmt::format("Missing stands for airport '{}'", row.code));
        if (!row.iata) missing = "IATA";
    }
    if (missing != nullptr) gf_logError(fmt::format("Missing {} for airport '{}'", missing, row.code));
    return missing == nullptr;
}

void lf_readRow(const AirportRow& row) {
    if (!lf_isComplete(row)) return;
    try {
        AirportEntry entry;
        entry.code = row.code;
        entry.iata = row.iata.value();
        entry.lat = lf_angle(row.lat, kMaxLatitude);
        entry.lon = lf_angle(row.lon, kMaxLongitude);
        entry.alt = lf_finite(row.alt);
        if (row.stands) entry.stands = lf_number<i32>(row.stands);
        gAirports.push_back(std::move(entry));
    } catch (const std::exception& fault) {
        gf_logError(fmt::format("Error parsing coordinates for airport '{}': {}", row.code, fault.what()));
    }
}

void lf_readFile(const std::filesystem::path& path) {
    pugi::xml_document document;
    if (const pugi::xml_parse_result result = gf_loadXmlDocument(document, path); !result) {
        throw std::runtime_error(gf_pathToUtf8(path) + " not loaded: " + result.description());
    }
    const pugi::xml_node airports = gf_rootOf(document).child("airports");
    if (!airports) throw std::runtime_error("Missing <airports> root in: " + gf_pathToUtf8(path));
    for (const pugi::xml_node node : airports.children("airport")) {
        const AirportRow row{node.attribute("code").value(), node.attribute("iata"), node.attribute("lat"),
                             node.attribute("lon"),          node.attribute("alt"),  node.attribute("stands")};
        if (!row.code.empty()) lf_readRow(row);
    }
}

bool lf_codeBefore(const AirportEntry& a, const AirportEntry& b) {
    return a.code < b.code;
}

void lf_decrypt(const FileNames& files) {
    if (gf_streamDecrypt(files.airportsEnc, files.airportsXml)) return;
    const std::string fault = gf_decryptFaultText(files.airportsEnc);
    gf_log(fmt::format("{} exception : {}", "gf_readAirports", fault));
    throw std::runtime_error(fault);
}

void lf_readCatalogue(const FileNames& files) {
    lf_decrypt(files);
    gAirports.reserve(kAirports);
    lf_readFile(files.airportsXml);
    gAirports.shrink_to_fit();
    // Stable: of two rows with one code the first in the file is the one that is found.
    std::stable_sort(gAirports.begin(), gAirports.end(), lf_codeBefore);
    gf_log(fmt::format("{} airports read", gAirports.size()));
    gf_removeIfPresent(files.airportsXml);
}

}  // namespace

bool gf_readAirports() {
    if (!gAirports.empty()) return true;
    const FileNames& files = gFiles();
    try {
        lf_readCatalogue(files);
    } catch (const std::exception& fault) {
        gf_forgetAirports();
        gf_removeIfPresent(files.airportsXml);
        throw UserErrorException(kCatalogueUnusable, fault.what());
    }
    return !gAirports.empty();
}

const AirportEntry* gf_findAirport(std::string_view code) {
    const auto row =
        std::lower_bound(gAirports.begin(), gAirports.end(), code,
                         [](const AirportEntry& entry, std::string_view wanted) { return entry.code < wanted; });
    return row != gAirports.end() && row->code == code ? &*row : nullptr;
}

bool gf_airportKnown(std::string_view code) {
    return gf_findAirport(code) != nullptr;
}

void gf_forgetAirports() {
    gAirports.clear();
}

}  // namespace hcr
