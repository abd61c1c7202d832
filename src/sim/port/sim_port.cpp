#include "sim/port/sim_port.h"

namespace hcr {

SimPort gSimPort;

namespace {

constexpr std::size_t lf_visited() {
    std::size_t count = 0;
    SimPort port;
    gf_visitSimPort(port, [&count](const char*, auto&) { ++count; });
    return count;
}

static_assert(lf_visited() * sizeof(void (*)()) == sizeof(SimPort), "gf_visitSimPort leaves out a function");

}  // namespace

bool gf_simPortHas(std::string_view name) {
    bool has = false;
    const SimPort port;
    gf_visitSimPort(port, [&](const char* function, const auto&) { has = has || name == function; });
    return has;
}

}  // namespace hcr
