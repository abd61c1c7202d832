#include <benchmark/benchmark.h>

#include <mutex>

#include "core/model/range.h"
#include "core/model/tables.h"
#include "feed/feed_counters.h"
#include "feed/traffic_line.h"
#include "feed/traffic_reader.h"
#include "tools/feed/generator.h"

namespace {

using namespace hcr;

constexpr std::size_t kLines = 2000;  // as many as fit a processor's cache, where a datagram lies when it has come in

std::vector<std::string> airborneLines() {
    GenerateOptions options;
    options.minutes = 5;
    options.arrivals = 3;
    options.departures = options.parked = options.vehicles = options.helicopters = 0;
    std::vector<std::string> lines;
    for (const TimedLine& line : generateFeed(options)) {
        if (lines.size() == kLines) break;
        lines.push_back(line.line);
    }
    return lines;
}

// One iteration is one line, from the text to the queued report; what the worker would take is thrown away.
void decode_line(benchmark::State& state) {
    constexpr std::size_t kReportsBetweenTakes = 256;
    const GenerateOptions place;
    const std::vector<std::string> lines = airborneLines();
    gTrafficReader.userLat = place.lat;
    gTrafficReader.userLon = place.lon;
    gRangeNm = 200;
    gAcceptReports = true;
    const u64 acceptedBefore = gFeedCounters.accepted;
    std::size_t next = 0;
    i64 bytes = 0;
    for (auto _ : state) {
        const std::string& line = lines[next];
        gTrafficReader.text = line;
        gTrafficReader.handleText();
        bytes += static_cast<i64>(line.size());
        if (++next == lines.size()) next = 0;
        if (gReports.size() >= kReportsBetweenTakes) {
            const std::lock_guard lock(gReportMutex);
            gReports.clear();
        }
    }
    state.SetBytesProcessed(bytes);
    state.counters["lines/s"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["accepted"] =
        static_cast<double>(gFeedCounters.accepted - acceptedBefore) / static_cast<double>(state.iterations());
    gReports.clear();
    gAcceptReports = false;
}
BENCHMARK(decode_line);

}  // namespace
