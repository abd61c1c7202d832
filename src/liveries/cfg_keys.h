#pragma once

#include <string_view>

#include "platform/types.h"

namespace hcr {

// The lines of an aircraft.cfg. Any thread; nothing is allocated.

/// The keys of a section that the scan reads; any other is `none`.
enum class CfgKey { none, title, texture, baseContainer, typeDesignator, atcId, airline, parkingTypes };

/// A line of a known key: its name in any case, "=", and a value. Of a value with quotes only the text between the
/// first two counts.
struct CfgLine {
    CfgKey key = CfgKey::none;
    std::string_view value;  ///< into the line; not empty but for `airline`
};

/// A line of another key, without a value or of no key at all gives CfgKey::none, and so does a comment.
CfgLine gf_cfgLine(std::string_view line);
/// Whether the start of a line holds a key of any name, be it in a comment, and its "=": what follows is a value.
bool gf_endsInCfgValue(std::string_view lineStart);
/// "//" behind any blanks.
bool gf_isCfgComment(std::string_view line);

/// Walks those lines of a section that may hold a key of the sections, or mention it elsewhere in the line; most of its
/// lines do neither. The keys that give a file its type are no keys of the sections.
struct CfgKeyLines {
    std::string_view text;
    std::size_t from = 0;

    /// False behind the last line.
    bool next(std::string_view& line);
};

/// Header lines of the sections that hold a livery.
struct FltSimHeader {
    bool isHeader = false;
    /// The digits of "[fltsim.12]"; "10000" in any other line that holds "[fltsim.".
    std::string_view number;
};
/// What a line is as a header.
FltSimHeader gf_fltSimHeader(std::string_view line);
/// The largest number that a section may have.
inline constexpr i32 kLargestFltSim = 10000;

/// The blanks of a key line, vertical ones included.
std::string_view gf_trimCfg(std::string_view text);
/// Whether one of these blanks stands in the text.
bool gf_holdsCfgBlank(std::string_view text);

}  // namespace hcr
