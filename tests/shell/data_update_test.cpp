#include "shell/data_update.h"

#include <gtest/gtest.h>
#include <zip.h>

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "shell/parameters.h"
#include "shell/shell_world.h"
#include "shell/sim_addons.h"
#include "shell/stream_cipher.h"
#include "shell/text.h"
#include "shell/window_state.h"
#include "shell/zip.h"
#include "support/environment.h"

namespace fs = std::filesystem;

namespace hcr {
namespace {

constexpr const char* kVersions = R"({
    "msfs": {"major": 11, "minor": 10, "patch": 5},
    "simaddon": {"major": 1, "minor": 0, "patch": 0},
    "airports": {"major": 2, "minor": 3, "patch": 4},
    "aig": {"major": 3, "minor": 0, "patch": 1},
    "liveries": {"major": 1, "minor": 1, "patch": 1},
    "addons": {"major": 1, "minor": 2, "patch": 1},
    "dbase": {"major": 7, "minor": 8, "patch": 9}})";

/// The data server is a folder with the three data files; the program holds nothing yet.
struct DataUpdate : test::ShellWorld {
    void SetUp() override {
        ShellWorld::SetUp();
        test::setVariable("HALCYRANE_DATA_BASE", test::fileUrl("server").c_str());
        for (const char* name : {"airports.enc", "AIG-regcodes.enc", "dbase.enc"}) {
            write("plain", std::string("server's ") + name + std::string(5000, ' '));
            fs::create_directories("server/11");
            ASSERT_TRUE(gf_streamEncrypt("plain", fs::path("server/11") / name));
        }
        write("server/versions.json", kVersions);
        fs::create_directory("input");
        SCAN_LIVERIES.current = false;
        SCAN_AIRPORTS.current = false;
    }

    void TearDown() override {
        test::setVariable("HALCYRANE_DATA_BASE", nullptr);
        gf_resetWindowState();
        ShellWorld::TearDown();
    }

    /// Whether a data file here is the server's.
    static bool isFetched(const std::string& name) { return read("input/" + name) == read("server/11/" + name); }

    static std::string updateFault() {
        try {
            gf_updateData();
        } catch (const std::runtime_error& fault) {
            return fault.what();
        }
        return {};
    }

    static void writeZip(const std::vector<std::pair<std::string, std::string>>& entries) {
        fs::create_directories("server/mysimaddon24");
        zip_t* archive = zip_open("server/mysimaddon24/my_simaddon2024.zip", ZIP_CREATE | ZIP_TRUNCATE, nullptr);
        ASSERT_NE(archive, nullptr);
        for (const auto& [name, text] : entries) {
            if (name.back() == '/') {
                zip_dir_add(archive, name.c_str(), ZIP_FL_ENC_UTF_8);
            } else {
                zip_file_add(archive, name.c_str(), zip_source_buffer(archive, text.data(), text.size(), 0),
                             ZIP_FL_ENC_UTF_8);
            }
        }
        ASSERT_EQ(zip_close(archive), 0);
    }
};

TEST_F(DataUpdate, EverythingNewerIsFetchedAndItsVersionKept) {
    EXPECT_TRUE(gf_updateData());
    EXPECT_TRUE(isFetched("airports.enc") && isFetched("AIG-regcodes.enc") && isFetched("dbase.enc"));
    EXPECT_EQ(AIRPORTS_VERSION.current.get(), "2.3.4");
    EXPECT_EQ(AIG_VERSION.current.get(), "3.0.1");
    EXPECT_EQ(DBASE_VERSION.current.get(), "7.8.9");
    EXPECT_TRUE(SCAN_LIVERIES.current);
    EXPECT_EQ(LIV_SCAN_VERSION.current.get(), "1.1.1");
    EXPECT_TRUE(SCAN_AIRPORTS.current);
    EXPECT_EQ(ADDONS_SCAN_VERSION.current.get(), "1.2.1");
    EXPECT_FALSE(fs::exists("versions.json"));
    const std::string settings = read(folder / "config/Halcyrane/parameters.xml");
    EXPECT_NE(settings.find("name=\"DBASE_VERSION\" value=\"7.8.9\""), std::string::npos);
    for (const char* line :
         {"Halcyrane program version at web = 11.10.5\nmsfs version up-to-date\n", "airports updated to 2.3.4\n",
          "liveries updated to 1.1.1\n", "dbase updated to 7.8.9\n"}) {
        EXPECT_TRUE(logHas(line)) << line;
    }
    EXPECT_FALSE(logHas("simaddon"));
}

