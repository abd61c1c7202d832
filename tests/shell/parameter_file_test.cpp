#include "shell/parameter_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "shell/file_names.h"
#include "shell/messages.h"
#include "shell/shell_world.h"
#include "shell/update_options.h"
#include "shell/version.h"
#include "shell/window_state.h"
#include "shell/xml.h"

namespace hcr {
namespace {

struct ParameterFile : test::ShellWorld {
    /// Makes parameters.xml of lines such as `<parameter name="RANGE" value="500"/>`.
    static void writeSettings(const std::string& items, bool withRoot = true) {
        const std::string list = "<parameters>" + items + "</parameters>";
        write(gFiles().settings, withRoot ? "<root>" + list + "</root>" : list);
    }

    static std::string item(const std::string& name, const std::string& value) {
        return "<parameter name=\"" + name + "\" value=\"" + value + "\"/>";
    }

    /// Value in the file, "(none)" without such an item.
    static std::string valueInFile(const std::string& name) {
        pugi::xml_document document;
        gf_loadXmlDocument(document, gFiles().settings);
        const pugi::xml_node found =
            gf_rootOf(document).child("parameters").find_child_by_attribute("name", name.c_str());
        return found.attribute("value").as_string("(none)");
    }

    static int itemsInFile() {
        pugi::xml_document document;
        gf_loadXmlDocument(document, gFiles().settings);
        const auto items = document.child("root").child("parameters").children("parameter");
        return static_cast<int>(std::distance(items.begin(), items.end()));
    }

    static std::filesystem::path keptAside() { return gFiles().configurationFolder / "parameters0.xml"; }

    void TearDown() override {
        gf_clearMessage();
        ShellWorld::TearDown();
    }

    /// Sets every value to one that isn't the default.
    static void changeAll() {
        const ParameterLists& lists = gf_parameterLists();
        for (BoolParameter* p : lists.bools) p->current = !p->defaultValue;
        for (CheckBox* p : lists.checkBoxes) p->current = !p->defaultValue;
        for (IntParameter* p : lists.ints) p->current = p->lower == p->defaultValue ? p->upper : p->lower;
        for (NumberChoice* p : lists.numberChoices) p->current = p->lower;
        for (StringParameter* p : lists.strings) p->current.set(p->name + " <&\"'\n> \xC3\xA9");
        for (StringParameter* p : lists.shownStrings) p->current.set("MSFS 2024");
    }

