#include "shell/messages.h"

#include <fmt/format.h>

#include <algorithm>
#include <mutex>

#include "shell/log.h"
#include "shell/run_stop.h"
#include "shell/window_state.h"

namespace hcr {

std::atomic<bool> gNoWindow{false};

UserErrorException::UserErrorException(i32 code, const std::string& text)
    : std::runtime_error(fmt::format("{}: {}", code, text)) {}

void gf_showMessage(std::string_view text, bool alsoLog) {
    {
        const std::lock_guard lock(gWindow.mutex);
        if (!gWindow.fatalMessage.empty()) return;
        gWindow.message = text;
        gWindow.messageShownAt = text.empty() ? 0 : std::max(gWindow.secondsCounter.load(), 1);
        if (alsoLog && !text.empty()) gf_logIfRunning(text);
    }
    gf_repaint(Band::message);
}

std::string gf_withAdvice(std::string_view text, std::string_view withoutWindow) {
    return gNoWindow ? fmt::format("{}. There is no window here: {}", text, withoutWindow) : std::string(text);
}

void gf_clearMessage() {
    gf_showMessage("", true);
}

void gf_showError(std::string_view text) {
    {
        const std::lock_guard lock(gWindow.mutex);
        gWindow.message.clear();
        gWindow.messageShownAt = 0;
        gWindow.fatalMessage = text;
        if (!gf_stopAsked()) gf_logError(fmt::format("Error {}", text));
    }
    gf_repaint(Band::message);
}

}  // namespace hcr
