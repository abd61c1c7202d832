#pragma once

#include <filesystem>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "liveries/livery_data.h"

namespace hcr {

// What a livery scan leaves behind. Run thread.

extern std::vector<LiveryData> gScanList;  ///< what a scan has found; empty but during a scan

/// Corrects the scan list from the registration records.
void gf_applyDbaseToLiveries();
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

}  // namespace hcr
