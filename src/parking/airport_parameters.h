#pragma once

namespace hcr {

// Settings that an airport may have for itself: as long as it is loaded they are the airport's, behind it the user's
// own again. Run thread.

/// Keeps the values in force, to be put back when the airport is left.
void gf_rememberAirportParameters();
/// Puts the kept values back, brought within their bounds, shows them and stores them in parameters.xml; once.
void gf_restoreAirportParameters();
/// Forgets the kept values without putting them back.
void gf_forgetAirportParameters();
/// MAX_FIT in half hours follows from MAX_FIT_FL in hours: round(2 x hours) - 1, and the other way round.
void gf_maxFitFromHours();
void gf_hoursFromMaxFit();

}  // namespace hcr
