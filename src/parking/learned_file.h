#pragma once

#include <filesystem>
#include <pugixml.hpp>
#include <vector>

#include "core/model/stand.h"
#include "parking/airport_file.h"

namespace hcr {

// The learned file of an airport: what was seen there beyond its archived file. Run thread.

/// Merges the learned file into the stands, puts its settings in force, and takes over the head of a handmade one. A
/// fault is logged and costs the learned file only, which is kept aside.
void lf_readLearned(const std::filesystem::path& path, AirportFile& info, std::vector<ParkPos>& stands, bool& handmade);
/// The same of a document that was read from that path. Throws std::exception for what can't be taken.
void gf_mergeLearned(const pugi::xml_document& document, const std::filesystem::path& path, AirportFile& info,
                     std::vector<ParkPos>& stands, bool& handmade);
/// Writes what was learned at the loaded airport, or all of a handmade one.
void gf_saveLearnedFile();

}  // namespace hcr
