#include "shell/settings.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "shell/file_names.h"
#include "shell/parameter_file.h"
#include "shell/parameters.h"
#include "shell/text.h"

namespace hcr {
namespace {

/// What the text of a setting must be.
enum class TextKind { any, port, version };

struct SettingInfo {
    std::string_view name;
    std::string_view meaning;
    TextKind kind = TextKind::any;
};

constexpr std::array kSettings{
    SettingInfo{"RANDOM", "chance in the choice of liveries; off, the same traffic looks the same again"},
    SettingInfo{"AEROWINX", "run for the Aerowinx PSX simulator: RealTraffic isn't waited for"},
    SettingInfo{"LIG_AUTOMATIC", "the livery scan looks for AI packages by itself; off, it takes lfolder0 to lfolder9"},
    SettingInfo{"COLLISION_USER_AIR", "traffic keeps clear of your aircraft in the air"},
    SettingInfo{"COLLISION_USER_GND", "traffic keeps clear of your aircraft on the ground"},
    SettingInfo{"COLLISION_LIVE_PARKED_GND", "live aircraft keep clear of parked ones"},
    SettingInfo{"ALWAYS_ON_TOP", "the main window stays above others"},
    SettingInfo{"SCAN_LIVERIES", "scan the installed liveries at the next start; goes off behind a scan"},
    SettingInfo{"LIG_PRIORITIZE", "a package with liveries for an airline and type keeps later ones from adding more"},
    SettingInfo{"AIRBORNE_ONLY", "only traffic above 300 ft over the ground"},
    SettingInfo{"SCAN_AIRPORTS", "scan the add-on airports at the next start; goes off behind a scan"},
    SettingInfo{"LIGHT_AIRCRAFT", "show light aircraft"},
    SettingInfo{"HELICOPTERS", "show helicopters"},
    SettingInfo{"HIGH_PERF_AIRCRAFT", "show high performance aircraft"},
    SettingInfo{"NAV_LIGHTS_WHILE_PARKED", "navigation lights of parked aircraft are on"},
    SettingInfo{"AUTO_RANGE", "the radius of traffic follows your height"},
    SettingInfo{"STRAIGHT_PBS_ONLY", "push backs go straight only"},
    SettingInfo{"PARK_SOFT", "static parking uses stands that are known less surely, too"},
    SettingInfo{"WEEK", "static parking uses what was learned for each day of the week"},
    SettingInfo{"INITIAL_LOAD_ONLY", "static parking is made once and not renewed every 20 minutes"},
    SettingInfo{"GUID_CHANGES", "live aircraft may change their livery when more is known about them"},
    SettingInfo{"CUSTOM_PARKING_PERCENTAGE", "takes the place of the percentage of occupied stands; -1 for none"},
    SettingInfo{"MAIN_WINDOW_X", "position of the main window, pixels"},
    SettingInfo{"MAIN_WINDOW_Y", "position of the main window, pixels"},
    SettingInfo{"HOLDING_THRESHOLD_METERS", "a holding aircraft further than this from its last report leaves, metres"},
    SettingInfo{"MAX_HOLDING_MINUTES", "longest time that an aircraft may hold, minutes"},
    SettingInfo{"MAX_FIT", "maximum fit of a stand, in half-hour steps"},
    SettingInfo{"MATCHING_DEPTH", "how far from the right livery the matching may go"},
    SettingInfo{"RANGE", "radius of traffic around you, nautical miles"},
    SettingInfo{"AR_ABOVE_HEIGHT", "height from which the automatic radius is at its largest, feet"},
    SettingInfo{"MAX_PARK_SEL", "most parked aircraft"},
    SettingInfo{"MAX_LIVE_SEL", "most live aircraft, parked ones included"},
    SettingInfo{"AIRP_RANGE", "how far the airport of the static parking may be, nautical miles"},
    SettingInfo{"AIRP_HEIGHT", "how high above it you may be, feet"},
    SettingInfo{"PROGRAM_VERSION", "the version that wrote the file last; kept by the program", TextKind::version},
    SettingInfo{"MSFS_INSTALL_PATH", "package folder of MSFS 2020, the one that holds Community"},
    SettingInfo{"PORT_NUMBER", "TCP port at which RealTraffic on this computer connects", TextKind::port},
    SettingInfo{"lfolder0", "first folder of liveries to scan when LIG_AUTOMATIC is off"},
    SettingInfo{"lfolder1", "second one"},
    SettingInfo{"lfolder2", "third one"},
    SettingInfo{"lfolder3", "fourth one"},
    SettingInfo{"lfolder4", "fifth one"},
    SettingInfo{"lfolder5", "sixth one"},
    SettingInfo{"lfolder6", "seventh one"},
    SettingInfo{"lfolder7", "eighth one"},
    SettingInfo{"lfolder8", "ninth one"},
    SettingInfo{"lfolder9", "tenth one"},
    SettingInfo{"AIG_VERSION", "version of AIG-regcodes.enc; kept by the program", TextKind::version},
    SettingInfo{"DBASE_VERSION", "version of dbase.enc; kept by the program", TextKind::version},
    SettingInfo{"AIRPORTS_VERSION", "version of airports.enc; kept by the program", TextKind::version},
    SettingInfo{"LIV_SCAN_VERSION", "version of the last livery scan; kept by the program", TextKind::version},
    SettingInfo{"ADDONS_SCAN_VERSION", "version of the last airport scan; kept by the program", TextKind::version},
    SettingInfo{"MYSIMADDON24_VERSION", "version of the link files of MSFS 2024; kept by the program",
                TextKind::version},
    SettingInfo{"MSFS_2024_INSTALL_PATH", "package folder of MSFS 2024, the one that holds Community"},
    SettingInfo{"AI_PACKAGE_SELECTOR", "AI packages that take part in the livery scan, the most wanted first"},
    SettingInfo{"DESTINATION", "destination airport of the static parking; emptied at the end of a run"},
    SettingInfo{"BLOCK_CALLSIGN", "callsign of a live aircraft that is kept away; emptied at the end of a run"},
    SettingInfo{"SIM_CHOICE", "the simulator"},
};

constexpr std::size_t kMostShownValues = 30;  // the orderings of the AI packages fill a screen

const SettingInfo* lf_infoOf(std::string_view name) {
    const auto found = std::ranges::find(kSettings, name, &SettingInfo::name);
    return found == kSettings.end() ? nullptr : &*found;
}

/// Calls `visit` with every parameter of the file, in its order.
template <typename Visit>
void lf_visitAll(Visit visit) {
    const ParameterLists& lists = gf_parameterLists();
    for (BoolParameter* p : lists.bools) visit(*p);
    for (CheckBox* p : lists.checkBoxes) visit(static_cast<BoolParameter&>(*p));
    for (IntParameter* p : lists.ints) visit(*p);
    for (NumberChoice* p : lists.numberChoices) visit(static_cast<IntParameter&>(*p));
    for (StringParameter* p : lists.strings) visit(*p);
    for (StringParameter* p : lists.shownStrings) visit(*p);
}

// Bounds as people read them.

std::string lf_boundsText(const BoolParameter&) {
    return "true or false";
}

std::string lf_boundsText(const IntParameter& p) {
    return fmt::format("a number from {} to {}", p.lower, p.upper);
}

std::string lf_boundsText(const StringParameter& p) {
    if (const auto* choice = dynamic_cast<const TextChoice*>(&p)) {
        if (choice->values.size() > kMostShownValues) return "one or more of \"AIG, FSLTL, JF, MTL\" in any order";
        return fmt::format("\"{}\"", fmt::join(choice->values, "\" or \""));
    }
    const SettingInfo* info = lf_infoOf(p.name);
    if (info != nullptr && info->kind == TextKind::port) return "a number from 1 to 65535";
    if (info != nullptr && info->kind == TextKind::version) return "a version such as 11.10.5, or nothing";
    return "any text";
}

// Each reads its kind of value; nothing when the text is none.

std::optional<bool> lf_read(const BoolParameter&, std::string_view text) {
    const std::string word = gf_upper(text);
    if (word == "TRUE" || word == "ON" || word == "YES" || word == "1") return true;
    if (word == "FALSE" || word == "OFF" || word == "NO" || word == "0") return false;
    return std::nullopt;
}

std::optional<i32> lf_number(std::string_view text, i32 lowest, i32 highest) {
    i32 value = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (fault != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return value < lowest || value > highest ? std::nullopt : std::optional(value);
}

std::optional<i32> lf_read(const IntParameter& p, std::string_view text) {
    return lf_number(text, p.lower, p.upper);
}

bool lf_isVersion(std::string_view text) {
    const std::vector<std::string_view> numbers = gf_split(text, '.');
    constexpr i32 kHighest = 2147483647;
    return numbers.size() == 3 && std::ranges::all_of(numbers, [](std::string_view number) {
               return lf_number(number, 0, kHighest).has_value();
           });
}

bool lf_isOfKind(const StringParameter& p, std::string_view text) {
    constexpr i32 kHighestPort = 65535;
    if (const auto* choice = dynamic_cast<const TextChoice*>(&p)) {
        return std::ranges::find(choice->values, text) != choice->values.end();
    }
    const SettingInfo* info = lf_infoOf(p.name);
    const TextKind kind = info != nullptr ? info->kind : TextKind::any;
    if (kind == TextKind::port) return lf_number(text, 1, kHighestPort).has_value();
    if (kind == TextKind::version) return text.empty() || lf_isVersion(text);
    return gf_isUtf8(text) && std::ranges::none_of(text, [](char c) { return static_cast<u8>(c) < ' '; });
}

std::optional<std::string> lf_read(const StringParameter& p, std::string_view text) {
    return lf_isOfKind(p, text) ? std::optional<std::string>(text) : std::nullopt;
}

void lf_take(BoolParameter& p, bool value) {
    p.current = value;
}

void lf_take(IntParameter& p, i32 value) {
    p.current = value;
}

void lf_take(StringParameter& p, const std::string& value) {
    p.current.set(value);
}

struct Assignment {
    std::string name;  ///< in capitals, as names are compared
    std::string_view value;
    bool hasValue = false;
};

Assignment lf_parts(std::string_view text) {
    const std::size_t equals = text.find('=');
    const bool hasValue = equals != std::string_view::npos;
    return {gf_upper(gf_trim(text.substr(0, equals))), hasValue ? gf_trim(text.substr(equals + 1)) : "", hasValue};
}

std::string lf_valueText(const BoolParameter& p) {
    return p.current ? "true" : "false";
}

std::string lf_valueText(const IntParameter& p) {
    return std::to_string(p.current);
}

std::string lf_valueText(const StringParameter& p) {
    return "\"" + p.current.get() + "\"";
}

}  // namespace

std::string gf_settingFault(std::string_view text) {
    const Assignment given = lf_parts(text);
    if (!given.hasValue || given.name.empty()) return fmt::format("'{}' isn't NAME=VALUE", text);
    bool known = false;
    std::string fault;
    lf_visitAll([&](const auto& parameter) {
        if (gf_upper(parameter.name) != given.name) return;
        known = true;
        if (lf_read(parameter, given.value)) return;
        fault = fmt::format("{} takes {}, not '{}'", parameter.name, lf_boundsText(parameter), given.value);
    });
    return known ? fault : fmt::format("there is no setting '{}'; --settings shows them all", given.name);
}

bool gf_storeSettings(const std::vector<std::string>& assignments) {
    bool stored = true;
    for (const std::string& text : assignments) {
        const Assignment given = lf_parts(text);
        lf_visitAll([&](auto& parameter) {
            if (gf_upper(parameter.name) != given.name) return;
            const auto value = lf_read(parameter, given.value);
            if (!value) return;
            lf_take(parameter, *value);
            stored = gf_storeParameter(parameter) && stored;
        });
    }
    return stored;
}

std::string gf_settingsText() {
    std::string text = fmt::format("Settings in {}\n", gf_shownPath(gFiles().settings));
    lf_visitAll([&](const auto& parameter) {
        const SettingInfo* info = lf_infoOf(parameter.name);
        text += fmt::format("\n  {} = {}\n      {}; {}\n", parameter.name, lf_valueText(parameter),
                            info != nullptr ? info->meaning : "", lf_boundsText(parameter));
    });
    return text;
}

std::string gf_settingAdvice(std::string_view name, std::string_view value) {
    const std::string quoted = value.find(' ') == std::string_view::npos ? fmt::format("{}={}", name, value)
                                                                         : fmt::format("\"{}={}\"", name, value);
    return fmt::format("set {} in {}, or start with --set {}", name, gf_shownPath(gFiles().settings), quoted);
}

}  // namespace hcr
