#pragma once

#include "feed/traffic_reader.h"

namespace hcr {

/// Decodes reader.text and queues a report, or drops the line. Traffic Reader thread.
void processLine(TrafficReader& reader);
/// The steps behind the split into reader.fields.
void processLineSub(TrafficReader& reader);

}  // namespace hcr
