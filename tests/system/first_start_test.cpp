#include <gtest/gtest.h>

#include <filesystem>

#include "shell/file_names.h"
#include "shell/parameters.h"
#include "shell/window_state.h"
#include "support/environment.h"
#include "tests/support/live_run.h"

namespace hcr::test {
namespace {

namespace fs = std::filesystem;

TEST(FirstStart, FetchesTheDataFilesAndScansTheLiveries) {
    const Variable server("HALCYRANE_DATA_BASE", nullptr);
    LiveRunOptions options;
    options.beforeStart = [] {
        fs::create_directories("server");
        fs::rename("input", "server/11");
        fs::create_directories("input");
        fs::copy_file(demoData("versions.json"), "server/versions.json");
        setVariable("HALCYRANE_DATA_BASE", fileUrl(fs::absolute("server")).c_str());
        fs::remove(gFiles().liveriesScanned);
        const fs::path aircraft = "packages/Community/fsltl-traffic-base/SimObjects/Airplanes/a";
        fs::create_directories(aircraft);
        writeFile(aircraft / "aircraft.cfg",
                  "[GENERAL]\nicao_type_designator=B738\n[FLTSIM.0]\ntitle=House\nicao_airline=KLM\n");
    };
    LiveRun run(options);
    ASSERT_TRUE(run.untilLogged("\n1 liveries read from ")) << run.log();
    for (const fs::path& file : {gFiles().dbaseEnc, gFiles().airportsEnc, gFiles().aigEnc}) {
        EXPECT_TRUE(fs::exists(file)) << file;
    }
    EXPECT_FALSE(AIRPORTS_VERSION.current.empty());
    EXPECT_TRUE(run.until([] { return gWindow.liveryCount == 1; }));
    EXPECT_NE(readFile(gFiles().settings).find(R"(name="SCAN_LIVERIES" value="false")"), std::string::npos);
}

}  // namespace
}  // namespace hcr::test
