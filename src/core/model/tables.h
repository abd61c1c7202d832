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
// Traffic Reader fills under gReportMutex. That is held for the moment in which a report is put in or taken, or all are
// dropped; nobody who holds it takes another lock.

/// A parked live aircraft and the time that it has been there, for the window.
struct CallsignParked {
    std::string callsign;
    u32 standId = 0;
    i32 minutes = 0;
};

extern std::vector<LiveAc> gLiveAcs;      ///< in the order of their arrival in range
extern std::vector<ParkedAc> gParkedAcs;  ///< static aircraft
extern std::vector<ParkPos> gStands;      ///< of the park airport, numbered from 1 in this order
extern std::mutex gReportMutex;
/// Decoded and not yet taken by the worker, oldest first; under gReportMutex.
extern RecordQueue<TrafficReport> gReports;
extern bool gAcceptReports;            ///< the decoder may queue reports; under gReportMutex
extern std::vector<u32> gAddingStack;  ///< hexids that wait for a creation, the next one at the end
/// Creations of live and of static aircraft that are still to be handed over, oldest first.
extern std::deque<AiCreateRequest> gLiveAdding, gParkedAdding;
extern std::deque<u32> gRemovedObjects;              ///< object ids that are to be removed, oldest first
extern std::list<u32> gCoupledQueue;                 ///< hexids of aircraft whose other callsign is to be looked for
extern std::vector<CallsignParked> gCallsignParked;  ///< live aircraft that are parked, as of the last plan
extern std::vector<ParkPlanEntry> gParkPlanQueue;  ///< static aircraft that are to be created, the next one at the end
extern std::vector<std::string> gGhosts;           ///< names under which objects of ours are still shown that have left

/// Room for the usual numbers, at the start of a run.
void gf_reserveTables();
/// Empties every table above and closes the gate for reports.
void gf_clearTables();

/// The record of a number, or null; good until the table changes. Run thread, like all below.
LiveAc* findLiveByHexid(u32 hexid);
LiveAc* findLiveByObject(u32 objectId);
LiveAc* findLiveByCallsign(std::string_view callsign);
ParkedAc* findParkedByHexid(u32 hexid);
ParkedAc* findParkedByObject(u32 objectId);
ParkPos* findStand(u32 standId);

}  // namespace hcr