TEST_F(DataUpdate, ASecondStartFindsAllUpToDateButTheMissingResult) {
    gf_updateData();
    SCAN_LIVERIES.current = false;
    SCAN_AIRPORTS.current = false;
    write("input/dbase.enc", "mine");
    write("output/LiveriesScanned.xml", "");
    EXPECT_TRUE(gf_updateData());
    EXPECT_EQ(read("input/dbase.enc"), "mine");
    EXPECT_FALSE(SCAN_LIVERIES.current);
    EXPECT_FALSE(SCAN_AIRPORTS.current);
    EXPECT_TRUE(logHas("liveries version up-to-date\naddons version up-to-date\ndbase version up-to-date\n"));

    fs::remove("output/LiveriesScanned.xml");
    EXPECT_TRUE(gf_updateData());
    EXPECT_TRUE(SCAN_LIVERIES.current);
    EXPECT_FALSE(SCAN_AIRPORTS.current);
}

TEST_F(DataUpdate, AMissingFileIsFetchedAgainAndAFailedOneKeepsItsVersion) {
    DBASE_VERSION.current.set("7.8.9");
    AIG_VERSION.current.set("1.0.0");
    write("input/AIG-regcodes.enc", "mine");
    fs::remove("server/11/AIG-regcodes.enc");
    EXPECT_TRUE(gf_updateData());
    EXPECT_TRUE(isFetched("dbase.enc"));
    EXPECT_EQ(read("input/AIG-regcodes.enc"), "mine");
    EXPECT_EQ(AIG_VERSION.current.get(), "1.0.0");
    EXPECT_TRUE(logHas("==> Downloading 'file://"));
    EXPECT_TRUE(logHas("AIG-regcodes.enc' failed !\n"));
}

TEST_F(DataUpdate, OnlyAFileThatDeciphersToItsEndTakesTheOldOnesPlace) {
    const std::string good = read("server/11/dbase.enc");
    constexpr std::size_t kFirstChunk = 24 + 4113;
    std::string flipped = good;
    flipped[kFirstChunk + 100] = static_cast<char>(flipped[kFirstChunk + 100] ^ 1);
    const std::string rows[] = {
        "<html>log in</html>", "",     good.substr(0, 24), good.substr(0, kFirstChunk), good.substr(0, good.size() - 1),
        good + "more",         flipped};
    for (const std::string& sent : rows) {
        DBASE_VERSION.current.set("1.0.0");
        write("input/dbase.enc", "mine");
        write("server/11/dbase.enc", sent);
        EXPECT_TRUE(gf_updateData());
        EXPECT_EQ(read("input/dbase.enc"), "mine") << sent.size();
        EXPECT_EQ(DBASE_VERSION.current.get(), "1.0.0");
        EXPECT_FALSE(fs::exists("input/dbase.enc.part"));
        EXPECT_NE(gf_currentMessage().find("server/11/dbase.enc sends isn't a whole data file ("), std::string::npos);
    }
    EXPECT_TRUE(logHas("==> What file:///"));
    EXPECT_EQ(AIRPORTS_VERSION.current.get(), "2.3.4") << "the others come all the same";
}

TEST_F(DataUpdate, WithoutAServerNothingIsTriedAndWithoutAnAnswerEverythingStays) {
    DBASE_VERSION.current.set("1.0.0");
    test::setVariable("HALCYRANE_DATA_BASE", "");
    EXPECT_TRUE(gf_updateData());
    EXPECT_FALSE(logHas("==> "));
    fs::remove("server/versions.json");
    test::setVariable("HALCYRANE_DATA_BASE", test::fileUrl("server").c_str());
    EXPECT_TRUE(gf_updateData());
    EXPECT_TRUE(logHas("==> Downloading version info from my web site failed!\n"));
    EXPECT_EQ(DBASE_VERSION.current.get(), "1.0.0");
    EXPECT_FALSE(SCAN_LIVERIES.current);
}

