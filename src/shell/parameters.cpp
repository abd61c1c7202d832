#include "shell/parameters.h"

#include <algorithm>

namespace hcr {
namespace {

/// The numbers from first to last in equal steps.
std::vector<i32> lf_steps(i32 first, i32 last, i32 step) {
    std::vector<i32> values;
    for (i32 value = first; value <= last; value += step) values.push_back(value);
    return values;
}

/// All orderings of the names, joined and sorted as texts. No name is the beginning of another, so that the order of
/// the permutations is the order of the texts.
void lf_addOrderings(std::vector<std::string>& texts, std::vector<std::string> names) {
    do {
        std::string text;
        for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
        texts.push_back(text);
    } while (std::next_permutation(names.begin(), names.end()));
}

std::vector<std::string> lf_packageOrderings() {
    const std::vector<std::vector<std::string>> sets{{"AIG", "FSLTL", "JF", "MTL"},
                                                     {"AIG", "FSLTL", "JF"},
                                                     {"AIG", "FSLTL", "MTL"},
                                                     {"AIG", "JF", "MTL"},
                                                     {"FSLTL", "JF", "MTL"},
                                                     {"AIG", "FSLTL"},
                                                     {"AIG", "JF"},
                                                     {"AIG", "MTL"},
                                                     {"FSLTL", "JF"},
                                                     {"FSLTL", "MTL"},
                                                     {"JF", "MTL"},
                                                     {"AIG"},
                                                     {"FSLTL"},
                                                     {"JF"},
                                                     {"MTL"}};
    std::vector<std::string> texts;
    for (const std::vector<std::string>& names : sets) lf_addOrderings(texts, names);
    return texts;
}

}  // namespace

BoolParameter::BoolParameter(std::string parameterName, bool value)
    : Parameter(std::move(parameterName)), defaultValue(value), lower(value), upper(value), current(value) {}

IntParameter::IntParameter(std::string parameterName, i32 value, i32 lowest, i32 highest)
    : Parameter(std::move(parameterName)), defaultValue(value), lower(lowest), upper(highest), current(value) {}

FloatParameter::FloatParameter(std::string parameterName, f32 value, f32 lowest, f32 highest)
    : Parameter(std::move(parameterName)), defaultValue(value), lower(lowest), upper(highest), current(value) {}

std::string SharedText::get() const {
    const std::lock_guard lock(mutex);
    return text;
}

void SharedText::set(std::string_view value) {
    const std::lock_guard lock(mutex);
    text = value;
}

bool SharedText::empty() const {
    const std::lock_guard lock(mutex);
    return text.empty();
}

bool SharedText::equals(std::string_view value) const {
    const std::lock_guard lock(mutex);
    return text == value;
}

StringParameter::StringParameter(std::string parameterName, std::string value)
    : Parameter(std::move(parameterName)), defaultValue(value), lower(value), upper(value), current(std::move(value)) {}

CheckBox::CheckBox(std::string parameterName, bool value, u16 id)
    : BoolParameter(std::move(parameterName), value), ParameterControl(id) {}

NumberChoice::NumberChoice(std::string parameterName, i32 value, std::vector<i32> allowed, u16 id)
    : IntParameter(std::move(parameterName), value, allowed.front(), allowed.back()),
      ParameterControl(id),
      values(std::move(allowed)) {}

FloatChoice::FloatChoice(std::string parameterName, f32 value, std::vector<f32> allowed, u16 id)
    : FloatParameter(std::move(parameterName), value, allowed.front(), allowed.back()),
      ParameterControl(id),
      values(std::move(allowed)) {}

EditField::EditField(std::string parameterName, std::string value, u16 id)
    : StringParameter(std::move(parameterName), std::move(value)), ParameterControl(id) {}

TextChoice::TextChoice(std::string parameterName, std::string value, std::vector<std::string> allowed, u16 id)
    : StringParameter(std::move(parameterName), std::move(value)), ParameterControl(id), values(std::move(allowed)) {}

ButtonControl::ButtonControl(std::string caption, u16 id) : Parameter(std::move(caption)), ParameterControl(id) {}

BoolParameter RANDOM("RANDOM", true);

CheckBox AEROWINX("AEROWINX", false, 32774);
CheckBox LIG_AUTOMATIC("LIG_AUTOMATIC", true, 32799);
CheckBox COLLISION_USER_AIR("COLLISION_USER_AIR", true, 32833);
CheckBox COLLISION_USER_GND("COLLISION_USER_GND", true, 32834);
CheckBox COLLISION_LIVE_PARKED_GND("COLLISION_LIVE_PARKED_GND", false, 32835);
CheckBox ALWAYS_ON_TOP("ALWAYS_ON_TOP", false, 32771);
CheckBox SCAN_LIVERIES("SCAN_LIVERIES", true, 32798);
CheckBox LIG_PRIORITIZE("LIG_PRIORITIZE", true, 32800);
CheckBox AIRBORNE_ONLY("AIRBORNE_ONLY", false, 32821);
CheckBox SCAN_AIRPORTS("SCAN_AIRPORTS", true, 32802);
CheckBox LIGHT_AIRCRAFT("LIGHT_AIRCRAFT", true, 32809);
CheckBox HELICOPTERS("HELICOPTERS", true, 32810);
CheckBox HIGH_PERF_AIRCRAFT("HIGH_PERF_AIRCRAFT", true, 32811);
CheckBox NAV_LIGHTS_WHILE_PARKED("NAV_LIGHTS_WHILE_PARKED", true, 32776);
CheckBox AUTO_RANGE("AUTO_RANGE", true, 32819);
CheckBox STRAIGHT_PBS_ONLY("STRAIGHT_PBS_ONLY", false, 32855);
CheckBox PARK_SOFT("PARK_SOFT", false, 32852);
CheckBox WEEK("WEEK", false, 32853);
CheckBox INITIAL_LOAD_ONLY("INITIAL_LOAD_ONLY", false, 32851);
CheckBox GUID_CHANGES("GUID_CHANGES", true, 32773);

IntParameter CUSTOM_PARKING_PERCENTAGE("CUSTOM_PARKING_PERCENTAGE", -1, -1, 100);
IntParameter MAIN_WINDOW_X("MAIN_WINDOW_X", 400, -30000, 30000);
IntParameter MAIN_WINDOW_Y("MAIN_WINDOW_Y", 20, -30000, 30000);
IntParameter HOLDING_THRESHOLD_METERS("HOLDING_THRESHOLD_METERS", 250, 10, 4000);
IntParameter MAX_HOLDING_MINUTES("MAX_HOLDING_MINUTES", 20, 1, 60);
IntParameter MAX_FIT("MAX_FIT", 47, 0, 47);

NumberChoice MATCHING_DEPTH("MATCHING_DEPTH", 4, {1, 2, 3, 4}, 32808);
NumberChoice RANGE("RANGE", 40, {2, 3, 4, 5, 6, 8, 10, 12, 14, 16, 18, 20, 25, 30, 35, 40, 50, 65, 80, 100}, 32818);
NumberChoice AR_ABOVE_HEIGHT("AR_ABOVE_HEIGHT", 48000, lf_steps(18000, 48000, 3000), 32820);
NumberChoice MAX_PARK_SEL("MAX_PARK_SEL", 500, {0, 10, 25, 50, 75, 100, 500}, 32848);
NumberChoice MAX_LIVE_SEL("MAX_LIVE_SEL", 500, {0, 10, 25, 50, 75, 100, 500}, 32849);
NumberChoice AIRP_RANGE("AIRP_RANGE", 20, {5, 10, 15, 20, 25, 30}, 32840);
NumberChoice AIRP_HEIGHT("AIRP_HEIGHT", 18000,
                         {2000, 4000, 6000, 8000, 10000, 12000, 14000, 16000, 18000, 36000, 48000}, 32841);

StringParameter PROGRAM_VERSION("PROGRAM_VERSION", "");
StringParameter MSFS_INSTALL_PATH("MSFS_INSTALL_PATH", "");
StringParameter PORT_NUMBER("PORT_NUMBER", "10747");
StringParameter lfolder0("lfolder0", ""), lfolder1("lfolder1", ""), lfolder2("lfolder2", ""), lfolder3("lfolder3", ""),
    lfolder4("lfolder4", ""), lfolder5("lfolder5", ""), lfolder6("lfolder6", ""), lfolder7("lfolder7", ""),
    lfolder8("lfolder8", ""), lfolder9("lfolder9", "");
StringParameter AIG_VERSION("AIG_VERSION", "");
StringParameter DBASE_VERSION("DBASE_VERSION", "");
StringParameter AIRPORTS_VERSION("AIRPORTS_VERSION", "");
StringParameter LIV_SCAN_VERSION("LIV_SCAN_VERSION", "");
StringParameter ADDONS_SCAN_VERSION("ADDONS_SCAN_VERSION", "");
StringParameter MYSIMADDON24_VERSION("MYSIMADDON24_VERSION", "");
StringParameter MSFS_2024_INSTALL_PATH("MSFS_2024_INSTALL_PATH", "");

TextChoice AI_PACKAGE_SELECTOR("AI_PACKAGE_SELECTOR", "AIG, FSLTL, JF, MTL", lf_packageOrderings(), 32790);
TextChoice SIM_CHOICE("SIM_CHOICE", "MSFS 2020", {"MSFS 2020", "MSFS 2024"}, 32789);
TextChoice CALLSIGN_2_OBJECTID("CALLSIGN_2_OBJECTID", "", {}, 32831);
EditField DESTINATION("DESTINATION", "", 32839);
EditField BLOCK_CALLSIGN("BLOCK_CALLSIGN", "", 32828);
EditField ALL_INSTALL_PATH("ALL_INSTALL_PATH", "", 32788);

NumberChoice parking_percentage("parking_percentage", 30, lf_steps(0, 100, 5), 32850);
FloatChoice MAX_FIT_FL("MAX_FIT_FL", 24.0F,
                       {0.5F, 1, 1.5F, 2, 2.5F, 3, 3.5F, 4, 4.5F, 5, 6, 7, 8, 9, 10, 12, 15, 18, 21, 24}, 32854);

ButtonControl gTbloButton("tblo", 32804);
ButtonControl gUnblockButton("Unblock", 32829);
ButtonControl gCallsignListButton("cs->oid:", 32830);
ButtonControl gBlockButton("Block", 32832);
ButtonControl gReReadButton("Re-read", 32838);
ButtonControl gNowButton("Now", 32847);
ButtonControl gFlushStaticButton("Flush static", 32857);

const ParameterLists& gf_parameterLists() {
    static const ParameterLists lists{
        {&RANDOM},
        {&AEROWINX,
         &LIG_AUTOMATIC,
         &COLLISION_USER_AIR,
         &COLLISION_USER_GND,
         &COLLISION_LIVE_PARKED_GND,
         &ALWAYS_ON_TOP,
         &SCAN_LIVERIES,
         &LIG_PRIORITIZE,
         &AIRBORNE_ONLY,
         &SCAN_AIRPORTS,
         &LIGHT_AIRCRAFT,
         &HELICOPTERS,
         &HIGH_PERF_AIRCRAFT,
         &NAV_LIGHTS_WHILE_PARKED,
         &AUTO_RANGE,
         &STRAIGHT_PBS_ONLY,
         &PARK_SOFT,
         &WEEK,
         &INITIAL_LOAD_ONLY,
         &GUID_CHANGES},
        {&CUSTOM_PARKING_PERCENTAGE, &MAIN_WINDOW_X, &MAIN_WINDOW_Y, &HOLDING_THRESHOLD_METERS, &MAX_HOLDING_MINUTES,
         &MAX_FIT},
        {&MATCHING_DEPTH, &RANGE, &AR_ABOVE_HEIGHT, &MAX_PARK_SEL, &MAX_LIVE_SEL, &AIRP_RANGE, &AIRP_HEIGHT},
        {&PROGRAM_VERSION,
         &MSFS_INSTALL_PATH,
         &PORT_NUMBER,
         &lfolder0,
         &lfolder1,
         &lfolder2,
         &lfolder3,
         &lfolder4,
         &lfolder5,
         &lfolder6,
         &lfolder7,
         &lfolder8,
         &lfolder9,
         &AIG_VERSION,
         &DBASE_VERSION,
         &AIRPORTS_VERSION,
         &LIV_SCAN_VERSION,
         &ADDONS_SCAN_VERSION,
         &MYSIMADDON24_VERSION,
         &MSFS_2024_INSTALL_PATH,
         &AI_PACKAGE_SELECTOR,
         &DESTINATION},
        {&BLOCK_CALLSIGN, &SIM_CHOICE}};
    return lists;
}

void gf_resetParameters() {
    const ParameterLists& lists = gf_parameterLists();
    for (BoolParameter* p : lists.bools) p->current = p->defaultValue;
    for (CheckBox* p : lists.checkBoxes) p->current = p->defaultValue;
    for (IntParameter* p : lists.ints) p->current = p->defaultValue;
    for (NumberChoice* p : lists.numberChoices) p->current = p->defaultValue;
    PROGRAM_VERSION.defaultValue.clear();  // a saved set of defaults carries the program's version
    for (StringParameter* p : lists.strings) p->current.set(p->defaultValue);
    for (StringParameter* p : lists.shownStrings) p->current.set(p->defaultValue);
    parking_percentage.current = parking_percentage.defaultValue;
    MAX_FIT_FL.current = MAX_FIT_FL.defaultValue;
    ALL_INSTALL_PATH.current.set(ALL_INSTALL_PATH.defaultValue);
    CALLSIGN_2_OBJECTID.current.set(CALLSIGN_2_OBJECTID.defaultValue);
}

bool gf_sim2024Chosen() {
    return SIM_CHOICE.current.equals("MSFS 2024");
}

}  // namespace hcr
