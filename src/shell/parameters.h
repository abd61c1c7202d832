#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace hcr {

// The settings. Each is one global object that lives as long as the process and is never copied. `current` may be
// read by any thread; every change by the user goes through gf_storeParameter (parameter_file.h).

/// What all settings have.
struct Parameter {
    explicit Parameter(std::string parameterName) : name(std::move(parameterName)) {}
    virtual ~Parameter() = default;
    Parameter(const Parameter&) = delete;
    Parameter& operator=(const Parameter&) = delete;

    std::string name;  ///< as it stands in the file
};

/// A switch.
struct BoolParameter : Parameter {
    BoolParameter(std::string parameterName, bool value);
    bool defaultValue, lower, upper;
    std::atomic<bool> current;
};

/// A whole number within limits.
struct IntParameter : Parameter {
    IntParameter(std::string parameterName, i32 value, i32 lowest, i32 highest);
    i32 defaultValue, lower, upper;
    std::atomic<i32> current;
};

/// A number within limits.
struct FloatParameter : Parameter {
    FloatParameter(std::string parameterName, f32 value, f32 lowest, f32 highest);
    f32 defaultValue, lower, upper;
    std::atomic<f32> current;
};

/// A text that one thread may change while another reads it; readers get a whole copy.
struct SharedText {
    SharedText(std::string value) : text(std::move(value)) {}  // NOLINT: a text like any other
    std::string get() const;
    void set(std::string_view value);
    bool empty() const;
    bool equals(std::string_view value) const;

    mutable std::mutex mutex;
    std::string text;  ///< through the functions only
};

/// A text.
struct StringParameter : Parameter {
    StringParameter(std::string parameterName, std::string value);
    std::string defaultValue, lower, upper;
    SharedText current;
};

/// Second base of parameters with a control on the main window, and of plain buttons.
struct ParameterControl {
    ParameterControl(u16 id) : controlId(id) {}  // NOLINT: an id is all there is at first
    u16 controlId;
    i32 y = 0;                        ///< pixels
    void* window = nullptr;           ///< handle of the control, null until it exists
    std::atomic<bool> enabled{true};  ///< what gf_enableControl asked for
};

/// A switch with a control.
struct CheckBox : BoolParameter, ParameterControl {
    CheckBox(std::string parameterName, bool value, u16 id);
};

/// A whole number out of a list with a control.
struct NumberChoice : IntParameter, ParameterControl {
    /// The limits are the first and the last of the values.
    NumberChoice(std::string parameterName, i32 value, std::vector<i32> allowed, u16 id);
    std::vector<i32> values;
};

/// A number out of a list with a control.
struct FloatChoice : FloatParameter, ParameterControl {
    FloatChoice(std::string parameterName, f32 value, std::vector<f32> allowed, u16 id);
    std::vector<f32> values;
};

/// A text that the user types.
struct EditField : StringParameter, ParameterControl {
    EditField(std::string parameterName, std::string value, u16 id);
    void* replacedProcedure = nullptr;
};

/// A text out of a list with a control.
struct TextChoice : StringParameter, ParameterControl {
    TextChoice(std::string parameterName, std::string value, std::vector<std::string> allowed, u16 id);
    std::vector<std::string> values;
};

/// A button, which has no value.
struct ButtonControl : Parameter, ParameterControl {
    ButtonControl(std::string caption, u16 id);
};

/// The settings by kind; what each is for, its default, its limits and its unit stand in settings.cpp and
/// parameters.cpp.
extern BoolParameter RANDOM;
extern CheckBox AEROWINX, LIG_AUTOMATIC, COLLISION_USER_AIR, COLLISION_USER_GND, COLLISION_LIVE_PARKED_GND,
    ALWAYS_ON_TOP, SCAN_LIVERIES, LIG_PRIORITIZE, AIRBORNE_ONLY, SCAN_AIRPORTS, LIGHT_AIRCRAFT, HELICOPTERS,
    HIGH_PERF_AIRCRAFT, NAV_LIGHTS_WHILE_PARKED, AUTO_RANGE, STRAIGHT_PBS_ONLY, PARK_SOFT, WEEK, INITIAL_LOAD_ONLY,
    GUID_CHANGES;
extern IntParameter CUSTOM_PARKING_PERCENTAGE, MAIN_WINDOW_X, MAIN_WINDOW_Y, HOLDING_THRESHOLD_METERS,
    MAX_HOLDING_MINUTES, MAX_FIT;
extern NumberChoice MATCHING_DEPTH, RANGE, AR_ABOVE_HEIGHT, MAX_PARK_SEL, MAX_LIVE_SEL, AIRP_RANGE, AIRP_HEIGHT;
extern StringParameter PROGRAM_VERSION, MSFS_INSTALL_PATH, PORT_NUMBER, AIG_VERSION, DBASE_VERSION, AIRPORTS_VERSION,
    LIV_SCAN_VERSION, ADDONS_SCAN_VERSION, MYSIMADDON24_VERSION, MSFS_2024_INSTALL_PATH;
extern StringParameter lfolder0, lfolder1, lfolder2, lfolder3, lfolder4, lfolder5, lfolder6, lfolder7, lfolder8,
    lfolder9;
extern TextChoice AI_PACKAGE_SELECTOR, SIM_CHOICE, CALLSIGN_2_OBJECTID;
extern EditField DESTINATION, BLOCK_CALLSIGN, ALL_INSTALL_PATH;
extern NumberChoice parking_percentage;
extern FloatChoice MAX_FIT_FL;
extern ButtonControl gTbloButton, gUnblockButton, gCallsignListButton, gBlockButton, gReReadButton, gNowButton,
    gFlushStaticButton;

/// The six ordered lists that fix the order of the items in a new file.
struct ParameterLists {
    std::vector<BoolParameter*> bools;           ///< 1: without a control
    std::vector<CheckBox*> checkBoxes;           ///< 2
    std::vector<IntParameter*> ints;             ///< 3: without a control
    std::vector<NumberChoice*> numberChoices;    ///< 4
    std::vector<StringParameter*> strings;       ///< 5
    std::vector<StringParameter*> shownStrings;  ///< 6: their control's text is shown again after reading
};
/// Built at the first call. Any thread.
const ParameterLists& gf_parameterLists();
/// Every parameter back to its default; for tests.
void gf_resetParameters();

/// True when SIM_CHOICE is "MSFS 2024".
bool gf_sim2024Chosen();

}  // namespace hcr
