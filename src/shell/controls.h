#pragma once

#include "shell/parameters.h"

namespace hcr {

// What the program asks of the window's controls; any thread. Without a window the asked state is kept in the
// ParameterControl, where a face that comes later finds it.

/// Lets the user operate a control, or not.
void gf_enableControl(ParameterControl& control, bool enabled);
/// Shows the current value of a parameter in its control.
void gf_showInControl(ParameterControl& control);

}  // namespace hcr
