#include "sim/port/sim_port.h"

namespace hcr {

SimPort gSimPort;

}  // namespace hcr
