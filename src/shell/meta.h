#pragma once

#include <optional>
#include <pugixml.hpp>
#include <string>

#include "platform/types.h"

namespace hcr {

/// The block at the head of a data file that tells who wrote it, when, and for which simulator.
struct MetaInfo {
    std::string author, version, date;
    std::string formerSim;  ///< text of a former simulator family, empty for MSFS
    std::string msfs;       ///< "2020", "2024" or empty
    i32 sim = -1;           ///< 1 MSFS 2020, 2 MSFS 2024, 3 a former family, -1 none given

    void setSim(i32 code);
};

/// Appends `meta` under `root`, which is made when missing; true if every item was added.
bool gf_writeMeta(pugi::xml_document& document, const MetaInfo& meta);
/// Reads it; nothing when there is no usable block.
std::optional<MetaInfo> gf_readMeta(const pugi::xml_document& document, bool simOptional);

}  // namespace hcr
