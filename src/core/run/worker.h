#pragma once

namespace hcr {

// Pieces of the worker that the tick and the close-down share. Run thread.

/// Ends and joins the SimClient thread if there is one.
void gf_joinSimClient();
/// Whether every reader thread that was started has ended.
bool gf_readersEnded();
/// Gives the decoder the user's position for its range test.
void gf_handPositionToDecoder();

}  // namespace hcr
