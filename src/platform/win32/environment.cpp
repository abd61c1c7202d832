#include "platform/environment.h"

#include "platform/win32/wide_text.h"
#include "platform/win32/windows_header.h"

namespace hcr {

std::string gf_environmentText(const char* name) {
    const std::wstring wideName(name, name + std::char_traits<char>::length(name));
    std::wstring value(GetEnvironmentVariableW(wideName.c_str(), nullptr, 0), L'\0');
    const DWORD length = GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size()));
    value.resize(length < value.size() ? length : 0);  // not below: it was changed in between
    return gf_systemWideToUtf8(value).value_or("");
}

}  // namespace hcr
