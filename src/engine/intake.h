#pragma once

#include "core/model/aircraft.h"

namespace hcr {

/// Adds one decoded sample to the stream. What goes wrong inside is logged and passed on.
void decodeExisting(LiveAc& ac, PosSample sample);
/// Brings what a report may claim within what can be reckoned with.
void limitSample(PosSample& sample);

}  // namespace hcr
