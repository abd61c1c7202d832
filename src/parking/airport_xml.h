#pragma once

#include <filesystem>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "parking/airport_file.h"

namespace hcr {

/// Value of an item of the airport's `parameters`; an empty attribute when it is missing.
pugi::xml_attribute gf_airportParameter(const pugi::xml_document& document, const char* name);

/// What is written of an airport.
struct AirportToWrite {
    AirportFile head;
    std::vector<ParkPos> stands;
    std::string bglPath, manufacturer, creator;  ///< of a scenery without a known publisher
};

/// The two kinds of files that the program writes.
enum class ApfMode : i32 {
    learned = 0,    ///< what differs from the archived file, or all of a handmade airport
    generated = 1,  ///< an airport of an add-on, without history
};

/// Writes the file whole, with its folders; false when that can't be done, which is told. `simCode` is 1 for MSFS 2020
/// and 2 for MSFS 2024. Run thread.
bool gf_writeApf(const AirportToWrite& airport, const std::filesystem::path& path, ApfMode mode, i32 simCode);

}  // namespace hcr
