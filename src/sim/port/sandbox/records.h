#pragma once

#include "sim/port/sandbox/world.h"

namespace hcr {

// Data records as the client's definitions lay them out. Inside the sandbox only, under its lock.

/// Bytes of one value, 0 for a text of variable length and for what the sandbox doesn't serve.
u32 gf_sandboxTypeBytes(u32 type);
bool gf_sandboxTextType(u32 type);
/// Reads one number of a record and steps behind it.
f64 gf_sandboxTake(const u8*& at, u32 type);

SandboxDefinition* gf_sandboxDefinition(SandboxSession& session, u32 id);
/// Queues one reply with the record of this aircraft. `entry` and `outOf` count from 1.
void gf_sandboxSendData(SandboxWorld& world, SimRecvId kind, u32 request, const SandboxDefinition& definition,
                        SandboxAircraft& ac, u32 entry, u32 outOf);
/// The reply of a request by type that found nothing.
void gf_sandboxSendNoData(SandboxWorld& world, u32 request, u32 definition);
/// Answers the requests that wait for this period.
void gf_sandboxServePeriod(SandboxWorld& world, u32 period);
/// Writes a record into an aircraft. Nothing is written unless all of it can be.
SimException gf_sandboxWriteRecord(const SandboxDefinition& definition, SandboxAircraft& ac, const void* data);

}  // namespace hcr
