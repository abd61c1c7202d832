#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/types.h"

// Its header costs seconds; only the file that describes a program's options includes it.
namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace hcr {

// What the command lines of all programs have in common. Before the run, on the main thread.

struct NumberBounds {
    f64 low = 0, high = 0;
    bool whole = false;  ///< no decimals
};

/// What is wrong with a text that should be such a number, all of it; empty for nothing.
std::string gf_numberFault(std::string_view text, const NumberBounds& bounds);
/// The number; throws std::runtime_error with gf_numberFault behind "name: ".
f64 gf_boundedNumber(std::string_view name, std::string_view text, const NumberBounds& bounds);

/// An option is asked for help, and of the same option given twice the last one counts.
void gf_prepareOptions(CLI::App& app);

CLI::Option* gf_addText(CLI::App& app, const std::string& name, const std::string& kind, const std::string& about,
                        std::function<void(const std::string&)> take);
/// Can be given again and again.
CLI::Option* gf_addList(CLI::App& app, const std::string& name, const std::string& kind, const std::string& about,
                        std::function<void(const std::string&)> takeOne);
/// UTF-8 in, whatever the system's code page.
CLI::Option* gf_addPath(CLI::App& app, const std::string& name, const std::string& kind, const std::string& about,
                        std::filesystem::path& target);
CLI::Option* gf_addNumber(CLI::App& app, const std::string& name, const std::string& kind, const std::string& about,
                          const NumberBounds& bounds, std::function<void(f64)> take);

template <typename Number>
CLI::Option* gf_addNumber(CLI::App& app, const std::string& name, const std::string& kind, const std::string& about,
                          f64 low, f64 high, Number& target) {
    return gf_addNumber(app, name, kind, about, NumberBounds{low, high, std::is_integral_v<Number>},
                        [&target](f64 number) { target = static_cast<Number>(number); });
}

/// Reads the arguments, UTF-8, into what the options were given. The help text of the program or of its command where
/// it is asked for, which goes before all faults, else empty. Throws std::runtime_error with a text for the user.
std::string gf_parseOptions(CLI::App& app, const std::vector<std::string>& arguments);

}  // namespace hcr
