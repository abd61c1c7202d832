#pragma once

#include <deque>
#include <list>
#include <mutex>
#include <string>
#include <vector>

#include "core/model/aircraft.h"
#include "core/model/record_queue.h"
#include "core/model/sim_requests.h"
#include "core/model/stand.h"

namespace hcr {

// The engine's tables. They live as long as the process and belong to the run thread, but for gReports, which the
// Traffic Reader fills under gReportMutex. The run thread holds it while it works on the two reports of a cycle, in
// which it may take the simulator lock or the log's; nobody who holds another lock may take it.

/// A parked live aircraft and the time that it has been there, for the window.
struct CallsignParked {
    std::string callsign;
    u32 standId = 0;
    i32 minutes = 0;
};

extern std::vector<LiveAc> gLiveAcs;
extern std::vector<ParkedAc> gParkedAcs;
extern std::vector<ParkPos> gStands;
extern std::mutex gReportMutex;
extern RecordQueue<TrafficReport> gReports;
extern bool gAcceptReports;  ///< the decoder may queue reports; under gReportMutex
extern std::vector<u32> gAddingStack;
extern std::deque<AiCreateRequest> gLiveAdding;
extern std::deque<AiCreateRequest> gParkedAdding;
extern std::deque<u32> gRemovedObjects;
extern std::list<u32> gCoupledQueue;
extern std::vector<CallsignParked> gCallsignParked;
extern std::vector<ParkPlanEntry> gParkPlanQueue;
extern std::vector<std::string> gGhosts;

/// Room for the usual numbers; first run.
void gf_reserveTables();
/// Empties every table above.
void gf_clearTables();

LiveAc* findLiveByHexid(u32 hexid);
LiveAc* findLiveByObject(u32 objectId);
LiveAc* findLiveByCallsign(std::string_view callsign);
ParkedAc* findParkedByHexid(u32 hexid);
ParkedAc* findParkedByObject(u32 objectId);
ParkPos* findStand(u32 standId);

/// The invariants of the live table as a text that names the first one broken; empty when all hold. Called by debug
/// builds and by tests after each cycle.
std::string validateLiveTable();

}  // namespace hcr
