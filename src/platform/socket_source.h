#pragma once

#include <string>

#include "platform/types.h"

namespace hcr {

// Shared between the neutral and the system's side of sockets.h.

/// Error number for a port or service that doesn't exist, in Winsock's counting.
inline constexpr i32 kNoSuchService = 10109;

/// Port of a service name for an IPv4 stream; returns an error number, 0 = fine.
i32 gf_systemResolveService(const std::string& name, u16& port);
/// A time-out of the clock in wall milliseconds, rounded up; 0 for a negative one.
i32 gf_wallMilliseconds(i64 milliseconds);

}  // namespace hcr
