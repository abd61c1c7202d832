#include "feed/traffic_line.h"

#include <algorithm>
#include <cmath>
#include <random>

#include "core/model/geo.h"
#include "core/model/range.h"
#include "feed/feed_counters.h"
#include "feed_world.h"
#include "tools/feed/generator.h"

namespace hcr {
namespace {

// A line of 44 good fields about an aircraft in flight, of which single ones can be replaced.
struct Line {
    std::vector<std::string> fields{
        "RTTFC",   "4739591", "52.25382", "4.92249", "4525", "2368",         "1",     "92.45",  "281.30",
        "KLM1627", "E190",    "PH-EXF",   "AMS",     "null", "1666985865.8", "X2",    "KL1627", "mlat",
        "4950",    "242",     "258",      "0.396",   "0.1",  "12",           "95.98", "98.16",  "2336",
        "none",    "A3",      "1013",     "-1",      "-1",   "-1.00",        "",      "0.0",    "-4.7",
        "226",     "36",      "6",        "15",      "1",    "81228",        "",      ""};

    Line& with(std::size_t field, const std::string& value) {
        fields.at(field) = value;
        return *this;
    }
    std::string text() const {
        std::string line;
        for (const std::string& field : fields) line += (line.empty() ? "" : ",") + field;
        return line;
    }
};

struct TrafficLine : FeedWorld {
    TrafficLine() {
        gTrafficReader.userLat = 52.3;
        gTrafficReader.userLon = 4.8;
    }
    static void setParkAirport(f64 elevationFt) {
        gTrafficReader.parkAirportLat = 52.25;
        gTrafficReader.parkAirportLon = 4.92;
        gTrafficReader.parkAirportAlt = elevationFt;
        gTrafficReader.parkAirportAltValid = true;
    }
    /// The report that the line gives; null when it is dropped.
    const TrafficReport* decode(const std::string& text) {
        gReports.clear();
        datagram = text;
        gTrafficReader.text = datagram;
        gTrafficReader.handleText();
        return gReports.empty() ? nullptr : &gReports.back();
    }
    const TrafficReport* decode(const Line& fields) { return decode(fields.text()); }
    static u64 drops(LineDrop reason) { return gFeedCounters.dropped[static_cast<int>(reason)]; }

