#pragma once

#include <atomic>
#include <filesystem>
#include <string>
#include <string_view>

#include "core/model/stand.h"

namespace hcr {

// The file of an airport: where it lies, and what is known of the one that is loaded. Run thread, but for the atomics.

/// Head of a loaded airport.
struct AirportFile {
    std::string airportName;
    std::string publisher;                   ///< "stock", "simaddon", or the name of a third party
    i32 altitude = 0;                        ///< feet
    i32 rtTrafficWeek = 0;                   ///< week of the traffic that the archived file was made of, 0 for none
    i32 qualityReal = -1, qualitySoft = -1;  ///< 0..100, -1 without a value
    bool handmade = false;
};

extern AirportFile gAirportFile;          ///< of the park airport while gAirportLoaded
extern f64 gAirportAltitude;              ///< feet; of the file while it is loaded
extern std::atomic<bool> gAirportLoaded;  ///< gStands holds the stands of an airport
extern u32 gLearnedUpdates;               ///< changes since the airport was loaded
extern bool gHandmade;                    ///< the loaded airport comes from a handmade file
/// Where what was learned at the loaded airport is kept, relative to the working folder; empty when there is no place.
extern std::filesystem::path gLearnedPath;

/// Where the airport's file is found: a path that begins with "airports" lies here, any other on the data server.
/// Empty when there is none, or for a code that can be no file name.
std::string gf_airportFilePath(std::string_view code);
/// Whether one lies here or, as the catalogue tells, on the data server.
bool gf_airportFileAvailable(std::string_view code);
/// Whether the path lies in this computer's folders.
bool gf_isLocalAirportPath(std::string_view path);
/// Fetches a path of the data server into the target; the error text, empty when it worked. Any thread that has a
/// stop of its own to look at.
std::string gf_downloadApf(std::string_view path, const std::filesystem::path& target);
/// The stand of this name or null; good until the table changes.
ParkPos* gf_standById(std::string_view id);

/// Back to no airport loaded.
void gf_resetAirportFile();

/// Whether a text may become one component of a path: not empty, no separator, no "..", no name or character that a
/// file system keeps for itself. Any thread.
bool gf_isFileName(std::string_view text);

}  // namespace hcr
