#pragma once

#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/model/run_state.h"
#include "shell/shared_value.h"

namespace hcr {

/// What the decoder of traffic lines is told in a run. Any thread.
struct DecoderRun {
    SharedValue<bool> collectCallsigns;  ///< switched by gf_collectCallsigns
    SharedValue<f64> userLat, userLon;   ///< written by the worker every 5 seconds
    SharedValue<f64> parkAirportLat, parkAirportLon;
    SharedValue<f64> parkAirportAlt;        ///< feet
    SharedValue<bool> parkAirportAltValid;  ///< a park airport is set
    SharedValue<i32> qnh{kStandardQnh};     ///< hPa
};

/// What it works on; the Traffic Reader's, but for what says otherwise.
struct LineDecoder : DecoderRun {
    std::vector<std::string_view> fields;              ///< of the current line, reused
    std::mutex callsignMutex;                          ///< guards realCallsigns; stands alone
    std::set<std::string, std::less<>> realCallsigns;  ///< seen during a collection; the worker's while none is on
};

/// Decodes a line and queues a report, or drops the line. Traffic Reader thread.
void processLine(LineDecoder& decoder, std::string_view text);
/// The steps behind the split into decoder.fields.
void processLineSub(LineDecoder& decoder, std::string_view text);

}  // namespace hcr
