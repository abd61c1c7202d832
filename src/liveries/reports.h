#pragma once

#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "platform/types.h"

namespace hcr {

// What a livery scan found wrong in the installed files, line by line, until it is written for the user.

/// Lines of one report. The workers of a scan add to it; the run thread takes them out. No other lock is taken while
/// this one is held.
struct ReportList {
    std::mutex mutex;
    std::vector<std::string> lines;
};

extern ReportList gInvalidAirlines;            ///< airline codes that nobody knows
extern ReportList gInvalidTypes;               ///< type codes that nobody knows
extern ReportList gCodeFixes;                  ///< type codes that were put right
extern ReportList gInvalidFiles;               ///< files that are of no use
extern ReportList gIncompleteSections;         ///< sections that are of no use
extern ReportList gFilesWithoutSections;       ///< paths
extern std::vector<std::string> gConversions;  ///< liveries corrected from the registration records; run thread

/// The scan whose lists these are. Who began to read a file in an older one, and has taken too long, adds nothing.
extern std::atomic<u32> gScanNumber;

/// Titles that the running scan has met; the first section that shows a title gets it.
extern std::mutex gSeenTitlesMutex;
extern std::set<std::string, std::less<>> seenTitles;

/// Any thread; `scan` is the value of gScanNumber when the reading of the file began.
void gf_addReportLine(ReportList& list, std::string line, u32 scan);
/// Writes all lists into their files. Run thread.
void gf_writeScanReports();
/// Begins another scan, with the lists above empty. Run thread.
void gf_clearScanLists();
/// Removes the result and the reports of an older scan, as the first act of a new one. A failure is logged.
void gf_removeOldScanFiles();

}  // namespace hcr
