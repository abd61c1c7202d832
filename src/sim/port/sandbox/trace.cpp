#include "sim/port/sandbox/trace.h"

#include <cmath>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "shell/text.h"

namespace hcr {

void gf_sandboxTraceOpen(SandboxTrace& trace, const std::filesystem::path& path) {
    trace.file.open(path, std::ios::binary | std::ios::trunc);
    if (!trace.file) {
        throw std::runtime_error(fmt::format("Can't write the trace file {}", gf_pathToUtf8(path)));
    }
    trace.on = true;
}

void gf_sandboxTraceClose(SandboxTrace& trace) {
    trace.on = false;
    if (trace.file.is_open()) trace.file.close();
    trace.file.clear();
}

void gf_sandboxTraceFlush(SandboxTrace& trace) {
    if (trace.on) trace.file.flush();
}

void gf_sandboxTraceBegin(SandboxTrace& trace, f64 seconds) {
    trace.line.clear();
    fmt::format_to(fmt::appender(trace.line), "{{\"t\":{:.3f}", seconds);
}

void gf_sandboxTraceKey(SandboxTrace& trace, std::string_view key) {
    fmt::format_to(fmt::appender(trace.line), ",\"{}\":", key);
}

void gf_sandboxTraceText(SandboxTrace& trace, std::string_view text) {
    using nlohmann::json;
    trace.line.append(json(text).dump(-1, ' ', false, json::error_handler_t::replace));
}

void gf_sandboxTraceNumber(SandboxTrace& trace, f64 value) {
    if (!std::isfinite(value)) {
        trace.line.append(std::string_view("null"));
        return;
    }
    fmt::format_to(fmt::appender(trace.line), "{:.6f}", value);
    std::size_t size = trace.line.size();
    while (trace.line[size - 1] == '0') --size;
    if (trace.line[size - 1] == '.') --size;
    trace.line.resize(size);
}

void gf_sandboxTraceEnd(SandboxTrace& trace) {
    trace.line.append(std::string_view("}\n"));
    trace.file.write(trace.line.data(), static_cast<std::streamsize>(trace.line.size()));
}

}  // namespace hcr
