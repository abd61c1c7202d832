#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/system.h"
#include "shell/text.h"
#include "sim/port/sim_port.h"
#include "sim/port/simconnect/simconnect.h"
#include "tests/support/environment.h"
#include "tests/support/temp_folder.h"

namespace hcr::test {

/// The stand-in as it was built, in a folder beside that of the tests.
inline std::filesystem::path standInFile() {
    return gf_programFolder().parent_path() / "stand-in" / gf_simConnectName();
}

/// The stand-in of the simulator's client library behind gSimPort, with this scenario. It is loaded from a copy of its
/// own in the working folder, since a library that is loaded twice is one: each test needs a fresh simulator.
struct StandIn {
    explicit StandIn(const std::string& scenario, const char* traceFile = "")
        : scenarioFile("HALCYRANE_STAND_IN_SCENARIO", "stand-in scenario.json"),
          trace("HALCYRANE_STAND_IN_TRACE", traceFile) {
        writeFile("stand-in scenario.json", scenario);
        const std::filesystem::path copy =
            std::filesystem::absolute(gf_pathFromUtf8("Übungs platz")) / gf_simConnectName();
        std::filesystem::create_directories(copy.parent_path());
        std::filesystem::copy_file(standInFile(), copy, std::filesystem::copy_options::overwrite_existing);
        library = gf_loadSimConnect(copy);
        EXPECT_TRUE(std::filesystem::equivalent(library.file, copy));
    }
    ~StandIn() {
        gSimPort = {};
        gf_closeLibrary(library);
    }
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;

    Variable scenarioFile, trace;
    Library library;
};

}  // namespace hcr::test
