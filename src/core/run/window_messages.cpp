#include "core/run/window_messages.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace hcr {
namespace {

struct MessageQueue {
    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<WindowMessage> messages;
};
MessageQueue gMessages;

}  // namespace

void gf_postToWindow(WindowMessage message) {
    const std::lock_guard lock(gMessages.mutex);
    gMessages.messages.push_back(message);
    gMessages.arrived.notify_one();
}

WindowMessage gf_takeWindowMessage(i64 milliseconds) {
    std::unique_lock lock(gMessages.mutex);
    gMessages.arrived.wait_for(lock, std::chrono::milliseconds(milliseconds),
                               [] { return !gMessages.messages.empty(); });
    if (gMessages.messages.empty()) return WindowMessage::none;
    const WindowMessage message = gMessages.messages.front();
    gMessages.messages.pop_front();
    return message;
}

void gf_forgetWindowMessages() {
    const std::lock_guard lock(gMessages.mutex);
    gMessages.messages = {};
}

}  // namespace hcr
