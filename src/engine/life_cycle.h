#pragma once

#include "core/model/samples.h"

namespace hcr {

/// How a report becomes a record or updates one. Run thread. One report taken from gReports. Exceptions of the
/// following are passed on.
void gf_decodeReport(TrafficReport& report);

}  // namespace hcr
