#pragma once

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <string_view>
#include <type_traits>

#include "platform/types.h"

namespace hcr {

/// The trace file: one JSON object per line. Under the sandbox's lock.
struct SandboxTrace {
    std::ofstream file;
    bool on = false;
    fmt::memory_buffer line = fmt::memory_buffer();  ///< reused
};

/// A piece of JSON that is written as it stands.
struct SandboxTraceRaw {
    std::string_view json;
};

/// Throws std::runtime_error when the file can't be written.
void gf_sandboxTraceOpen(SandboxTrace& trace, const std::filesystem::path& path);
/// Closes the file, or writes what is still in memory.
void gf_sandboxTraceClose(SandboxTrace& trace);
void gf_sandboxTraceFlush(SandboxTrace& trace);

/// Pieces of a line: the time in seconds since the first session, then names with their values, then the end.
void gf_sandboxTraceBegin(SandboxTrace& trace, f64 seconds);
void gf_sandboxTraceKey(SandboxTrace& trace, std::string_view key);
void gf_sandboxTraceText(SandboxTrace& trace, std::string_view text);
/// At most six decimals; null for what is no number.
void gf_sandboxTraceNumber(SandboxTrace& trace, f64 value);
void gf_sandboxTraceEnd(SandboxTrace& trace);

inline void gf_sandboxTraceFields(SandboxTrace&) {}

template <class Value, class... Rest>
void gf_sandboxTraceFields(SandboxTrace& trace, std::string_view key, const Value& value, const Rest&... rest) {
    gf_sandboxTraceKey(trace, key);
    if constexpr (std::is_same_v<Value, SandboxTraceRaw>) {
        trace.line.append(value.json);
    } else if constexpr (std::is_integral_v<Value>) {
        fmt::format_to(fmt::appender(trace.line), "{}", +value);
    } else if constexpr (std::is_floating_point_v<Value>) {
        gf_sandboxTraceNumber(trace, value);
    } else {
        gf_sandboxTraceText(trace, value);
    }
    gf_sandboxTraceFields(trace, rest...);
}

/// Writes one line: the time, then names and values by turns. Costs nothing without a trace file.
template <class... Fields>
void gf_sandboxTraceLine(SandboxTrace& trace, f64 seconds, const Fields&... fields) {
    if (!trace.on) return;
    gf_sandboxTraceBegin(trace, seconds);
    gf_sandboxTraceFields(trace, fields...);
    gf_sandboxTraceEnd(trace);
}

}  // namespace hcr
