#include "support/data_folder.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fstream>

#include "liveries/dbase.h"
#include "liveries/dbase_reader.h"
#include "liveries/match_memory.h"
#include "liveries/regcodes.h"
#include "liveries/reports.h"
#include "liveries/results.h"
#include "liveries/scanned_file.h"
#include "parking/catalogue.h"
#include "platform/user_folders.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/log_start.h"
#include "shell/parameters.h"
#include "shell/stream_cipher.h"
#include "shell/window_state.h"
#include "support/environment.h"

namespace hcr::test {
namespace {

void lf_emptyTables() {
    gf_forgetDbase();
    gf_forgetAirports();
    gf_clearLiveryTables();
    gf_clearScanLists();
    gScanList.clear();
    dontUseTitles.clear();
    failedTitles.clear();
    failedModels.clear();
    noMatchAircraft.clear();
    matchSteps.fill(0);
    gWindow.liveryCount = 0;
}

}  // namespace

const char* const kNeededSections = R"(
<aircrafts><aircraft types="C172, PA28,C25A,GLF6"/><aircraft types="B738,A320,B739,B744,F16,EC35"/></aircrafts>
<high_performance><hpf types="F16"/></high_performance><heavy><hvy types="B744"/></heavy>
<large><lar types="B738,A320,B739"/></large><buzjet><bzj types="C25A,GLF6"/></buzjet>
<rotorcraft><rot types="EC35"/></rotorcraft><cargo_types><cargo_type types="B744"/></cargo_types>
<ICAO_airlines><ICAO codes="KLM,DLH,PVT,ZZZ"/></ICAO_airlines><cargo_operators><ICAO codes="GEC"/></cargo_operators>
<simaddons20><simaddon20 arpts="EHAM"/></simaddons20>)";

DataFolder::DataFolder() {
    for (const char* folder : {"input", "output/info", "output/errors"}) std::filesystem::create_directories(folder);
    gf_useUserFolders(path / "config", path / "data");
    gf_rebuildFileNames();
    gf_makeConfigurationFolder();
    gf_resetParameters();
    RANDOM.current = false;
    lf_emptyTables();
    gf_openLog();
}

DataFolder::~DataFolder() {
    gf_closeLog();
    lf_emptyTables();
    gf_resetParameters();
    gf_useUserFolders({}, {});
    gf_rebuildFileNames();
}

std::string DataFolder::log() const {
    gf_logFlush();
    return readWhole(path / "Log.txt");
}

bool DataFolder::logged(std::string_view text) const {
    return slashed(log()).find(slashed(std::string(text))) != std::string::npos;
}

void DataFolder::encipher(const std::filesystem::path& target, std::string_view xml) const {
    writeWhole(path / "plain.xml", xml);
    ASSERT_TRUE(gf_streamEncrypt(path / "plain.xml", target));
}

void DataFolder::readDbase(const std::string& sections) const {
    ASSERT_EQ(gf_readDbaseText(fmt::format("<root>{}{}</root>", kNeededSections, sections)), "");
}

void DataFolder::loadLiveries(const std::string& elements, const std::string& aigElements) const {
    writeWhole(gFiles().liveriesScanned, fmt::format("<root><liveries>{}</liveries></root>", elements));
    encipher(gFiles().aigEnc, fmt::format("<root><AIG-regcodes>{}</AIG-regcodes></root>", aigElements));
    gf_clearLiveryTables();
    gf_loadScanResults();
}

std::string liv(const std::string& airl, const std::string& type, const std::string& title, const std::string& more) {
    return fmt::format(R"(<liv airl="{}" type="{}" title="{}" {}/>)", airl, type, title, more);
}

std::string readWhole(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeWhole(const std::filesystem::path& file, std::string_view text) {
    std::filesystem::create_directories(std::filesystem::absolute(file).parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    stream.close();
    ASSERT_TRUE(stream) << file;
}

}  // namespace hcr::test
