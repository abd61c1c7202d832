#include "feed/qnh_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>

#include "core/model/run_state.h"
#include "feed/traffic_reader.h"
#include "shell/log.h"
#include "shell/text.h"
#include "shell/window_state.h"

namespace hcr {
namespace {

constexpr f64 kLowestQnh = 900, kHighestQnh = 1100;  // hPa
constexpr f64 kHectopascalsPerHundredthInch = 0.33865307;

// A text that is a decimal integer and nothing else.
std::optional<f64> lf_integer(const std::string& text) {
    i64 value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return {};
    return static_cast<f64>(value);
}

// The pressure as sent, in hectopascals or hundredths of inches; nothing when there is none, which is logged.
std::optional<f64> lf_sentQnh(const nlohmann::json& report, std::string_view datagram) {
    const auto found = report.is_object() ? report.find("QNH") : report.end();
    if (found != report.end()) {
        if (found->is_number_integer()) return found->get<f64>();
        if (found->is_number_float()) return std::round(found->get<f64>());
        if (found->is_string()) {
            const std::string& text = found->get_ref<const std::string&>();
            const std::optional<f64> value = lf_integer(text);
            if (!value && gf_mayLog(LogKind::qnhText)) {
                gf_logError(fmt::format("QNH string parse error: {} in {}", gf_quoted(text), gf_quoted(datagram)));
            }
            return value;
        }
    }
    if (gf_mayLog(LogKind::noQnh)) gf_log(fmt::format("no QNH {}", gf_quoted(datagram)));
    return {};
}

i32 lf_hectopascals(f64 sent) {
    const f64 value = sent > kHighestQnh ? std::round(sent * kHectopascalsPerHundredthInch) : sent;
    return static_cast<i32>(std::clamp(value, kLowestQnh, kHighestQnh));
}

void lf_takeQnh(QnhReader& reader, i32 qnh) {
    if (qnh == reader.lastQnh && qnh != kStandardQnh) return;
    reader.lastQnh = qnh;
    gTrafficReader.qnh = qnh;
    gQnh.exchange(qnh);
    gWindow.qnh = qnh;
    i32 silent = kLampSilent;
    gWindow.weatherLamp.compare_exchange_strong(silent, kLampReceiving);
    gf_repaint(Band::realTraffic);
}

}  // namespace

QnhReader gQnhReader;

void QnhReader::handleText() {
    try {
        const nlohmann::json report = nlohmann::json::parse(text);
        if (const std::optional<f64> sent = lf_sentQnh(report, text)) lf_takeQnh(*this, lf_hectopascals(*sent));
    } catch (const std::exception& e) {
        if (!gf_mayLog(LogKind::qnhReport)) return;
        gf_log(fmt::format("Exception {}, in {}", gf_quoted(e.what()), gf_quoted(text)));
    }
}

void QnhReader::onStopped() {
    gf_log("QNH Reader has stopped");
}

}  // namespace hcr
