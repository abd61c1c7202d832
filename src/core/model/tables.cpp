#include "core/model/tables.h"

#include <algorithm>
#include <cstddef>

namespace hcr {
namespace {

constexpr std::size_t kLiveRoom = 512;
constexpr std::size_t kParkedRoom = 256;
constexpr std::size_t kStandRoom = 512;
constexpr std::size_t kPlanRoom = 256;
constexpr std::size_t kSmallRoom = 64;

template <typename Table, typename Match>
auto* lf_find(Table& table, Match match) {
    const auto found = std::find_if(table.begin(), table.end(), match);
    return found == table.end() ? nullptr : &*found;
}

}  // namespace

std::vector<LiveAc> gLiveAcs;
std::vector<ParkedAc> gParkedAcs;
std::vector<ParkPos> gStands;
std::mutex gReportMutex;
RecordQueue<TrafficReport> gReports;
bool gAcceptReports = false;
std::vector<u32> gAddingStack;
std::deque<AiCreateRequest> gLiveAdding;
std::deque<AiCreateRequest> gParkedAdding;
std::deque<u32> gRemovedObjects;
std::list<u32> gCoupledQueue;
std::vector<CallsignParked> gCallsignParked;
std::vector<ParkPlanEntry> gParkPlanQueue;
std::vector<std::string> gGhosts;

void gf_reserveTables() {
    gLiveAcs.reserve(kLiveRoom);
    gParkedAcs.reserve(kParkedRoom);
    gStands.reserve(kStandRoom);
    gParkPlanQueue.reserve(kPlanRoom);
    gAddingStack.reserve(kSmallRoom);
    gCallsignParked.reserve(kSmallRoom);
    gGhosts.reserve(kSmallRoom);
}

void gf_clearTables() {
    gLiveAcs = std::vector<LiveAc>();
    gParkedAcs = {};
    gStands = {};
    {
        const std::lock_guard lock(gReportMutex);
        gReports = {};
        gAcceptReports = false;
    }
    gAddingStack = {};
    gLiveAdding = {};
    gParkedAdding = {};
    gRemovedObjects = {};
    gCoupledQueue = {};
    gCallsignParked = {};
    gParkPlanQueue = {};
    gGhosts = {};
}

LiveAc* findLiveByHexid(u32 hexid) {
    return lf_find(gLiveAcs, [=](const LiveAc& ac) { return ac.hexid == hexid; });
}

LiveAc* findLiveByObject(u32 objectId) {
    return lf_find(gLiveAcs, [=](const LiveAc& ac) { return ac.objectId == objectId; });
}

LiveAc* findLiveByCallsign(std::string_view callsign) {
    return lf_find(gLiveAcs, [=](const LiveAc& ac) { return ac.callsign == callsign; });
}

ParkedAc* findParkedByHexid(u32 hexid) {
    return lf_find(gParkedAcs, [=](const ParkedAc& ac) { return ac.hexid == hexid; });
}

ParkedAc* findParkedByObject(u32 objectId) {
    return lf_find(gParkedAcs, [=](const ParkedAc& ac) { return ac.objectId == objectId; });
}

ParkPos* findStand(u32 standId) {
    // Stands are numbered in their order once all are read.
    if (standId >= 1 && standId <= gStands.size() && gStands[standId - 1].number == standId) {
        return &gStands[standId - 1];
    }
    return lf_find(gStands, [=](const ParkPos& stand) { return stand.number == standId; });
}

}  // namespace hcr
