#include "shell/controls.h"

#include "shell/window_state.h"

namespace hcr {

void gf_enableControl(ParameterControl& control, bool enabled) {
    control.enabled = enabled;
    gf_repaint(Band::whole);
}

void gf_showInControl(ParameterControl&) {
    // A face reads the parameter itself when it draws.
    gf_repaint(Band::whole);
}

}  // namespace hcr
