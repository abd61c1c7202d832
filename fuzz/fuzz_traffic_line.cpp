#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/model/range.h"
#include "core/model/tables.h"
#include "feed/traffic_line.h"
#include "feed/traffic_reader.h"

using namespace hcr;

namespace {

// A line may be dropped for any reason, but what is queued the engine takes as it stands.
void check(const TrafficReport& report) {
    const PosSample& s = report.sample;
    for (const f64 value : {s.lat, s.lon, s.alt, s.speed, s.track, s.vs, s.tas, s.roll, s.trueHeading}) {
        if (!std::isfinite(value)) std::abort();
    }
    if (s.alt < 0 || s.speed < 0 || s.tas < 0 || s.airborne != (s.alt > 0)) std::abort();
    if (report.hexid <= kLastStaticId || report.model.empty()) std::abort();
    if (report.callsign.empty() && report.registration.empty()) std::abort();
    for (const std::string& text : {report.callsign, report.registration, report.model, report.from, report.to}) {
        for (const char c : text) {
            if (static_cast<unsigned char>(c) < ' ' || c == 0x7F) std::abort();
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    gTrafficReader.userLat = 52.3;
    gTrafficReader.userLon = 4.8;
    gTrafficReader.parkAirportLat = 52.31;
    gTrafficReader.parkAirportLon = 4.76;
    gTrafficReader.parkAirportAlt = -11;
    gTrafficReader.parkAirportAltValid = true;
    gRangeNm = 25000;
    gAcceptReports = true;
    gTrafficReader.text = std::string_view(reinterpret_cast<const char*>(data), size);
    gTrafficReader.handleText();
    for (std::size_t i = 0; i < gReports.size(); ++i) check(gReports[i]);
    gReports.clear();
    return 0;
}