TEST_F(DataUpdate, AMissingEntryIsSkippedAndABrokenOneEndsTheUpdateThere) {
    write("server/versions.json", R"({"airports": {"major": 1, "minor": 0, "patch": 0}, "aig": {"major": 1}})");
    EXPECT_NE(updateFault().find("server/versions.json sends is no list of versions. It was cut short"),
              std::string::npos);
    EXPECT_TRUE(logHas("==> msfs version not found\n"));
    EXPECT_EQ(AIRPORTS_VERSION.current.get(), "1.0.0");
    EXPECT_FALSE(fs::exists("versions.json"));

    for (const char* text : {"", "{", "\n<html>", "{\"msfs\": \xFF}", R"({"msfs": {"major": -1}})"}) {
        write("server/versions.json", text);
        const std::string fault = updateFault();
        EXPECT_NE(fault.find("is no list of versions"), std::string::npos) << text;
        EXPECT_EQ(fault.find("login page") != std::string::npos, text[0] == '\n') << fault;
        EXPECT_TRUE(gf_isUtf8(fault));
        EXPECT_FALSE(fs::exists("versions.json"));
    }
    write("server/versions.json", "[" + std::string(1048576, ' ') + "]");
    EXPECT_TRUE(gf_updateData());
    EXPECT_TRUE(logHas("Download error: 'more than 1048576 bytes' for "));
    write("server/versions.json", "[1, 2]");
    EXPECT_TRUE(gf_updateData());
    EXPECT_TRUE(logHas("==> dbase version not found\n"));
}

TEST_F(DataUpdate, AVersionNeedsThreeIntegersThatFit) {
    const auto version = [](const std::string& minor) {
        return gf_webVersion(nlohmann::json::parse(R"({"a": {"major": 1, "patch": 2, "minor": )" + minor + "}}"), "a");
    };
    EXPECT_EQ(version("2147483647")->text(), "1.2147483647.2");
    for (const char* bad : {"2147483648", "18446744073709551615", "-1", "1e30", "1.5", "\"1\"", "null", "[]"}) {
        EXPECT_ANY_THROW(version(bad)) << bad;
    }
    EXPECT_ANY_THROW(gf_webVersion(nlohmann::json::parse(R"({"a": 5})"), "a"));
}

TEST_F(DataUpdate, LinkFilesLandUnderTheirBaseNames) {
    writeZip({{"EHAM.txt", "one\n"},
              {"deep/", ""},
              {"deep/er/EGLL.lnk", "two"},
              {"../../LFPG", "three"},
              {"a:b.txt", "no name for a file"}});
    SIM_CHOICE.current.set("MSFS 2024");
    EXPECT_TRUE(gf_updateData());
    EXPECT_EQ(read("airports/my_simaddon/EHAM.txt"), "one\n");
    EXPECT_EQ(read("airports/my_simaddon/EGLL.txt"), "two");
    EXPECT_EQ(read("airports/my_simaddon/LFPG.txt"), "three");
    EXPECT_TRUE(logHas("my_simaddon2024.zip unzipped 3 files\n"));
    EXPECT_TRUE(logHas("==> Failed to write file: a:b.txt\n"));
    EXPECT_TRUE(logHas("simaddon updated to 1.0.0\n"));
    EXPECT_EQ(MYSIMADDON24_VERSION.current.get(), "1.0.0");
    EXPECT_FALSE(fs::exists("my_simaddon2024.zip"));

    EXPECT_FALSE(gf_updateSimAddons(VersionData(1, 0, 0)));
    fs::remove_all("airports/my_simaddon");
    EXPECT_TRUE(gf_updateSimAddons(VersionData(1, 0, 0)));
}

TEST_F(DataUpdate, ADamagedArchiveLeavesTheVersionAndIsRemoved) {
    write("server/mysimaddon24/my_simaddon2024.zip", "no archive");
    EXPECT_FALSE(gf_updateSimAddons(VersionData(1, 0, 0)));
    EXPECT_TRUE(logHas("==> Could not open my_simaddon2024.zip\n"));
    writeZip({{"EHAM.txt", "0123456789"}, {"EGLL.txt", "second"}});
    std::string bytes = read("server/mysimaddon24/my_simaddon2024.zip");
    bytes[bytes.find("0123456789")] = '9';
    write("server/mysimaddon24/my_simaddon2024.zip", bytes);
    EXPECT_FALSE(gf_updateSimAddons(VersionData(1, 0, 0)));
    EXPECT_TRUE(logHas("==> my_simaddon2024.zip is damaged, the old link files stay"));
    EXPECT_FALSE(fs::exists("airports/my_simaddon/EGLL.txt"));
    EXPECT_TRUE(MYSIMADDON24_VERSION.current.empty());
    EXPECT_FALSE(fs::exists("my_simaddon2024.zip"));
}

}  // namespace
}  // namespace hcr
