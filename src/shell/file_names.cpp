#include "shell/file_names.h"

#include <system_error>

#include "platform/user_folders.h"
#include "shell/version.h"

namespace hcr {
namespace {

FileNames lf_build(const std::filesystem::path& configurationFolder) {
    FileNames f;
    f.configurationFolder = configurationFolder;
    f.settings = f.configurationFolder / "parameters.xml";

    f.input = "input";
    f.output = "output";
    f.airports = "airports";
    f.docs = "docs";
    f.newVersion = "new_version";
    f.tblo = "tblo";
    f.origDest = "orig_dest";

    f.mySimaddon = f.airports / "my_simaddon";
    f.myThirdparty = f.airports / "my_thirdparty";
    f.learned = f.airports / "learned";
    f.myParkAirports = f.airports / "my_park_airports.txt";
    f.learnedStock = f.learned / "stock";
    f.learnedSimaddon = f.learned / "simaddon";
    f.learnedThirdparty = f.learned / "thirdparty";

    f.info = f.output / "info";
    f.errors = f.output / "errors";
    f.liveriesScanned = f.output / "LiveriesScanned.xml";

    f.dbaseEnc = f.input / "dbase.enc";
    f.dbaseXml = f.input / "dbase.xml";
    f.aigEnc = f.input / "AIG-regcodes.enc";
    f.aigXml = f.input / "AIG-regcodes.xml";
    f.airportsEnc = f.input / "airports.enc";
    f.airportsXml = f.input / "airports.xml";
    f.airportsMsfs = f.input / "airports_msfs.xml";
    f.airportsMsfsNames = f.input / "airports_msfs_names.xml";
    f.myRegcodes = f.input / "my_regcodes";

    f.airportsScanLog = f.info / "AirportsScanLog.txt";
    f.noFltsimSection = f.info / "AircraftCfgWithNoFltsimSection.txt";
    f.registrationCodeConversions = f.info / "RegistrationCodeConversions.txt";
    f.airlineModelConversions = f.info / "AirlineModelConversions.txt";
    f.myMultRegcodes = f.info / "MyMultRegcodes.txt";
    f.offlineRegcodes = f.info / "OfflineRegcodes.txt";

    f.inlineRegcodes = f.errors / "InlineRegcodes.txt";
    f.invalidAirlines = f.errors / "InvalidAirlineCodes.txt";
    f.invalidTypes = f.errors / "InvalidAircraftCodes.txt";
    f.fixes = f.errors / "Fixes.txt";
    f.invalidFiles = f.errors / "InvalidAircraftCfgFiles.txt";
    f.incompleteSections = f.errors / "IncompleFltsimSections.txt";

    f.log = "Log.txt";
    f.tbloZip = "tblo.zip";
    f.fsBase = "fs-base";
    f.releaseNotes = "ReleaseNotes.pdf";
    f.installer = "install_new_version.exe";
    f.community = "Community";
    f.official = "Official";
    f.official2024 = "Official2024";
    f.insideSystems = "InsideSystems";
    f.versionsJson = "versions.json";
    return f;
}

std::filesystem::path lf_usersFolder() {
    return gf_roamingFolder() / kProgramName;
}

FileNames& lf_table() {
    static FileNames table = lf_build(lf_usersFolder());
    return table;
}

}  // namespace

const FileNames& gFiles() {
    return lf_table();
}

void gf_rebuildFileNames() {
    lf_table() = lf_build(lf_usersFolder());
}

void gf_useConfigurationFolder(const std::filesystem::path& folder) {
    lf_table() = lf_build(folder);
}

void gf_makeConfigurationFolder() {
    const std::filesystem::path& folder = gFiles().configurationFolder;
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) throw std::filesystem::filesystem_error("create_directories", folder, error);
}

}  // namespace hcr
