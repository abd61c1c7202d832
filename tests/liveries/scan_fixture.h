#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "liveries/aircraft_cfg.h"
#include "liveries/livery_tables.h"
#include "liveries/reports.h"
#include "liveries/scan.h"
#include "liveries/scan_pool.h"
#include "liveries/scan_threads.h"
#include "liveries/scan_walk.h"
#include "liveries/scanned_file.h"
#include "platform/system.h"
#include "shell/file_names.h"
#include "shell/messages.h"
#include "shell/parameter_file.h"
#include "shell/run_stop.h"
#include "support/data_folder.h"

namespace hcr::test {

namespace fs = std::filesystem;

inline std::mutex gDrive;  ///< while it is locked, files with "slow" in their path aren't read to their end

/// A section of an aircraft.cfg.
inline std::string section(const std::string& title, const std::string& airline, const std::string& more = {}) {
    return fmt::format("[FLTSIM.0]\ntitle=\"{}\"\nicao_airline={}\n{}\n", title, airline, more);
}

inline std::string general(const std::string& type) {
    return fmt::format("[GENERAL]\nicao_type_designator=\"{}\"\n", type);
}

struct Scan : testing::Test {
    DataFolder folder;
    fs::path community = folder.path / "sim/Community";

    Scan() {
        fs::create_directories(community);
        MSFS_INSTALL_PATH.current.set((folder.path / "sim").string());
        gf_saveParameters(false);
        folder.readDbase();
        folder.encipher(gFiles().aigEnc, "<AIG-regcodes><livery title=\"unused\"/></AIG-regcodes>");
        gf_prepareScans();
        forgetStop();
        gMayOpenForUser = false;
    }
    ~Scan() override {
        gf_awaitScanWorkers();
        gCfgReaders.usual = lf_searchLiveriesinFile;
        forgetStop();
        gf_clearMessage();
        gMayOpenForUser = true;
    }

    static CfgContent readFromDrive(i32 order, const fs::path& path) {
        if (path.string().find("slow") != std::string::npos) std::lock_guard<std::mutex>{gDrive};
        return lf_searchLiveriesinFile(order, path);
    }

    static void forgetStop() {
        gStop = false;
        gExitReason = ExitReason::notYetSet;
    }

    /// An aircraft of a package with one livery, or with these sections.
    void aircraft(const std::string& path, const std::string& type, const std::string& title,
                  const std::string& airline, const std::string& more = {}) const {
        writeWhole(community / path / "aircraft.cfg", general(type) + section(title, airline, more));
    }

    /// The titles of the written liveries, in their order.
    static std::vector<std::string> titles() {
        std::vector<std::string> found;
        const std::string text = readWhole(gFiles().liveriesScanned), mark = "title=\"";
        for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
            at += mark.size();
            found.push_back(text.substr(at, text.find('"', at) - at));
        }
        return found;
    }

    static std::vector<std::string> loadedTitles() {
        std::vector<std::string> found;
        for (const LiveryGroup& group : liveryIndex) {
            for (const IndexedLivery& livery : group.liveries) found.emplace_back(livery.title);
        }
        return found;
    }

    static void expectFailure(const std::string& text) {
        try {
            gf_scanLiveries();
            ADD_FAILURE() << "nothing was thrown instead of " << text;
        } catch (const std::exception& fault) {
            EXPECT_EQ(fault.what(), text);
        }
        EXPECT_TRUE(SCAN_LIVERIES.current) << "it is to be tried again";
        EXPECT_TRUE(AI_PACKAGE_SELECTOR.enabled);
        EXPECT_TRUE(gScanList.empty());
    }

    static void waitUntil(const std::function<bool()>& condition) {
        while (!condition()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
};

}  // namespace hcr::test
