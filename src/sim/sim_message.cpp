#include "sim/sim_message.h"

namespace hcr {

std::mutex gSimEventMutex;
std::vector<SimMessage> gSimEvents;

namespace {

constexpr std::size_t kReservedEvents = 256;  // news of one worker cycle, with room for a full sky

}  // namespace

void gf_pushSimMessage(const SimMessage& message) {
    const std::lock_guard lock(gSimEventMutex);
    gSimEvents.push_back(message);
}

void gf_resetSimEvents() {
    const std::lock_guard lock(gSimEventMutex);
    gSimEvents = {};
    gSimEvents.reserve(kReservedEvents);
}

}  // namespace hcr
