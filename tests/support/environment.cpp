#include "tests/support/environment.h"

#include <algorithm>

#include "platform/environment.h"
#include "shell/text.h"

namespace hcr::test {

Variable::Variable(const char* variable, const char* value) : name(variable) {
    const std::optional<std::string> old = gf_environment(variable);
    wasSet = old.has_value();
    before = old.value_or("");
    setVariable(variable, value);
}

Variable::~Variable() {
    setVariable(name.c_str(), wasSet ? before.c_str() : nullptr);
}

std::filesystem::path demoData(const std::string& name) {
    const std::string source = gf_environment("HALCYRANE_SOURCE_DIR").value_or(HALCYRANE_SOURCE_DIR);
    return gf_pathFromUtf8(source) / "demo-data" / name;
}

std::string slashed(std::string text) {
    const char separator = static_cast<char>(std::filesystem::path::preferred_separator);
    std::replace(text.begin(), text.end(), separator, '/');
    return text;
}

std::string fileUrl(const std::filesystem::path& path) {
    const std::u8string text = std::filesystem::absolute(path).generic_u8string();
    const std::string whole(text.begin(), text.end());
    return (whole.starts_with('/') ? "file://" : "file:///") + whole;
}

}  // namespace hcr::test
