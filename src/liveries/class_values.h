#pragma once

#include "core/model/aircraft.h"

namespace hcr {

/// Fills in what the class of the aircraft's type, and the type itself, tell: class, pitches, rates, times and span.
/// The pitches of rotation and climb differ a little between aircraft. Run thread.
void setClassValues(ParkedAc& ac);

}  // namespace hcr
