#include "parking/catalogue.h"

#include <gtest/gtest.h>

#include "shell/file_names.h"
#include "shell/messages.h"
#include "support/data_folder.h"
#include "support/environment.h"

namespace hcr {
namespace {

struct Catalogue : testing::Test {
    test::DataFolder folder;

    bool read(std::string_view xml) const {
        folder.encipher(gFiles().airportsEnc, xml);
        gf_forgetAirports();
        return gf_readAirports();
    }
};

constexpr const char* kGood = R"(<airport code="EHRD" iata="RTM" lat="51.95" lon="4.44" alt="-15" stands="0"/>
    <airport code="EHAM" iata="AMS" lat=" 52.31 " lon="-180" alt="-11.0" stands="2"/>)";

TEST_F(Catalogue, ReadsItsRowsOnceAndFindsThemByCode) {
    for (const std::string& xml : {"<root><airports>" + std::string(kGood) + "</airports></root>",
                                   "<airports>" + std::string(kGood) + "</airports>"}) {
        ASSERT_TRUE(read(xml));
        ASSERT_EQ(gAirports.size(), 2U);
        EXPECT_EQ(gAirports[0].code, "EHAM") << "sorted";
        EXPECT_EQ(gAirports[0].iata, "AMS");
        EXPECT_EQ(gAirports[0].lat, 52.31);
        EXPECT_EQ(gAirports[0].stands, 2);
        EXPECT_EQ(gf_findAirport("EHRD")->alt, -15);
        EXPECT_EQ(gf_findAirport("EH"), nullptr);
        EXPECT_FALSE(gf_airportKnown(""));
        EXPECT_TRUE(gf_airportKnown("EHAM"));
        EXPECT_FALSE(std::filesystem::exists(gFiles().airportsXml));
    }
    std::filesystem::remove(gFiles().airportsEnc);
    EXPECT_TRUE(gf_readAirports()) << "the second call doesn't look at the file";
    EXPECT_TRUE(folder.logged("2 airports read"));
}

TEST_F(Catalogue, AFaultOfARowCostsThatRowAlone) {
    struct Row {
        const char* attributes;
        const char* message;
    };
    const Row rows[] = {
        {R"(lon="4" alt="0" stands="1" iata="X")", "Missing latLons for airport 'EHXX'"},
        {R"(lat="52" alt="0" stands="1" iata="X")", "Missing latLons for airport 'EHXX'"},
        {R"(lat="52" lon="4" stands="1" iata="X")", "Missing alt for airport 'EHXX'"},
        {R"(lat="52" lon="4" alt="0" stands="1")", "Missing IATA for airport 'EHXX'"},
        {R"(lat="52x" lon="4" alt="0" stands="1" iata="X")", "Error parsing coordinates for airport 'EHXX': '52x'"},
        {R"(lat="" lon="4" alt="0" stands="1" iata="X")", "Error parsing coordinates for airport 'EHXX': ''"},
        {R"(lat="52" lon="nan" alt="0" stands="1" iata="X")", "Error parsing coordinates for airport 'EHXX': 'nan'"},
        {R"(lat="52" lon="4" alt="inf" stands="1" iata="X")", "Error parsing coordinates for airport 'EHXX': 'inf'"},
        {R"(lat="52" lon="4" alt="1e999" stands="1" iata="X")", "Error parsing coordinates for airport 'EHXX': '1e9"},
        {R"(lat="90.01" lon="4" alt="0" stands="1" iata="X")", "Error parsing coordinates for airport 'EHXX': 90.01"},
        {R"(lat="52" lon="-181" alt="0" stands="1" iata="X")", "Error parsing coordinates for airport 'EHXX': -181"},
        {R"(lat="52" lon="4" alt="0" stands="1.5" iata="X")", "Error parsing coordinates for airport 'EHXX': '1.5'"},
        {R"(lat="52" lon="4" alt="0" stands="9999999999" iata="X")", "Error parsing coordinates for airport 'EHXX'"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.attributes);
        const std::size_t before = folder.log().size();
        EXPECT_TRUE(
            read("<airports><airport code='EHXX' " + std::string(row.attributes) + "/>" + kGood + "</airports>"));
        EXPECT_EQ(gAirports.size(), 2U);
        EXPECT_NE(folder.log().find(std::string("==> ") + row.message, before), std::string::npos);
    }
}

TEST_F(Catalogue, ARowMayLackItsStandsButNotItsCode) {
    EXPECT_TRUE(read(R"(<airports><airport code="EHXX" lat="52" lon="4" alt="0" iata="X"/>
        <airport lat="52" lon="4" alt="0" iata="X" stands="1"/></airports>)"));
    ASSERT_EQ(gAirports.size(), 1U);
    EXPECT_EQ(gAirports[0].stands, 0);
    EXPECT_TRUE(folder.logged("==> Missing stands for airport 'EHXX'"));
}

TEST_F(Catalogue, AnUnusableFileIsTheUsersErrorAndLeavesNoPlainFile) {
    const auto faultOf = [&](std::string_view xml) -> std::string {
        try {
            return read(xml) ? "read" : "empty";
        } catch (const UserErrorException& error) {
            EXPECT_FALSE(std::filesystem::exists(gFiles().airportsXml));
            EXPECT_TRUE(gAirports.empty());
            return test::slashed(error.what());
        }
    };
    EXPECT_EQ(faultOf("<root><other/></root>"), "88: Missing <airports> root in: input/airports.xml");
    EXPECT_EQ(faultOf("<airports>").find("88: input/airports.xml not loaded: "), 0U);
    EXPECT_EQ(faultOf("<airports/>"), "empty");
    std::filesystem::remove(gFiles().airportsEnc);
    EXPECT_THROW(gf_readAirports(), UserErrorException);
    EXPECT_TRUE(folder.logged("gf_readAirports exception : "));
}

}  // namespace
}  // namespace hcr
