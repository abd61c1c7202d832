#pragma once

#include <filesystem>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "liveries/livery_data.h"

namespace hcr {

// What a livery scan leaves behind and what every run makes of it. Run thread.

/// The scan list into its file; an empty list makes none.
void gf_writeScannedLiveries();
/// The file into the scan list. Throws UserErrorException 51, 52, 533, 999.
void gf_readScannedLiveries();
/// The same from a parsed document; `path` is only named in messages.
void gf_readScannedDocument(const pugi::xml_document& document, const std::filesystem::path& path);
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
/// Sorts the scan list by airline, type, title.
void gf_sortScanList();
/// Any thread.
bool gf_liveryTablesLoaded();

}  // namespace hcr
