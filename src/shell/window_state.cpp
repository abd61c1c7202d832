#include "shell/window_state.h"

#include <fmt/format.h>

#include <cmath>

namespace hcr {
namespace {

constexpr i32 kQualityWithSoft = 45;  // below so many real data the soft ones are worth telling

std::atomic<u64> gRepaints{0};

}  // namespace

WindowState gWindow;

std::string WindowText::get() const {
    const std::lock_guard lock(mutex);
    return text;
}

void WindowText::set(std::string_view value) {
    const std::lock_guard lock(mutex);
    text = value;
}

WindowText& WindowText::operator=(const WindowText& other) {
    set(other.get());
    return *this;
}

void gf_resetWindowState() {
    {
        const std::lock_guard lock(gWindow.mutex);
        static_cast<WindowRun&>(gWindow) = {};
    }
    gf_repaint(Band::whole);
}

void gf_forgetWindowState() {
    static_cast<WindowKept&>(gWindow) = {};
}

void gf_repaint(Band) {
    ++gRepaints;
}

u64 gf_repaintCount() {
    return gRepaints;
}

std::string gf_qualityText(i32 real, i32 soft) {
    if (real < 0 && soft < 0) return "  ";
    if (real < kQualityWithSoft) return fmt::format("{:2}/{:2}", real, soft);
    return fmt::format("{:2}", real);
}

std::string gf_hoursText(f32 hours) {
    return std::trunc(hours) == hours ? fmt::format("{:.0f}", hours) : fmt::format("{:.1f}", hours);
}

std::string gf_currentMessage() {
    const std::lock_guard lock(gWindow.mutex);
    return gWindow.fatalMessage.empty() ? gWindow.message : gWindow.fatalMessage;
}

}  // namespace hcr
