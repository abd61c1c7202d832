#pragma once

#include <filesystem>

namespace hcr {

/// Every file and folder name of the program. Names without a parent are relative to the working folder.
struct FileNames {
    std::filesystem::path configurationFolder, settings;
    std::filesystem::path input, output, airports, docs, newVersion, tblo, origDest;
    std::filesystem::path mySimaddon, myThirdparty, learned, myParkAirports;
    std::filesystem::path learnedStock, learnedSimaddon, learnedThirdparty;
    std::filesystem::path info, errors, liveriesScanned;
    std::filesystem::path dbaseEnc, dbaseXml, aigEnc, aigXml, airportsEnc, airportsXml, airportsMsfs, airportsMsfsNames,
        myRegcodes;
    std::filesystem::path airportsScanLog, noFltsimSection, registrationCodeConversions, airlineModelConversions,
        myMultRegcodes, offlineRegcodes;
    std::filesystem::path inlineRegcodes, invalidAirlines, invalidTypes, fixes, invalidFiles, incompleteSections;
    std::filesystem::path log, tbloZip, fsBase, releaseNotes, installer, community, official, official2024,
        insideSystems, versionsJson;
};

/// Built at the first call; read-only. Any thread.
const FileNames& gFiles();
/// Builds the table anew (the configuration folder follows the environment); for tests.
void gf_rebuildFileNames();
/// Keeps the settings in another folder than the user's, for a tool that must not touch those, until the table is built
/// anew. No other thread may run.
void gf_useConfigurationFolder(const std::filesystem::path& folder);
/// Makes the configuration folder with its parents; throws std::filesystem::filesystem_error.
void gf_makeConfigurationFolder();

}  // namespace hcr
