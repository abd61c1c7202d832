#pragma once

namespace hcr {

/// SimClient's own marks back to the start. While no SimClient runs.
void gf_resetSimClient();

}  // namespace hcr
