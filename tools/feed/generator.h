#pragma once

#include <string>
#include <vector>

#include "core/model/geo.h"
#include "platform/types.h"

namespace hcr {

// Made-up traffic around a place, as the feed would tell it. The same options give the same lines. No globals; any
// thread.

/// Who flies: an operator or, with an empty `icao`, private owners whose callsign is the registration.
struct FeedOperator {
    std::string icao;                ///< three letters, head of the callsign
    std::string iata;                ///< two letters, head of the flight number
    std::string home;                ///< IATA code of the base
    std::string registrationPrefix;  ///< with a hyphen: letters follow up to six characters; else 3 digits, 2 letters
    u32 hexBase = 0;                 ///< first ICAO address of the country
    std::vector<std::string> types;  ///< ICAO type codes; a type that stands twice is twice as frequent
};

/// A place where aircraft stand; heading in degrees.
struct FeedStand {
    f64 lat = 0, lon = 0;
    f64 heading = 0;
};

/// The landing end of the runway in use.
struct FeedRunway {
    f64 lat = 0, lon = 0;  ///< threshold
    f64 heading = 0;       ///< degrees true
    f64 lengthFt = 11500;
};

enum class FeedKind : i32 { arrival, departure, overflight, light, helicopter, parked, vehicle };
const char* feedKindName(FeedKind kind);

/// More aircraft than this aren't made; callsigns of an operator would run out.
inline constexpr i32 kMostFeedAircraft = 2000;

struct GenerateOptions {
    f64 lat = 52.3086, lon = 4.7639;  ///< the place
    f64 elevationFt = -11;
    std::string airport = "AMS";  ///< IATA code of the place
    f64 start = 1700000000;       ///< Unix seconds of the first moment
    f64 minutes = 60;
    i32 aircraft = 120;  ///< vehicles not counted
    u32 seed = 1;
    f64 rangeNm = 60;                     ///< how far from the place traffic begins and ends
    f64 latencySeconds = 0.5;             ///< at most so much later than its timestamp a line is sent
    std::vector<FeedRunway> runway;       ///< none: one right of the place, heading 058
    std::vector<FeedStand> stands;        ///< none: rows around the place
    std::vector<FeedOperator> operators;  ///< none: a usual European mix
    // Kinds that the caller wants in certain numbers; -1: a share of `aircraft`.
    i32 arrivals = -1, departures = -1, helicopters = -1, lights = -1, parked = -1, vehicles = -1;
};

/// A line and the Unix time at which it is sent.
struct TimedLine {
    f64 time = 0;
    std::string line;
};

struct GeneratedAircraft {
    FeedKind kind = FeedKind::overflight;
    u32 hexid = 0;
    std::string callsign, type, registration, airline;  ///< airline: ICAO code, empty for private owners
    std::string from, to;                               ///< IATA codes, may be empty
    std::string iataFlight;
    f64 firstReport = 0, lastReport = 0;  ///< Unix seconds (timestamps); both 0 without a report
    i32 reports = 0;
    i32 stand = -1;            ///< index into FeedPlan::stands of the stand that it comes from or goes to
    f64 runwayTime = 0;        ///< touchdown or lift-off, Unix seconds; 0 for other kinds
    bool sendsHeading = true;  ///< message type "adsb_icao"
    bool sendsRoll = true;
};

struct FeedPlan {
    std::vector<GeneratedAircraft> aircraft;
    std::vector<TimedLine> lines;    ///< by time
    std::vector<TimedLine> weather;  ///< JSON objects, one every ten seconds
    FeedRunway runway;
    std::vector<FeedStand> stands;
};

FeedPlan generatePlan(const GenerateOptions& options);
/// Only the lines of generatePlan.
std::vector<TimedLine> generateFeed(const GenerateOptions& options);

/// One datagram of the weather port.
std::string feedWeatherLine(const std::string& icao, i32 qnh);

}  // namespace hcr
