#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hcr {

// The settings for people: what each one means, which values it takes, and changing them without a window.

/// What is wrong with a text NAME=VALUE: no such setting, or a value that it doesn't take. Empty when it is good.
std::string gf_settingFault(std::string_view assignment);
/// Takes good texts NAME=VALUE over, the later of two for one name, and stores them in parameters.xml, which must have
/// been read. False when that can't be done, which is told; the values are in force all the same.
bool gf_storeSettings(const std::vector<std::string>& assignments);
/// All settings with value, meaning and bounds, for the console.
std::string gf_settingsText();

/// How a setting is put right without a window: "set NAME in FILE, or start with --set NAME=...".
std::string gf_settingAdvice(std::string_view name, std::string_view value);

}  // namespace hcr
