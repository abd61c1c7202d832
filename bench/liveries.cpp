#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <fmt/os.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <pugixml.hpp>
#include <random>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "liveries/dbase.h"
#include "liveries/dbase_reader.h"
#include "liveries/match_memory.h"
#include "liveries/matching.h"
#include "liveries/results.h"
#include "platform/system.h"
#include "shell/file_names.h"
#include "shell/stream_cipher.h"

namespace {

using namespace hcr;
namespace fs = std::filesystem;

constexpr int kLiveries = 30'000, kRegistrations = 400'000, kAirlines = 1000, kTypes = 300;

std::string lf_airline(int n) {
    std::string code(3, 'A');
    for (int i = 2; i >= 0; --i, n /= 26) code[static_cast<std::size_t>(i)] = static_cast<char>('A' + n % 26);
    return code;
}

std::string lf_type(int n) {
    return fmt::format("{}{:02}", static_cast<char>('A' + n / 100), n % 100);
}

std::string lf_registration(int n) {
    return lf_airline(n % 17'000).insert(1, 1, '-') + fmt::format("{:03}", n / 17'000);
}

/// Files of a large installation in a folder of their own, which is the working folder meanwhile.
struct LargeInstallation {
    fs::path before = fs::current_path();
    fs::path folder = fs::temp_directory_path() / fmt::format("halcyrane-bench-{:08x}", std::random_device{}());
    std::mt19937 random{1};

    LargeInstallation() {
        for (const char* name : {"input", "output/info"}) fs::create_directories(folder / name);
        fs::current_path(folder);
        writeDbase();
        writeLiveries();
        writeRegcodes();
    }

    ~LargeInstallation() {
        fs::current_path(before);
        fs::remove_all(folder);
    }

    LargeInstallation(const LargeInstallation&) = delete;
    LargeInstallation& operator=(const LargeInstallation&) = delete;

    int below(int n) { return static_cast<int>(random() % static_cast<u32>(n)); }

    static std::string listOf(int from, int to) {
        std::string list;
        for (int n = from; n < to; ++n) list += (n > from ? "," : "") + lf_type(n);
        return list;
    }

    void writeDbase() {
        {
            auto file = fmt::output_file("dbase.xml");
            file.print("<root><aircrafts><aircraft types='{}'/></aircrafts>", listOf(0, kTypes));
            file.print("<high_performance><hpf types='{}'/></high_performance>", listOf(100, 110));
            file.print("<heavy><hvy types='{}'/></heavy><large><lar types='{}'/></large>", listOf(110, 150),
                       listOf(150, 220));
            file.print("<buzjet><bzj types='{}'/></buzjet><rotorcraft><rot types='{}'/></rotorcraft>", listOf(220, 280),
                       listOf(280, 300));
            file.print("<cargo_types><cargo_type types='{0}'/></cargo_types><similar_types>", listOf(110, 120));
            for (int n = 0; n < kTypes; n += 6) file.print("<similar types='{}'/>", listOf(n, n + 6));
            file.print("</similar_types><ICAO_airlines>");
            for (int n = 0; n < kAirlines; ++n) file.print("<ICAO codes='{}'/>", lf_airline(n));
            file.print("</ICAO_airlines><cargo_operators><ICAO codes='AAB'/></cargo_operators>");
            file.print("<simaddons20><simaddon20 arpts='EHAM'/></simaddons20><dbase>\n");
            for (int n = 0; n < kRegistrations; ++n) {
                file.print("<db reg=\"{}\" airl=\"{}\" type=\"{}\"{}/>\n", lf_registration(n),
                           lf_airline(below(kAirlines)), lf_type(below(kTypes)),
                           n % 20 == 0 ? " opr=\"AAC\" cargo=\"true\"" : "");
            }
            file.print("</dbase></root>\n");
        }
        gf_streamEncrypt("dbase.xml", gFiles().dbaseEnc);
    }

    void writeLiveries() {
        auto file = fmt::output_file(gFiles().liveriesScanned.string());
        file.print("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<root>\n  <liveries>\n");
        // Ten types per airline and three liveries of each, in the order of a scan.
        for (int n = 0; n < kLiveries; ++n) {
            const int airline = n / 30, type = airline % 29 * 10 + n / 3 % 10;
            file.print("    <liv airl=\"{}\" type=\"{}\" title=\"AIGAIM_Airliner {} of {} number {:05}\"{} />\n",
                       lf_airline(airline), lf_type(type), lf_type(type), lf_airline(airline), n,
                       n % 3 == 0 ? fmt::format(" atcid=\"{}\"", lf_registration(n * 7)) : "");
        }
        file.print("  </liveries>\n</root>\n");
    }

    void writeRegcodes() { writeWhole("<root><AIG-regcodes/></root>"); }

    void writeWhole(const char* text) {
        fmt::output_file("regcodes.xml").print("{}", text);
        gf_streamEncrypt("regcodes.xml", gFiles().aigEnc);
    }
};

LargeInstallation& lf_installation() {
    static LargeInstallation installation;
    return installation;
}

void dbase_400000(benchmark::State& state) {
    lf_installation();
    for (auto _ : state) {
        gf_readDbase();
        if (dbaseRecords.size() != kRegistrations) state.SkipWithError("not all registrations were read");
    }
    state.counters["resident_MB"] = static_cast<f64>(gf_residentBytes()) / (1 << 20);
}

/// Seconds of the processor that it takes in an allocator that has nothing at hand: what an earlier round left there
/// would make one of two measurements faster by a multiple, and not always the same one.
template <typename Work>
f64 lf_secondsOf(Work work) {
    gf_clearLiveryTables();
#ifdef __GLIBC__
    malloc_trim(0);
#endif
    const std::clock_t begin = std::clock();
    work();
    return static_cast<f64>(std::clock() - begin) / CLOCKS_PER_SEC;
}

/// The load of the tables, and beside it the bare load of the file that it begins with, taken in turn.
void liveries_30000(benchmark::State& state) {
    lf_installation();
    if (dbaseRecords.size() == 0) gf_readDbase();
    f64 bare = 1e9, whole = 1e9;  // the least of all rounds
    for (auto _ : state) {
        bare = std::min(bare, lf_secondsOf([] {
                            pugi::xml_document document;
                            benchmark::DoNotOptimize(document.load_file(gFiles().liveriesScanned.c_str()));
                        }));
        const f64 seconds = lf_secondsOf(gf_loadScanResults);
        state.SetIterationTime(seconds);
        whole = std::min(whole, seconds);
    }
    state.counters["bare_ms"] = bare * 1000;
    state.counters["times_bare"] = whole / bare;
    state.counters["resident_MB"] = static_cast<f64>(gf_residentBytes()) / (1 << 20);
}

void match_live(benchmark::State& state) {
    lf_installation();
    if (dbaseRecords.size() == 0) gf_readDbase();
    if (!gf_liveryTablesLoaded()) gf_loadScanResults();
    LiveAc ac;
    ac.hexid = 20000;
    int n = 0;
    for (auto _ : state) {
        ac.airline = lf_airline(n % (kAirlines + 100));
        ac.model = lf_type(n % kTypes);
        ac.registration = lf_registration(n);
        ac.acClass = gf_acClass(ac.model);
        gf_matchLiveLivery(ac);
        n = (n + 7919) % kRegistrations;
    }
    gf_forgetLiveries();
}

BENCHMARK(dbase_400000)->Unit(benchmark::kMillisecond);
BENCHMARK(liveries_30000)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(match_live);

}  // namespace