    std::string datagram;
};

TEST_F(TrafficLine, AllValuesOfAReportComeFromTheirFields) {
    simTick = 1234;
    const TrafficReport* report = decode(Line());
    ASSERT_NE(report, nullptr);
    EXPECT_EQ(report->hexid, 4739591u);
    EXPECT_EQ(report->callsign, "KLM1627");
    EXPECT_EQ(report->model, "E190");
    EXPECT_EQ(report->registration, "PH-EXF");
    EXPECT_EQ(report->from, "AMS");
    EXPECT_EQ(report->to, "");
    EXPECT_EQ(report->timestamp, 1666985865.8);
    const PosSample& s = report->sample;
    EXPECT_EQ(s.lat, 52.25382);
    EXPECT_EQ(s.lon, 4.92249);
    EXPECT_EQ(s.alt, 4525);
    EXPECT_EQ(s.vs, 2368);
    EXPECT_EQ(s.track, 92.45);
    EXPECT_EQ(s.speed, 281.30);
    EXPECT_EQ(s.tas, 258);
    EXPECT_EQ(s.time, 1234 + 3000);
    EXPECT_TRUE(s.airborne);
    EXPECT_FALSE(s.stationary);
    EXPECT_TRUE(s.rollValid);
    EXPECT_DOUBLE_EQ(s.roll, -12 * kDegToRad);
    EXPECT_FALSE(s.adsb || s.trueHeadingValid);
    EXPECT_EQ(gLastTimestamp, 1666985865.8);
}

// Every line here is dropped; `log` is what it leaves in the log, empty for nothing at all.
TEST_F(TrafficLine, BadAndUnwantedLinesAreDroppedForTheirReason) {
    struct Row {
        const char* name;
        std::size_t field;
        std::string value;
        LineDrop reason;
        std::string log;
    };
    const Row rows[] = {
        {"vehicle in any field", 33, "X VEHICLE", LineDrop::vehicle, ""},
        {"empty timestamp", 14, "", LineDrop::badField, "timestamp:\n"},
        {"timestamp that is no number", 14, "nan", LineDrop::badField, "timestamp:nan"},
        {"timestamp before time began", 14, "-5", LineDrop::badField, "timestamp:-5"},
        {"timestamp of no calendar", 14, "1e300", LineDrop::badField, "timestamp:1e300"},
        {"lat with plus", 2, "+52.2", LineDrop::badField, "lat:+52.2"},
        {"lat with blank", 2, " 52.2", LineDrop::badField, "lat: 52.2"},
        {"lat beyond the pole", 2, "90.0001", LineDrop::badField, "invalid lalo: 90.000100,4.922490"},
        {"lon infinite", 3, "inf", LineDrop::badField, "lon:inf"},
        {"lon too far", 3, "-180.1", LineDrop::badField, "invalid lalo: 52.253820,-180.100000"},
        {"lat that no double holds", 2, "1e999", LineDrop::badField, "lat:1e999"},
        {"out of range", 2, "53.1", LineDrop::outOfRange, ""},
        {"long registration", 11, "PH-EXFPH-EXF9", LineDrop::registration, ""},
        {"no model", 10, "", LineDrop::noAircraft, ""},
        {"model null", 10, "null", LineDrop::noAircraft, ""},
        {"model 0", 10, "0", LineDrop::noAircraft, ""},
        {"model ZZZZ", 10, "ZZZZ", LineDrop::noAircraft, ""},
        {"vehicle type", 10, "GRND", LineDrop::noAircraft, ""},
        {"long type", 10, "E190X", LineDrop::noAircraft, ""},
        {"category of an obstacle", 28, "C1", LineDrop::noAircraft, ""},
        {"hexid without digit", 1, "x12", LineDrop::badField, "hexid incorrectx12"},
        {"hexid negative", 1, "-4739591", LineDrop::badField, "hexid incorrect-4739591"},
        {"hexid of 33 bits", 1, "4294967296", LineDrop::badField, "hexid incorrect4294967296"},
        {"hexid of a static aircraft", 1, "10000", LineDrop::parkedId, ""},
        {"no ground speed", 8, "", LineDrop::badField, "gs:\n"},
        {"negative ground speed", 8, "-1.00", LineDrop::badField, "gs:-1.00"},
        {"faster than anything", 8, "1e308", LineDrop::badField, "gs:1e308"},
        {"altitude unreadable", 4, "FL100", LineDrop::badField, "altitude FL100 incorrect, from: RTTFC,"},
        {"higher than anything", 4, "1e300", LineDrop::badField, "altitude 1e300 incorrect, from: RTTFC,"},
        {"callsign of no aircraft", 9, "AIRPORT1", LineDrop::callsign, ""},
        {"on the ground without a park airport", 4, "0", LineDrop::onGround, ""},
        {"below the sea", 4, "-75", LineDrop::onGround, ""},
        {"track unreadable", 7, "null", LineDrop::badField, "track incorrect null"},
        {"track beyond the circle", 7, "1e12", LineDrop::badField, "track incorrect 1e12"},
        {"vs", 5, "-", LineDrop::badField, "vs:-"},
        {"vs of a bullet", 5, "-1e9", LineDrop::badField, "vs:-1e9"},
        {"roll", 23, "", LineDrop::badField, "roll:\n"},
        {"TAS", 20, "", LineDrop::badField, "TAS incorrect\n"},
        {"TAS negative", 20, "-2", LineDrop::badField, "TAS incorrect-2"},
    };
    gf_holdClock(1700000000);
    for (const Row& row : rows) {
        gf_turnClock(3'000'001);  // twenty in a minute are logged
        const std::string before = log();
        const u64 counted = drops(row.reason);
        EXPECT_EQ(decode(Line().with(row.field, row.value)), nullptr) << row.name;
        EXPECT_EQ(drops(row.reason), counted + 1) << row.name;
        const std::string added = log().substr(before.size());
        if (row.log.empty()) {
            EXPECT_EQ(added, "") << row.name;
        } else {
            EXPECT_EQ(added.find("exception in processLineSub: " + row.log), 0u) << row.name << ": " << added;
        }
    }
    EXPECT_NE(decode(Line()), nullptr) << "the line as such is good";
}

TEST_F(TrafficLine, AFloodOfBadLinesLeavesAShortLog) {
    gf_holdClock(1700000000);
    const u64 counted = drops(LineDrop::badField);
    for (int i = 0; i < 1000; ++i) decode(Line().with(4, "\x1B" + std::string(15'000, 'x')));
    EXPECT_EQ(drops(LineDrop::badField), counted + 1000);
    const std::string start = "exception in processLineSub: altitude ?" + std::string(199, 'x') +
                              "... incorrect, from: RTTFC,4739591,52.25382,4.92249,?xxx";
    EXPECT_EQ(log().substr(0, start.size()), start);
    EXPECT_LT(log().size(), 20U * 600U);
    gf_logLeftOut();
    EXPECT_TRUE(logged("\n... and 980 more: exception in processLineSub\n"));
}

// An aircraft whose callsign begins with a zero byte is made under no name and can't be found again.
TEST_F(TrafficLine, NoTextHoldsAControlByte) {
    gf_collectCallsigns(true);
    const std::string good = Line().text();
    const std::size_t texts = good.find("KLM1627"), behind = good.find(",4950");
    u64 counted = drops(LineDrop::controlByte);
    for (std::size_t at = texts; at <= behind; ++at) {
        for (const char control : {'\0', '\n', '\x1B', '\x1F', '\x7F'}) {
            std::string line = good;
            line.insert(at, 1, control);
            EXPECT_EQ(decode(line), nullptr) << at;
            EXPECT_EQ(drops(LineDrop::controlByte), ++counted) << at;
        }
    }
    EXPECT_EQ(decode(Line().with(28, "A\x01")), nullptr);
    EXPECT_EQ(drops(LineDrop::controlByte), counted + 1);
    EXPECT_EQ(log(), "");
    EXPECT_TRUE(gTrafficReader.realCallsigns.empty());
    EXPECT_NE(decode(Line().with(9, "\xC3\xA9 ~")), nullptr);
    for (const char* steering : {"KLM\xC2\x9B", "\xC2\x80", "KL\x9BM", "\xFF"}) {
        EXPECT_EQ(decode(Line().with(9, steering)), nullptr) << steering;
    }

    Line line;
    line.fields.resize(29);
    EXPECT_NE(decode(line.text() + "\r\n"), nullptr) << "the end of a line is no part of it";
    EXPECT_EQ(decode(line.with(28, "C1").text() + "\n"), nullptr);
}

TEST_F(TrafficLine, ALineNeedsTwentyNineFieldsOfAnyContent) {
    Line line;
    line.fields.resize(29);
    EXPECT_NE(decode(line), nullptr);
    line.fields.resize(28);
    EXPECT_EQ(decode(line), nullptr);
    for (const char* text : {"", ",", ",,,,", "RTTFC"}) EXPECT_EQ(decode(std::string(text)), nullptr);
    EXPECT_EQ(decode(std::string(16000, ',')), nullptr);
    decode(std::string("a,b,"));
    EXPECT_EQ(gTrafficReader.fields, (std::vector<std::string_view>{"a", "b", ""}));
}

TEST_F(TrafficLine, AFeedThatIsTooFastLosesTheOldestReportsNotAllAircraft) {
    const u64 before = drops(LineDrop::overtaken);
    constexpr u32 kFirstId = 20000, kLines = 5000;
    for (u32 i = 0; i < kLines; ++i) {
        datagram = Line().with(1, std::to_string(kFirstId + i)).text();
        gTrafficReader.text = datagram;
        gTrafficReader.handleText();
    }
    const u64 lost = drops(LineDrop::overtaken) - before;
    EXPECT_EQ(gReports.size() + lost, kLines);
    EXPECT_GE(gReports.size(), 2000U) << "a burst of so many is taken whole";
    EXPECT_LE(gReports.size(), 4000U) << "what waits longer comes too late to be played";
    EXPECT_EQ(gReports.front().hexid, kFirstId + lost);
    EXPECT_EQ(gReports.back().hexid, kFirstId + kLines - 1);
}

TEST_F(TrafficLine, PositionsAtTheNullIslandAreRefused) {
    gTrafficReader.userLat = gTrafficReader.userLon = 0;
    EXPECT_EQ(decode(Line().with(2, "0.00005").with(3, "0.00005")), nullptr);
    EXPECT_TRUE(logged("exception in processLineSub: invalid lalo: 0.000050,0.000050\n"));
    EXPECT_NE(decode(Line().with(2, "0.00005").with(3, "0.00011")), nullptr);
}

TEST_F(TrafficLine, NumbersOfEveryLengthAreReadAsTheLibraryReadsThem) {
    std::mt19937 random(7);
    for (int i = 0; i < 20'000; ++i) {
        std::string text = fmt::format("{}5{}", i % 3 == 0 ? "-" : "", random() % 10);
        text.insert(text.size() - 2, random() % 8, '0');
        const std::size_t decimals = random() % 14;
        if (decimals > 0) text += '.';
        for (std::size_t digit = 0; digit < decimals; ++digit) text += static_cast<char>('0' + random() % 10);
        if (random() % 16 == 0) text += random() % 2 == 0 ? "e-1" : "x";
        gTrafficReader.userLat = text[0] == '-' ? -52 : 52;
        gRangeNm = 6000;
        const TrafficReport* report = decode(Line().with(2, text));
        ASSERT_NE(report, nullptr) << text;
        ASSERT_EQ(report->sample.lat, std::strtod(text.c_str(), nullptr)) << text;
    }
}

TEST_F(TrafficLine, VehiclesObstaclesAndPlaceholdersAreDropped) {
    for (const char* type : {"BALL", "EMER", "GLID", "GRND", "GND", "PARA", "SERV", "SHIP", "VENT"}) {
        EXPECT_NE(decode(Line().with(10, type).with(28, "")), nullptr) << type;
        EXPECT_NE(decode(Line().with(10, type).with(28, "null")), nullptr) << type;
        EXPECT_EQ(decode(Line().with(10, type).with(28, "A3")), nullptr) << type;
    }
    for (const char* category : {"B1", "B2", "B4", "C1", "C2"}) EXPECT_EQ(decode(Line().with(28, category)), nullptr);
    for (const char* callsign : {"ERARMTR1", "AIRPORT1", "00000000"}) {
        EXPECT_EQ(decode(Line().with(9, callsign)), nullptr) << callsign;
    }
}

TEST_F(TrafficLine, WithoutACallsignTheRegistrationIsIdentityEnough) {
    for (const char* callsign : {"", "null", "@@@@@@@@", "N123@"}) {
        const TrafficReport* report = decode(Line().with(9, callsign));
        ASSERT_NE(report, nullptr) << callsign;
        EXPECT_EQ(report->callsign, "");
        EXPECT_EQ(decode(Line().with(9, callsign).with(11, "null")), nullptr) << callsign;
    }
    EXPECT_NE(decode(Line().with(11, "")), nullptr);
}

TEST_F(TrafficLine, HeightOverTheParkAirportAndSpeedTellWhatIsOnTheGround) {
    struct Row {
        f64 elevation;
        const char* alt;
        const char* speed;
        bool airborne;
    };
    const Row rows[] = {
        {100, "130", "100", false}, {100, "130", "130", true},    {100, "142", "120", false},
        {100, "143", "120", true},  {100, "184", "80", false},    {100, "184", "80.1", true},
        {100, "208", "43", false},  {100, "208", "43.1", true},   {100, "500", "30", false},
        {100, "500", "35.1", true}, {100, "100", "200", false},   {14500, "14000", "200", true},
        {-11, "25", "140", true},   {5000, "4000", "150", false},
    };
    for (const Row& row : rows) {
        setParkAirport(row.elevation);
        const TrafficReport* report = decode(Line().with(4, row.alt).with(8, row.speed));
        ASSERT_NE(report, nullptr) << row.alt << " " << row.speed;
        EXPECT_EQ(report->sample.airborne, row.airborne) << row.alt << " " << row.speed;
        EXPECT_EQ(report->sample.alt, row.airborne ? std::stod(row.alt) : 0);
    }
    gTrafficReader.parkAirportAltValid = false;
    EXPECT_NE(decode(Line().with(4, "30").with(8, "60")), nullptr) << "no airport to be on the ground of";
    EXPECT_EQ(decode(Line().with(4, "3000").with(8, "30")), nullptr);
}

TEST_F(TrafficLine, OnTheGroundOnlyTheParkAirportCountsAndRollDoesNot) {
    setParkAirport(-11);
    const TrafficReport* report = decode(Line().with(4, "0").with(23, "not given"));
    ASSERT_NE(report, nullptr);
    EXPECT_FALSE(report->sample.airborne || report->sample.rollValid);
    EXPECT_EQ(decode(Line().with(4, "0").with(2, "52.34")), nullptr) << "more than 5 nm away";
}

TEST_F(TrafficLine, AirborneOnlyKeepsWhatIsWellAboveTheAirport) {
    AIRBORNE_ONLY.current = true;
    EXPECT_EQ(decode(Line().with(4, "200")), nullptr);
    EXPECT_EQ(decode(Line().with(4, "300")), nullptr);
    EXPECT_NE(decode(Line().with(4, "301")), nullptr);
    setParkAirport(1000);
    EXPECT_EQ(decode(Line().with(4, "1300")), nullptr);
    EXPECT_NE(decode(Line().with(4, "1301")), nullptr);
    EXPECT_EQ(decode(Line().with(4, "0")), nullptr) << "on the ground, however deep below the airport";
}

TEST_F(TrafficLine, TheTrueHeadingOfAdsbStandsInForAMissingTrack) {
    const auto adsb = [] { return Line().with(17, "adsb_icao"); };
    const PosSample north = decode(adsb().with(25, "0"))->sample;
    EXPECT_TRUE(north.adsb && north.trueHeadingValid);
    EXPECT_DOUBLE_EQ(north.trueHeading, 2 * kPi);
    EXPECT_EQ(north.track, 92.45);
    EXPECT_DOUBLE_EQ(decode(adsb().with(25, "90").with(7, "0"))->sample.track, 90);
    EXPECT_DOUBLE_EQ(decode(adsb().with(25, "360").with(7, ""))->sample.track, 360);
    const PosSample unknown = decode(adsb().with(25, "-1.00").with(7, "0.00"))->sample;
    EXPECT_FALSE(unknown.adsb || unknown.trueHeadingValid);
    EXPECT_EQ(unknown.track, 0);
    EXPECT_EQ(decode(adsb().with(25, "360.5")), nullptr);
    EXPECT_TRUE(logged("exception in processLineSub: trueheading: 360.50\n"));
    EXPECT_EQ(decode(adsb().with(25, "")), nullptr);
    EXPECT_TRUE(logged("exception in processLineSub: trueheading:\n"));
    EXPECT_NE(decode(Line().with(25, "")), nullptr) << "other messages have none";

    for (const char* type : {"X_adsb_icao", "a_adsb_icao"}) {
        EXPECT_TRUE(decode(Line().with(17, type).with(25, "90"))->sample.trueHeadingValid) << type;
    }
    for (const char* type : {"_adsb_icao", "XX_adsb_icao", "1_adsb_icao", "X-adsb_icao", "Xadsb_icao", "X_X_adsb_icao",
                             "adsb_icao_nt", "X_adsb_icao2", "X_adsr_icao", "X_", ""}) {
        EXPECT_FALSE(decode(Line().with(17, type).with(25, "90"))->sample.adsb) << type;
    }
}

TEST_F(TrafficLine, RollAndTasOfMinusOneAreUnknown) {
    EXPECT_FALSE(decode(Line().with(23, "-1.0"))->sample.rollValid);
    EXPECT_FALSE(decode(Line().with(23, "0.0"))->sample.rollValid);
    EXPECT_GT(decode(Line().with(23, "-1.1"))->sample.roll, 0);
    const std::pair<const char*, f64> rows[] = {{"2000", 180},  {"2001", 220},  {"5000", 220}, {"10000", 250},
                                                {"20000", 350}, {"20001", 430}, {"41000", 430}};
    for (const auto& [alt, tas] : rows) EXPECT_EQ(decode(Line().with(4, alt).with(20, "-1"))->sample.tas, tas) << alt;
    EXPECT_EQ(decode(Line().with(20, "0"))->sample.tas, 0);
}

TEST_F(TrafficLine, CollectsRealCallsignsAlsoFromReportsThatAreDropped) {
    decode(Line().with(9, "BEFORE1"));
    gf_collectCallsigns(true);
    for (const char* callsign : {"KLM1", "KLM1", "null", "", "N123@"}) decode(Line().with(9, callsign));
    decode(Line().with(9, "KLM2").with(10, "GRND"));
    decode(Line().with(9, "FAR").with(2, "54"));
    gf_collectCallsigns(false);
    decode(Line().with(9, "AFTER1"));
    EXPECT_EQ(gTrafficReader.realCallsigns, (std::set<std::string, std::less<>>{"KLM1", "KLM2"}));
}

TEST_F(TrafficLine, WhileReportsAreNotTakenTheFeedsClockStillRuns) {
    gAcceptReports = false;
    EXPECT_EQ(decode(Line()), nullptr);
    EXPECT_EQ(gLastTimestamp, 1666985865.8);
    EXPECT_EQ(gf_feedCounterText().find("received "), 0u);
}

// What the engine may rely on, whatever came over the wire.
std::string broken(const TrafficReport& report) {
    const PosSample& s = report.sample;
    for (const f64 value : {s.lat, s.lon, s.alt, s.speed, s.track, s.vs, s.tas, s.roll, s.trueHeading}) {
        if (!std::isfinite(value)) return "a value that is no number";
    }
    if (std::fabs(s.lat) > 90 || std::fabs(s.lon) > 180) return "position";
    if (s.alt < 0 || s.alt > 200000 || s.airborne != (s.alt > 0)) return "altitude";
    if (s.speed < 0 || s.speed > 4000 || s.tas < 0 || s.tas > 4000) return "speed";
    if (std::fabs(s.track) > 360 || std::fabs(s.vs) > 100000 || std::fabs(s.roll) > kPi) return "motion";
    if (s.trueHeading < 0 || s.trueHeading > 2 * kPi + 1e-9) return "heading";
    if (report.hexid <= kLastStaticId || report.registration.size() > 12 || report.model.empty()) return "identity";
    if (report.callsign.empty() && report.registration.empty()) return "no name";
    for (const std::string& text : {report.callsign, report.registration, report.model, report.from, report.to}) {
        if (std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; })) return "text";
    }
    if (!(report.timestamp >= 0 && report.timestamp < 1e12)) return "timestamp";
    return {};
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kMutatedLines = 120'000;
#else
constexpr int kMutatedLines = 1'000'000;
#endif

TEST_F(TrafficLine, NoDamagedLineBringsNonsenseIntoTheQueue) {
    gf_closeLog();  // a line for each of them would be the greater part of the work
    setParkAirport(-11);
    gRangeNm = 200;
    GenerateOptions options;
    options.minutes = 1;
    options.aircraft = 40;
    const std::vector<TimedLine> lines = generateFeed(options);
    ASSERT_FALSE(lines.empty());
    const char* const nasty[] = {"",       "-1",         "nan",     "inf", "-inf", "1e308", "-1e308",
                                 "1e-320", "4294967296", "null",    "0x1", "-0",   "@",     "360.1",
                                 "-360",   "9e15",       "0.00001", " 5",  "+5",   "1e"};
    std::mt19937 random(7);
    const auto below = [&](std::size_t count) { return random() % count; };
    u64 queued = 0;
    for (int i = 0; i < kMutatedLines; ++i) {
        std::string line = lines[below(lines.size())].line;
        const std::size_t damages = 1 + below(3);
        for (std::size_t k = 0; k < damages; ++k) {
            const std::size_t at = below(line.size());
            switch (below(5)) {
                case 0:
                    line[at] = static_cast<char>(random());
                    break;
                case 1:
                    line.erase(at, 1 + below(4));
                    break;
                case 2:
                    line.insert(at, 1, static_cast<char>(random()));
                    break;
                default: {  // another value in a whole field
                    const std::size_t begin = line.rfind(',', at) + 1;
                    const std::size_t end = std::min(line.find(',', begin), line.size());
                    line.replace(begin, end - begin, nasty[below(std::size(nasty))]);
                }
            }
            if (line.empty()) break;
        }
        gTrafficReader.text = line;
        gTrafficReader.handleText();
        for (std::size_t at = 0; at < gReports.size(); ++at) {
            const TrafficReport& report = gReports[at];
            const std::string what = broken(report);
            ASSERT_EQ(what, "") << line;
            ++queued;
        }
        gReports.clear();
    }
    EXPECT_GT(queued, static_cast<u64>(kMutatedLines / 10)) << "most of them must get that far to prove anything";
}

}  // namespace
}  // namespace hcr
