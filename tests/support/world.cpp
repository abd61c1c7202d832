#include "tests/support/world.h"

#include <fmt/format.h>

#include <fstream>
#include <stdexcept>

#include "core/run/reset.h"
#include "platform/user_folders.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/parameter_file.h"
#include "shell/stream_cipher.h"
#include "shell/version.h"
#include "tests/support/environment.h"

namespace hcr::test {
namespace {

void lf_encipher(const char* name, const std::filesystem::path& target) {
    if (!gf_streamEncrypt(demoData(name), target)) throw std::runtime_error(std::string("no ") + name);
}

}  // namespace

std::size_t countOf(const std::string& text, const std::string& piece) {
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + piece.size())) ++count;
    return count;
}

void makeWorkFolder(const WorldOptions& options) {
    namespace fs = std::filesystem;
    const fs::path here = fs::current_path();
    gf_useUserFolders(here / "config", here / "data");
    gf_rebuildFileNames();
    fs::create_directories("docs");
    fs::create_directories("input/my_regcodes");
    fs::create_directories("output/info");
    lf_encipher("dbase.xml", gFiles().dbaseEnc);
    lf_encipher("airports.xml", gFiles().airportsEnc);
    lf_encipher("AIG-regcodes.xml", gFiles().aigEnc);
    fs::copy_file(demoData("LiveriesScanned.xml"), gFiles().liveriesScanned);
    if (options.realTrafficHere) {
        fs::create_directories(gf_roamingFolder() / "InsideSystems");
        writeFile(gf_roamingFolder() / "InsideSystems" / "RealTraffic.jar", "");
    }
    gf_makeConfigurationFolder();
    gf_resetParameters();
    PROGRAM_VERSION.current.set(gf_programVersion().text());
    MSFS_INSTALL_PATH.current.set((here / "packages").string());
    SCAN_LIVERIES.current = false;
    SCAN_AIRPORTS.current = false;
    AUTO_RANGE.current = false;
    RANGE.current = options.rangeNm;
    PORT_NUMBER.current.set("0");
    gf_saveParameters(false);
}

WorldFolder::WorldFolder(WorldOptions worldOptions) : options(std::move(worldOptions)) {
    if (options.scenario.user.empty()) options.scenario = gf_defaultScenario();
    resetProgram();
    makeWorkFolder(options);
}

World::World(WorldOptions worldOptions)
    : WorldFolder(std::move(worldOptions)),
      SimulatedRun(
          {.scenario = options.scenario, .trace = options.trace, .rangeNm = options.rangeNm, .utc = options.utc}) {}

std::string World::log() const {
    gf_logFlush();
    return readFile("Log.txt");
}

std::string FeedLine::text() const {
    return fmt::format(
        "RTTFC,{},{:.5f},{:.5f},{:.0f},{:.0f},1,{:.2f},{:.2f},{},{},{},{},{},{:.1f},X2,{},adsb_icao,-1,-1,{:.0f},-1."
        "000,"
        "-1.0,{:.1f},-1.00,{:.2f},-1,,A3,-1.0,-1,-1,-1.00,,3.6,-3.3,-1,-1,-1,-1,1,80857",
        hexid, lat, lon, alt, vs, track, speed, callsign, model, registration, from, to, timestamp, callsign, tas, roll,
        track == 0 ? 360.0 : track);
}

}  // namespace hcr::test