    static std::vector<std::string> currentValues() {
        const ParameterLists& lists = gf_parameterLists();
        std::vector<std::string> values;
        for (const BoolParameter* p : lists.bools) values.push_back(std::to_string(p->current));
        for (const CheckBox* p : lists.checkBoxes) values.push_back(std::to_string(p->current));
        for (const IntParameter* p : lists.ints) values.push_back(std::to_string(p->current));
        for (const NumberChoice* p : lists.numberChoices) values.push_back(std::to_string(p->current));
        for (const StringParameter* p : lists.strings) values.push_back(p->current.get());
        for (const StringParameter* p : lists.shownStrings) values.push_back(p->current.get());
        return values;
    }
};

TEST_F(ParameterFile, AFirstStartWritesEveryParameterWithItsDefault) {
    updateOptionsWrapped();
    EXPECT_TRUE(logHas("parameters.xml not found,  create new with default values:"));
    EXPECT_EQ(valueInFile("PROGRAM_VERSION"), gf_programVersion().text());
    EXPECT_EQ(PROGRAM_VERSION.current.get(), gf_programVersion().text());
    EXPECT_EQ(valueInFile("SCAN_LIVERIES"), "true");
    EXPECT_EQ(valueInFile("SCAN_AIRPORTS"), "true");
    EXPECT_EQ(valueInFile("RANGE"), "40");
    EXPECT_EQ(valueInFile("ALWAYS_ON_TOP"), "false");
    EXPECT_EQ(valueInFile("AI_PACKAGE_SELECTOR"), "AIG, FSLTL, JF, MTL");

    pugi::xml_document document;
    ASSERT_TRUE(gf_loadXmlDocument(document, gFiles().settings));
    std::vector<std::string> names;
    for (const pugi::xml_node node : document.child("root").child("parameters")) {
        names.emplace_back(node.attribute("name").as_string());
    }
    EXPECT_EQ(names.size(), 58U);
    EXPECT_EQ(names.front(), "RANDOM");
    EXPECT_EQ(names.back(), "SIM_CHOICE");
    EXPECT_EQ(std::count(names.begin(), names.end(), "parking_percentage"), 0);
    EXPECT_TRUE(read(gFiles().settings).starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<root>\n  <par"));
}

TEST_F(ParameterFile, AllValuesSurviveSavingAndLoading) {
    changeAll();
    const std::vector<std::string> saved = currentValues();
    gf_saveParameters(false);
    gf_resetParameters();
    EXPECT_NE(currentValues(), saved);
    EXPECT_FALSE(gf_loadParameters());
    EXPECT_EQ(currentValues(), saved);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(gFiles().configurationFolder), {}), 1);
}

TEST_F(ParameterFile, NumbersOutsideTheirLimitsAndOddValuesAreTamed) {
    struct Row {
        const char* value;
        i32 range;
    };
    for (const Row& row : {Row{"500", 100}, Row{"1", 2}, Row{"-99999999999999", 2}, Row{"99999999999999", 100},
                           Row{"", 2}, Row{"x", 2}, Row{" 30 nm", 30}}) {
        writeSettings(item("RANGE", row.value) + item("RANGE", "50"));
        EXPECT_FALSE(gf_loadParameters());
        EXPECT_EQ(RANGE.current, row.range) << row.value;
    }
    writeSettings("<parameter name=\"RANDOM\"/><parameter name=\"RANGE\"/><parameter name=\"PORT_NUMBER\"/>");
    EXPECT_FALSE(gf_loadParameters());
    EXPECT_FALSE(RANDOM.current);
    EXPECT_EQ(RANGE.current, 2);
    EXPECT_TRUE(PORT_NUMBER.current.empty());
}

TEST_F(ParameterFile, AMissingItemIsAddedAndAnUnknownOneSurvives) {
    MAX_FIT.current = 3;
    writeSettings(item("RANGE", "65") + item("OF_TOMORROW", "7"));
    EXPECT_FALSE(gf_loadParameters());
    EXPECT_EQ(MAX_FIT.current, 47);
    EXPECT_EQ(valueInFile("MAX_FIT"), "47");
    EXPECT_EQ(valueInFile("OF_TOMORROW"), "7");
    RANGE.current = 80;
    gf_storeParameter(RANGE);
    EXPECT_EQ(valueInFile("RANGE"), "80");
    EXPECT_EQ(valueInFile("OF_TOMORROW"), "7");
    gf_saveParameters(false);
    EXPECT_EQ(valueInFile("OF_TOMORROW"), "(none)");
}

TEST_F(ParameterFile, ADamagedFileIsKeptAsideBeforeAnythingTakesItsPlace) {
    for (const char* text : {"", "<root><parameters><parameter name=", "<root><other/></root>", "\xFF\xFE\x00"}) {
        write(gFiles().settings, text);
        EXPECT_TRUE(gf_loadParameters()) << text;
        EXPECT_EQ(valueInFile("RANGE"), "40");
        EXPECT_EQ(read(keptAside()), text);
        EXPECT_NE(gf_currentMessage().find("parameters.xml can't be read ("), std::string::npos);

        RANGE.current = 65;
        WEEK.current = true;
        write(gFiles().settings, text);
        gf_storeParameter(WEEK);
        EXPECT_EQ(read(keptAside()), text);
        EXPECT_EQ(valueInFile("WEEK"), "true");
        EXPECT_EQ(valueInFile("RANGE"), "65") << "all that is in force";
        EXPECT_EQ(itemsInFile(), 58);

        write(gFiles().settings, text);
        EXPECT_FALSE(gf_loadParameters(true)) << "a run that follows another one keeps what is in force";
        EXPECT_EQ(valueInFile("RANGE"), "65");
        RANGE.current = 40;
    }
    EXPECT_TRUE(logHas("==> "));
}

TEST_F(ParameterFile, ADamagedFileThatCantBeKeptStays) {
    std::filesystem::create_directories(keptAside());
    write(gFiles().settings, "<root><parameters>");
    EXPECT_FALSE(gf_loadParameters());
    EXPECT_FALSE(gf_storeParameter(RANGE));
    EXPECT_EQ(read(gFiles().settings), "<root><parameters>");
    EXPECT_NE(gf_currentMessage().find("no setting is saved"), std::string::npos);
}

TEST_F(ParameterFile, NoNameStandsTwiceInWhatIsWritten) {
    const std::string twice = item("RANGE", "65") + item("WEEK", "true") + item("RANGE", "20") + item("WEEK", "false") +
                              item("RANGE", "30") + item("OF_TOMORROW", "1");
    writeSettings(twice);
    EXPECT_FALSE(gf_loadParameters());
    EXPECT_EQ(RANGE.current, 65) << "the first counts";
    EXPECT_EQ(itemsInFile(), 59);
    writeSettings(twice);
    RANGE.current = 80;
    gf_storeParameter(RANGE);
    EXPECT_EQ(itemsInFile(), 3);
    EXPECT_EQ(valueInFile("RANGE"), "80");
    EXPECT_EQ(valueInFile("WEEK"), "true");
}

TEST_F(ParameterFile, StoringTouchesOneItemAndMakesWhatIsMissing) {
    DESTINATION.current.set("EHAM");
    gf_storeParameter(DESTINATION);  // no file yet
    EXPECT_EQ(valueInFile("DESTINATION"), "EHAM");
    EXPECT_EQ(valueInFile("RANGE"), "(none)");
    parking_percentage.current = 55;
    gf_storeParameter(parking_percentage);
    EXPECT_EQ(valueInFile("parking_percentage"), "55");
    WEEK.current = true;
    gf_storeParameter(WEEK);
    EXPECT_EQ(valueInFile("WEEK"), "true");
    gf_removeParameter("DESTINATION");
    gf_removeParameter("DESTINATION");
    EXPECT_EQ(valueInFile("DESTINATION"), "(none)");
    EXPECT_EQ(valueInFile("WEEK"), "true");
}

TEST_F(ParameterFile, AFileOfTheOldShapeLoadsAndGetsARootWithTheNextStore) {
    writeSettings(item("RANGE", "65") + item("OF_YESTERDAY", "1"), false);
    EXPECT_FALSE(gf_loadParameters());
    EXPECT_EQ(RANGE.current, 65);
    EXPECT_EQ(read(gFiles().settings).find("<root>"), std::string::npos);
    gf_storeParameter(RANGE);
    EXPECT_NE(read(gFiles().settings).find("<root>"), std::string::npos);
    EXPECT_EQ(valueInFile("RANGE"), "65");
    EXPECT_EQ(valueInFile("OF_YESTERDAY"), "(none)");
}

TEST_F(ParameterFile, AFailingSaveIsLoggedAndTheValuesStay) {
    std::filesystem::remove_all(gFiles().configurationFolder);
    RANGE.current = 25;
    EXPECT_FALSE(gf_saveParameters(false));
    EXPECT_TRUE(logHas("==> saving: "));
    EXPECT_EQ(gf_currentMessage().substr(0, 30), "The settings can't be saved in");
    EXPECT_EQ(RANGE.current, 25);
}

TEST_F(ParameterFile, TwoThreadsStoreWithoutLosingAnItem) {
    gf_saveParameters(true);
    const auto storeBoth = [](IntParameter& number, BoolParameter& flag) {
        for (i32 i = 0; i < 20; ++i) {
            number.current = number.lower + i;
            gf_storeParameter(number);
            flag.current = i % 2 == 0;
            gf_storeParameter(flag);
        }
    };
    std::thread other(storeBoth, std::ref(MAIN_WINDOW_X), std::ref(WEEK));
    storeBoth(HOLDING_THRESHOLD_METERS, PARK_SOFT);
    other.join();
    EXPECT_EQ(valueInFile("MAIN_WINDOW_X"), "-29981");
    EXPECT_EQ(valueInFile("HOLDING_THRESHOLD_METERS"), "29");
    EXPECT_EQ(valueInFile("WEEK"), "false");
    EXPECT_EQ(valueInFile("PARK_SOFT"), "false");
}

struct Conversion {
    const char* stored;
    bool tooOld;
    bool converted;
};

constexpr const char* kFormer[] = {"CALLSIGN_OBJECTIDS",
                                   "PARK_FAKE",
                                   "SUPPRESS_STUB",
                                   "LOG",
                                   "LEARN_SOFT",
                                   "PROGRAM_INSTALL_PATH",
                                   "LATERAL_RANGE",
                                   "CUSTOM_MAX_PARK",
                                   "MAX_LIVE",
                                   "AIRPORT_RANGE",
                                   "AUTO_RANGE_ABOVE_HEIGHT",
                                   "AIRPORT_HEIGHT",
                                   "MSFS_2020",
                                   "AI_PACKAGE_ORDER"};

TEST_F(ParameterFile, VersionsAreConvertedByNumberAndOldOnesGivenUp) {
    const Conversion rows[] = {
        {"11.0.1", true, false},  {"10.99.99", true, false}, {"no version", true, false}, {"11.0.2", false, true},
        {"11.9.0", false, true},  {"11.10.4", false, true},  {"11.10.5", false, false},   {"11.11.0", false, false},
        {"12.0.0", false, false}, {"", false, false},
    };
    for (const Conversion& row : rows) {
        SCOPED_TRACE(row.stored);
        gf_resetParameters();
        std::string items = item("PROGRAM_VERSION", row.stored) + item("RANGE", "65");
        for (const char* former : kFormer) items += item(former, "C:/x");
        writeSettings(items);
        write("EHAM.xml", "an airport");
        write("KEEPS.xml", "another name");
        write("Callsign2ObjectId.txt", "");
        write("TO_BE_LEARNED_OFFLINE/a/b.txt", "");
        write("input/airports_msfs.xml", "");
        write("new_version/install_new_version.exe", "");
        updateOptionsWrapped();
        EXPECT_EQ(valueInFile("RANGE"), row.tooOld ? "40" : "65");
        EXPECT_EQ(RANGE.current, row.tooOld ? 40 : 65);
        EXPECT_EQ(valueInFile("PROGRAM_VERSION"), gf_programVersion().text());
        for (const char* former : kFormer) {
            EXPECT_EQ(valueInFile(former), row.converted || row.tooOld ? "(none)" : "C:/x") << former;
        }
        for (const char* old :
             {"EHAM.xml", "Callsign2ObjectId.txt", "TO_BE_LEARNED_OFFLINE", "input/airports_msfs.xml", "new_version"}) {
            EXPECT_EQ(std::filesystem::exists(old), !row.converted) << old;
        }
        EXPECT_TRUE(std::filesystem::exists("KEEPS.xml"));
    }
    EXPECT_TRUE(logHas("This is a version update from 11.9.0 -> " + gf_programVersion().text()));
    EXPECT_TRUE(logHas("Halcyrane re-starts with default parameter values ...\n"));
    EXPECT_FALSE(logHas("==> "));
}

TEST_F(ParameterFile, AConfigurationFolderThatCantBeMadeStopsTheStart) {
    std::filesystem::remove_all(gFiles().configurationFolder);
    write(gFiles().configurationFolder, "a file stands in its place");
    EXPECT_THROW(gf_makeConfigurationFolder(), std::filesystem::filesystem_error);
}

TEST_F(ParameterFile, AVersionIsReadFromItsText) {
    EXPECT_EQ(VersionData("").text(), "0.0.0");
    EXPECT_FALSE(logHas("VersionData"));
    EXPECT_EQ(VersionData("v11.10.5-beta").text(), "11.10.5");
    EXPECT_LT(VersionData("11.9.0"), VersionData("11.10.5"));
    EXPECT_EQ(VersionData("1.2").text(), "0.0.0");
    EXPECT_EQ(VersionData("1.99999999999.2").text(), "1.0.0");
    EXPECT_EQ(VersionData(std::string(100000, '1')).text(), "0.0.0");
    EXPECT_TRUE(logHas("VersionData exception: parse error in version string\n"));
}

}  // namespace
}  // namespace hcr
