#pragma once

#include <atomic>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace hcr {

/// A failure that the user caused or must act on. what() is "{}: {}" of code and text.
class UserErrorException : public std::runtime_error {
public:
    UserErrorException(i32 code, const std::string& text);
};

// The message line and the error line; any thread.

/// Shows `text` in the message line unless an error stands there; an empty text clears the line. With `alsoLog` a text
/// is logged as well, unless a stop is under way.
void gf_showMessage(std::string_view text, bool alsoLog);
void gf_clearMessage();
/// Shows `text` in the error line, which only a reset of the run or a new install path clears. Marked in the log,
/// unless a stop is under way.
void gf_showError(std::string_view text);

/// True while the program's face has no window; the face sets it before its first run.
extern std::atomic<bool> gNoWindow;
/// For a text that sends the user to a control of the window: where there is none, the other way is added.
std::string gf_withAdvice(std::string_view text, std::string_view withoutWindow);

}  // namespace hcr
