#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "sim/port/simconnect/simconnect.h"
#include "tests/support/temp_folder.h"

namespace hcr::test {

/// The stand-in of the simulator's client library behind gSimPort, with this scenario. It is loaded from a copy of its
/// own in the working folder, since a library that is loaded twice is one: each test needs a fresh simulator.
struct StandIn {
    explicit StandIn(const std::string& scenario, const std::filesystem::path& trace = {}) {
        writeFile("stand-in scenario.json", scenario);
        setenv("HALCYRANE_STAND_IN_SCENARIO", "stand-in scenario.json", 1);
        setenv("HALCYRANE_STAND_IN_TRACE", trace.c_str(), 1);
        const std::filesystem::path copy = std::filesystem::absolute("Übungs platz") / gf_simConnectName();
        std::filesystem::create_directories(copy.parent_path());
        std::filesystem::copy_file(HALCYRANE_STAND_IN_FILE, copy, std::filesystem::copy_options::overwrite_existing);
        library = gf_loadSimConnect(copy);
        EXPECT_TRUE(std::filesystem::equivalent(library.file, copy));
    }
    ~StandIn() {
        gSimPort = {};
        gf_closeLibrary(library);
        unsetenv("HALCYRANE_STAND_IN_SCENARIO");
        unsetenv("HALCYRANE_STAND_IN_TRACE");
    }
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;

    Library library;
};

}  // namespace hcr::test
