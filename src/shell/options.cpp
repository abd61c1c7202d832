#include "shell/options.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <stdexcept>

#include "shell/text.h"

namespace hcr {
namespace {

constexpr std::size_t kHelpColumn = 34;

template <typename Number>
std::optional<f64> lf_wholeText(std::string_view text) {
    Number value{};
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (fault != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return static_cast<f64>(value);
}

// The library's own reading takes leading blanks, octal numbers and "nan".
std::optional<f64> lf_number(std::string_view text, const NumberBounds& bounds) {
    const std::optional<f64> value = bounds.whole ? lf_wholeText<i64>(text) : lf_wholeText<f64>(text);
    const bool good = value && std::isfinite(*value) && *value >= bounds.low && *value <= bounds.high;
    return good ? value : std::nullopt;
}

// The library tells of a missing command or file before it tells of the word that was meant to be one.
std::string lf_faultText(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> unknown = app.remaining(true);
    if (!unknown.empty()) return fmt::format("unknown argument '{}'", unknown.front());
    const std::string text = error.what();
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) == nullptr) return text;
    return text.substr(0, text.find(':')) + " needs a value";
}

}  // namespace

std::string gf_numberFault(std::string_view text, const NumberBounds& bounds) {
    if (lf_number(text, bounds)) return {};
    return fmt::format("'{}' is no number from {} to {}", text, bounds.low, bounds.high);
}

f64 gf_boundedNumber(std::string_view name, std::string_view text, const NumberBounds& bounds) {
    const std::optional<f64> number = lf_number(text, bounds);
    if (!number) throw std::runtime_error(fmt::format("{}: {}", name, gf_numberFault(text, bounds)));
    return *number;
}

void gf_prepareOptions(CLI::App& app) {
    app.allow_windows_style_options(false);  // a path may begin with a slash on every system
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.get_formatter()->column_width(kHelpColumn);
    app.set_help_flag("-h,--help", "this text");
}

CLI::Option* gf_addText(CLI::App& app, const std::string& name, const std::string& kind, const std::string& about,
                        std::function<void(const std::string&)> take) {
    const auto takeLast = [take = std::move(take)](const CLI::results_t& values) {
        take(values.back());
        return true;
    };
    return app.add_option(name, takeLast, about)->type_name(kind);
}

CLI::Option* gf_addList(CLI::App& app, const std::string& name, const std::string& kind, const std::string& about,
                        std::function<void(const std::string&)> takeOne) {
    const auto takeAll = [takeOne = std::move(takeOne)](const CLI::results_t& values) {
        for (const std::string& value : values) takeOne(value);
        return true;
    };
    return app.add_option(name, takeAll, about)->type_name(kind)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

CLI::Option* gf_addPath(CLI::App& app, const std::string& name, const std::string& kind, const std::string& about,
                        std::filesystem::path& target) {
    return gf_addText(app, name, kind, about, [&target](const std::string& text) { target = gf_pathFromUtf8(text); });
}

CLI::Option* gf_addNumber(CLI::App& app, const std::string& name, const std::string& kind, const std::string& about,
                          const NumberBounds& bounds, std::function<void(f64)> take) {
    return gf_addText(app, name, kind, about,
                      [bounds, take = std::move(take)](const std::string& text) { take(*lf_number(text, bounds)); })
        ->check([bounds](const std::string& text) { return gf_numberFault(text, bounds); });
}

std::string gf_parseOptions(CLI::App& app, const std::vector<std::string>& arguments) {
    const auto asksForHelp = [&app](const std::string& argument) { return app.get_help_ptr()->check_name(argument); };
    const bool help = std::ranges::any_of(arguments, asksForHelp);
    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        // Who doesn't get the rest right needs the help most.
        if (!help) throw std::runtime_error(lf_faultText(app, error));
    }
    return help ? app.help() : std::string{};
}

}  // namespace hcr
