#include "platform/environment.h"

#include "platform/win32/wide_text.h"
#include "platform/win32/windows_header.h"

namespace hcr {

std::optional<std::string> gf_environment(const char* name) {
    const std::wstring wideName(name, name + std::char_traits<char>::length(name));
    std::wstring value(GetEnvironmentVariableW(wideName.c_str(), nullptr, 0), L'\0');
    if (value.empty()) return std::nullopt;
    const DWORD length = GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size()));
    if (length >= value.size()) return std::nullopt;  // it was changed in between
    value.resize(length);
    return gf_systemWideToUtf8(value);
}

}  // namespace hcr
