#pragma once

#include <pugixml.hpp>
#include <vector>

#include "core/model/stand.h"

namespace hcr {

// Stands as elements of an airport file. Run thread, or a tool's only one.

/// Largest numbers of stands and of options that a file may bring; what stands behind them is left out, which is
/// logged.
inline constexpr std::size_t kMostStands = 10000, kMostOptions = 2'000'000;

/// Radius in metres that a stand may have, and what stands for one that is out of it or no number.
inline constexpr f64 kLargestRadiusM = 500;

/// All stands under `parkpositions`, with their options of this origin. Throws UserErrorException 93 for one without
/// an id and 94 for an id that stands twice; a stand whose place or size is no place or size is logged and left out.
void gf_readStands(const pugi::xml_node& root, u32 origin, std::vector<ParkPos>& stands);
/// One stand but for its id; false when its place or size is none, which is logged.
bool gf_readStand(const pugi::xml_node& element, u32 origin, ParkPos& stand);
/// Radius of an element in nautical miles; nothing when it is no size.
std::optional<f64> gf_readRadius(const pugi::xml_node& element);
/// One option, without index and origin. False when its day or half hours are missing.
bool gf_readOption(const pugi::xml_node& element, StandOption& option);

/// Place, size and kind of a stand.
void gf_writeStandAttributes(pugi::xml_node& element, const ParkPos& stand);
/// The options that aren't struck out; one whose half hours are no single run is logged and left out.
void gf_writeOptions(pugi::xml_node& element, const ParkPos& stand);

}  // namespace hcr
