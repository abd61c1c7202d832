#pragma once

#include <set>
#include <string>
#include <vector>

namespace hcr {

// What a livery scan found wrong in the installed files, line by line, until it is written for the user. Run thread.

/// Lines of one report.
using ReportList = std::vector<std::string>;

extern ReportList gInvalidAirlines;       ///< airline codes that nobody knows
extern ReportList gInvalidTypes;          ///< type codes that nobody knows
extern ReportList gCodeFixes;             ///< type codes that were put right
extern ReportList gInvalidFiles;          ///< files that are of no use
extern ReportList gIncompleteSections;    ///< sections that are of no use
extern ReportList gFilesWithoutSections;  ///< paths
extern ReportList gConversions;           ///< liveries corrected from the registration records

/// Titles that the running scan has met; the first section that shows a title gets it.
extern std::set<std::string, std::less<>> seenTitles;

/// Writes all lists into their files.
void gf_writeScanReports();
/// Begins another scan, with the lists above empty.
void gf_clearScanLists();
/// Removes the result and the reports of an older scan, as the first act of a new one. A failure is logged.
void gf_removeOldScanFiles();

}  // namespace hcr
