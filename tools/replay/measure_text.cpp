#include "tools/replay/measure_text.h"

#include <fmt/format.h>

#include <algorithm>

#include "tools/replay/measures.h"

namespace hcr {
namespace {

constexpr const char* kHead =
    "aircraft          type reports  first  delay    path m             alt ft     speed kt  turn  side dive deaf "
    "teeth  jump  step flick early\n"
    "                                    s      s  med  95%  worst   95%  worst  95%  worst  deg/s    s    s    s "
    "          m    ft\n";

struct Sum {
    Measures flown, line;
    i32 due = 0, shown = 0, lowDue = 0, lowToothed = 0;
    std::vector<f64> delays;
    std::string missing, others;
};

std::string lf_name(const FlightRecord& flight) {
    return flight.callsign.empty() ? flight.registration : flight.callsign;
}

std::string lf_row(const FlightRecord& flight, Measures m) {
    const Spread path = spreadOf(m.pathMetres), alt = spreadOf(m.altErrors), speed = spreadOf(m.speedErrors),
                 turn = spreadOf(m.turnRates);
    return fmt::format(
        "{:8} {:>8} {:4} {:7} {:6.0f} {:6.1f} {:4.0f} {:4.0f} {:6.0f} {:5.0f} {:6.0f} {:4.0f} {:6.0f} "
        "{:6.1f} {:4.0f} {:4.0f} {:4.0f} {:5} {:5.0f} {:5.0f} {:5} {:5}\n",
        lf_name(flight), flight.hexid, flight.type, flight.reports.size(), flight.reports.front().at,
        creationDelay(flight), path.median, path.p95, path.worst, alt.p95, alt.worst, speed.p95, speed.worst,
        turn.worst, m.sidewaysSeconds, m.diveSeconds, m.deafSeconds, m.teeth, m.jumpMetres, m.stepFeet, m.flicker,
        m.removedEarly);
}

std::string lf_spread(const char* name, std::vector<f64> flown, std::vector<f64> line) {
    const Spread a = spreadOf(flown), b = spreadOf(line);
    return fmt::format("  {:42} {:9.1f} {:9.1f} {:9.1f}   {:9.1f} {:9.1f} {:9.1f}\n", name, a.median, a.p95, a.worst,
                       b.median, b.p95, b.worst);
}

std::string lf_count(const char* name, f64 flown, f64 line, const std::string& more = {}) {
    return fmt::format("  {:42} {:9.0f} {:19}   {:9.0f}{}\n", name, flown, "", line, more);
}

std::string lf_total(const Sum& sum) {
    const Measures& a = sum.flown;
    const Measures& b = sum.line;
    std::vector<f64> delays = sum.delays;
    const Spread delay = spreadOf(delays);
    std::string text = fmt::format("\n{} of {} aircraft shown", sum.shown, sum.due);
    if (!sum.missing.empty()) text += "; missing:" + sum.missing;
    text += fmt::format(
        "\nfirst position behind the first report's due time: median {:.1f} s, 95 % {:.1f} s, worst "
        "{:.1f} s\n",
        delay.median, delay.p95, delay.worst);
    if (!sum.others.empty()) text += "not due:" + sum.others + "\n";
    text += fmt::format("\n  {:42} {:^29}   {:^29}\n  {:42} {:>9} {:>9} {:>9}   {:>9} {:>9} {:>9}\n", "", "flown",
                        "plain interpolation", "", "median", "95 %", "worst", "median", "95 %", "worst");
    text += lf_spread("distance from the reported path, m", a.pathMetres, b.pathMetres);
    text += lf_spread("beside the leg that is due, m", a.crossMetres, b.crossMetres);
    text += lf_spread("time error, s", a.timeErrors, b.timeErrors);
    text += lf_spread("altitude error, ft", a.altErrors, b.altErrors);
    text += lf_spread("altitude error below 1500 ft, ft", a.altErrorsLow, b.altErrorsLow);
    text += lf_spread("flown against reported speed, kt", a.speedErrors, b.speedErrors);
    text += lf_spread("change of speed, kt/s", a.speedChanges, b.speedChanges);
    text += lf_spread("turn rate, deg/s", a.turnRates, b.turnRates);
    text += lf_count("heading more than 60 deg off the motion, s", a.sidewaysSeconds, b.sidewaysSeconds);
    text += lf_count("dives over 6000 ft/min that no report has, s", a.diveSeconds, b.diveSeconds);
    text += lf_count("climbs and dives (300 ft) no report has", a.teeth, b.teeth,
                     fmt::format("   on {} aircraft, {} of {} low ones", a.toothed, sum.lowToothed, sum.lowDue));
    text += lf_count("standing for 60 s while reported moving", a.deaf, b.deaf);
    text += lf_count("longest of these, s", a.deafSeconds, b.deafSeconds);
    text += lf_count("aircraft that leap", a.jumps, b.jumps, fmt::format("   farthest {:.0f} m", a.jumpMetres));
    text += lf_count("aircraft with a step in altitude", a.steps, b.steps, fmt::format("   {:.0f} ft", a.stepFeet));
    text += lf_count("come again within two minutes", a.flicker, b.flicker);
    text += lf_count("left while reports went on", a.removedEarly, b.removedEarly);
    return text;
}

bool lf_isLow(const FlightRecord& flight) {
    constexpr f64 kLowFt = 1500;
    return std::any_of(flight.reports.begin(), flight.reports.end(),
                       [](const ReportedPoint& p) { return p.alt > 0 && p.alt < kLowFt; });
}

void lf_take(Sum& sum, const FlightRecord& flight, const Measures& m) {
    add(sum.flown, m);
    add(sum.line, measure(interpolated(flight)));
    sum.delays.push_back(creationDelay(flight));
    if (!lf_isLow(flight)) return;
    ++sum.lowDue;
    sum.lowToothed += m.toothed;
}

}  // namespace

std::string measureText(const FlightLog& log) {
    std::string text = kHead;
    Sum sum;
    for (const FlightRecord& flight : log.flights) {
        std::string reason;
        if (!isDue(flight, reason)) {
            sum.others += fmt::format(" {} ({}),", lf_name(flight), reason);
            continue;
        }
        ++sum.due;
        if (flight.flown.empty()) {
            sum.missing += " " + lf_name(flight);
            continue;
        }
        ++sum.shown;
        const Measures m = measure(flight);
        text += lf_row(flight, m);
        lf_take(sum, flight, m);
    }
    return text + lf_total(sum);
}

}  // namespace hcr
