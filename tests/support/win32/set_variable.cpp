#include "platform/win32/wide_text.h"
#include "platform/win32/windows_header.h"
#include "tests/support/environment.h"

namespace hcr::test {

void setVariable(const char* name, const char* value) {
    const std::wstring wideName = gf_systemUtf8ToWide(name).value();
    const std::wstring wideValue = gf_systemUtf8ToWide(value != nullptr ? value : "").value();
    SetEnvironmentVariableW(wideName.c_str(), value != nullptr ? wideValue.c_str() : nullptr);
}

}  // namespace hcr::test
