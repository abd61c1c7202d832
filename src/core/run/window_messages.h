#pragma once

#include "platform/types.h"

namespace hcr {

// What a run asks of the thread that shows the window.

/// What the window thread is asked to do; the values are those of its messages.
enum class WindowMessage : u32 {
    none = 0,
    startRun = 0x8001,    ///< start a new run thread; it replaces the last one, which is joined
    endProgram = 0x8002,  ///< save the window's position, end the message loop with gExitCode
};
/// Posts to the window thread; any thread.
void gf_postToWindow(WindowMessage message);
/// Takes the oldest message, waiting up to the time for one; `none` when there is none. Window thread.
WindowMessage gf_takeWindowMessage(i64 milliseconds);
/// Drops all that wait. While no face serves them.
void gf_forgetWindowMessages();

}  // namespace hcr
