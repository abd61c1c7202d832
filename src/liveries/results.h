#pragma once

#include <filesystem>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "liveries/livery_data.h"

namespace hcr {

// What a livery scan leaves behind and what every run makes of it. Run thread.

/// The scan list into its file; an empty list makes none.
void gf_writeScannedLiveries();
/// A livery of LiveriesScanned.xml; the texts stand in the document.
struct ScannedLivery {
    std::string_view airl, type, title, atcid;
    bool cargo = false;
};
/// Loads the file into `document` and gives its liveries, sorted by airline, type and title. Throws UserErrorException
/// 51, 52, 533, 999.
std::vector<ScannedLivery> gf_readScannedLiveries(pugi::xml_document& document);
/// The same from a parsed document; `path` is only named in messages.
std::vector<ScannedLivery> gf_readScannedDocument(const pugi::xml_document& document,
                                                  const std::filesystem::path& path);
/// The whole loading; skipped when the tables are loaded. Throws what gf_readScannedLiveries throws.
void gf_loadScanResults();
/// Corrects the scan list from the registration records.
void gf_applyDbaseToLiveries();
/// Empties everything that gf_loadScanResults built, what is remembered of live aircraft with it, and clears the
/// loaded flag. No record may keep a title of the old tables.
void gf_clearLiveryTables();
/// Reserves room, once in the process.
void gf_prepareLiveryTables();
/// View of the indexed title that equals this one, empty when there is none.
std::string_view gf_findTitle(std::string_view title);
/// Any thread.
bool gf_liveryTablesLoaded();

}  // namespace hcr
