#include "shell/parameter_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <mutex>
#include <system_error>

#include "shell/controls.h"
#include "shell/file_names.h"
#include "shell/generations.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/text.h"
#include "shell/version.h"
#include "shell/xml.h"

namespace hcr {
namespace {

// Guards the file, which the window thread and the run thread change item by item. No other lock is taken under it but
// those of the message line, of the log and of a single text.
std::recursive_mutex gSettingsMutex;

constexpr const char* kInForce = "the settings in force are saved in its place";

std::string lf_settingsText() {
    return gf_pathToUtf8(gFiles().settings);
}

const char* lf_text(bool value) {
    return value ? "true" : "false";
}

std::string lf_text(i32 value) {
    return std::to_string(value);
}

const std::string& lf_text(const std::string& value) {
    return value;
}

const char* lf_cString(const char* text) {
    return text;
}

const char* lf_cString(const std::string& text) {
    return text.c_str();
}

pugi::xml_node lf_findItem(pugi::xml_node list, const std::string& name) {
    return list.find_child_by_attribute("parameter", "name", name.c_str());
}

bool lf_appendItem(pugi::xml_node list, const std::string& name, const char* value) {
    pugi::xml_node item = list.append_child("parameter");
    return item.append_attribute("name").set_value(name.c_str()) && item.append_attribute("value").set_value(value);
}

void lf_setValue(pugi::xml_node item, const char* value) {
    pugi::xml_attribute attribute = item.attribute("value");
    if (!attribute) attribute = item.append_attribute("value");
    attribute.set_value(value);
}

/// False when the old file had to stay.
bool lf_save(pugi::xml_document& document) {
    std::error_code error;
    if (gf_saveXmlDocument(document, gFiles().settings, error)) return true;
    const std::string reason = gf_writeFaultText(error);
    gf_logError(fmt::format("saving: {} failed: {}", lf_settingsText(), reason));
    gf_showMessage(fmt::format("The settings can't be saved in {}: {}", lf_settingsText(), reason), false);
    return false;
}

bool lf_fileExists() {
    std::error_code error;
    const bool exists = std::filesystem::exists(gFiles().settings, error);
    return exists || error;  // what can't be looked at may well be there
}

/// How the file was found.
enum class SettingsFile { fine, missing, damaged };

/// Loads the file. `fault` says what is wrong with a damaged one, which also is one without a list.
SettingsFile lf_loadFile(pugi::xml_document& document, std::string& fault) {
    const pugi::xml_parse_result result = gf_loadXmlDocument(document, gFiles().settings);
    if (result && gf_rootOf(document).child("parameters")) return SettingsFile::fine;
    if (!lf_fileExists()) return SettingsFile::missing;
    fault = result ? "it has no list of parameters" : fmt::format("{} at byte {}", result.description(), result.offset);
    return SettingsFile::damaged;
}

/// A damaged file is the user's work: it is kept beside, and told. False when it can't be kept, so that nothing may
/// take its place.
bool lf_keepAside(const std::string& fault, const char* inForce) {
    const bool kept = gf_save1GenerationOf(gFiles().settings);
    const std::string text = kept ? fmt::format("{} can't be read ({}): kept as parameters0.xml beside it, {}",
                                                lf_settingsText(), fault, inForce)
                                  : fmt::format("{} can't be read ({}) nor copied: it stays, and no setting is saved",
                                                lf_settingsText(), fault);
    gf_logError(text);
    gf_showMessage(text, false);
    return kept;
}

void lf_logFoot() {
    gf_log(gf_logBanner(kLogSectionWidth, 0, false, true, ""));
}

// The current value in one shape for all kinds.

bool lf_current(const BoolParameter& p) {
    return p.current;
}

i32 lf_current(const IntParameter& p) {
    return p.current;
}

std::string lf_current(const StringParameter& p) {
    return p.current.get();
}

void lf_makeDefaultCurrent(BoolParameter& p) {
    p.current = p.defaultValue;
}

void lf_makeDefaultCurrent(IntParameter& p) {
    p.current = p.defaultValue;
}

void lf_makeDefaultCurrent(StringParameter& p) {
    p.current.set(p.defaultValue);
}

void lf_takeValue(BoolParameter& p, pugi::xml_attribute value) {
    p.current = value.as_bool();
}

void lf_takeValue(IntParameter& p, pugi::xml_attribute value) {
    p.current = std::clamp(value.as_int(), p.lower, p.upper);
}

void lf_takeValue(StringParameter& p, pugi::xml_attribute value) {
    p.current.set(value.as_string());
}

/// Calls `visit` with every registered parameter in the order of the file.
template <typename Visit>
void lf_forEach(Visit visit) {
    const ParameterLists& lists = gf_parameterLists();
    for (BoolParameter* p : lists.bools) visit(*p);
    for (CheckBox* p : lists.checkBoxes) visit(*p);
    for (IntParameter* p : lists.ints) visit(*p);
    for (NumberChoice* p : lists.numberChoices) visit(*p);
    for (StringParameter* p : lists.strings) visit(*p);
    for (StringParameter* p : lists.shownStrings) visit(*p);
}

/// The texts of list 5 have controls as well, which the start of a run fills in its own time.
void lf_showReadValues() {
    const ParameterLists& lists = gf_parameterLists();
    for (CheckBox* p : lists.checkBoxes) gf_showInControl(*p);
    for (NumberChoice* p : lists.numberChoices) gf_showInControl(*p);
    for (StringParameter* p : lists.shownStrings) {
        if (auto* control = dynamic_cast<ParameterControl*>(p)) gf_showInControl(*control);
    }
}

/// Of two items of one name the first counts; the others go.
void lf_dropRepeated(pugi::xml_node list, const std::string& name) {
    pugi::xml_node item = lf_findItem(list, name).next_sibling("parameter");
    while (item) {
        const pugi::xml_node next = item.next_sibling("parameter");
        if (item.attribute("name").as_string() == name) list.remove_child(item);
        item = next;
    }
}

/// Sets the item of that name, which is made when it is missing.
void lf_setItem(pugi::xml_node list, const std::string& name, const std::string& value) {
    if (const pugi::xml_node item = lf_findItem(list, name)) {
        lf_setValue(item, value.c_str());
    } else {
        lf_appendItem(list, name, value.c_str());
    }
    lf_dropRepeated(list, name);
}

/// A new document with an empty list.
pugi::xml_node lf_newList(pugi::xml_document& document) {
    document.reset();
    return document.append_child("root").append_child("parameters");
}

template <typename Kind>
bool lf_store(const Kind& parameter) {
    const std::lock_guard lock(gSettingsMutex);
    const std::string& name = parameter.name;
    const std::string value = lf_text(lf_current(parameter));
    pugi::xml_document document;
    std::string fault;
    const SettingsFile found = lf_loadFile(document, fault);
    if (found == SettingsFile::damaged && !lf_keepAside(fault, kInForce)) return false;
    pugi::xml_node list = gf_rootOf(document).child("parameters");
    if (found != SettingsFile::fine) list = lf_newList(document);
    const bool isOfOldShape = !document.child("root");
    lf_forEach([&](const auto& other) {
        if (found == SettingsFile::damaged) lf_appendItem(list, other.name, lf_cString(lf_text(lf_current(other))));
        lf_dropRepeated(list, other.name);
    });
    lf_setItem(list, name, value);
    gf_log(fmt::format("{}={}", name, value));
    return isOfOldShape ? gf_placeRootLevel() : lf_save(document);
}

}  // namespace

bool gf_readParameters(pugi::xml_document& document) {
    const pugi::xml_node list = gf_rootOf(document).child("parameters");
    if (!list) return false;
    lf_forEach([&](auto& parameter) {
        if (const pugi::xml_node item = lf_findItem(list, parameter.name)) {
            lf_takeValue(parameter, item.attribute("value"));
            lf_dropRepeated(list, parameter.name);
        } else {
            lf_makeDefaultCurrent(parameter);
            lf_appendItem(list, parameter.name, lf_cString(lf_text(parameter.defaultValue)));
        }
        gf_logIfRunning(fmt::format("{}={}", parameter.name, lf_text(lf_current(parameter))));
    });
    return true;
}

bool gf_loadParameters(bool keepCurrent) {
    {
        const std::lock_guard lock(gSettingsMutex);
        gf_log(gf_logBanner(kLogSectionHeadWidth, 0, true, false, "parameters"));
        pugi::xml_document document;
        std::string fault;
        const SettingsFile found = lf_loadFile(document, fault);
        if (found == SettingsFile::damaged) {
            const bool kept = lf_keepAside(fault, keepCurrent ? kInForce : "the settings begin anew with defaults");
            if (kept && keepCurrent) gf_saveParameters(false);
            if (!kept) lf_logFoot();
            if (!kept || keepCurrent) return false;
        }
        if (found != SettingsFile::fine) {
            gf_log(fmt::format("{} not found,  create new with default values:", lf_settingsText()));
            gf_saveParameters(true);
            return true;
        }
        gf_log(fmt::format("from '{}'", lf_settingsText()));
        gf_readParameters(document);
        lf_save(document);
        lf_logFoot();
    }
    // Without the lock: a face may wait for the window thread, which may be about to store a value.
    lf_showReadValues();
    return false;
}

bool gf_placeRootLevel() {
    gf_log("\nPlacing a root level around a new parameters.xml to make it 100% xml compliance\n");
    return gf_saveParameters(false);
}

bool gf_saveParameters(bool useDefaults) {
    const std::lock_guard lock(gSettingsMutex);
    pugi::xml_document document;
    pugi::xml_node root = document.append_child("root");
    if (useDefaults) PROGRAM_VERSION.defaultValue = gf_programVersion().text();
    pugi::xml_node list = root.append_child("parameters");
    lf_forEach([&](auto& parameter) {
        if (useDefaults) lf_makeDefaultCurrent(parameter);
        const auto value = lf_current(parameter);
        if (!lf_appendItem(list, parameter.name, lf_cString(lf_text(value)))) {
            gf_logIfRunning(
                fmt::format("{}adding xml parameter {} with {} failed!", "===> ", parameter.name, lf_text(value)));
        }
        gf_logIfRunning(fmt::format("{}={}", parameter.name, lf_text(value)));
    });
    const bool saved = lf_save(document);
    lf_logFoot();
    return saved;
}

bool gf_storeParameter(const BoolParameter& parameter) {
    return lf_store(parameter);
}

bool gf_storeParameter(const IntParameter& parameter) {
    return lf_store(parameter);
}

bool gf_storeParameter(const StringParameter& parameter) {
    return lf_store(parameter);
}

bool gf_peekParameters() {
    const std::lock_guard lock(gSettingsMutex);
    pugi::xml_document document;
    std::string fault;
    return lf_loadFile(document, fault) == SettingsFile::fine && gf_readParameters(document);
}

void gf_removeParameter(const std::string& name) {
    const std::lock_guard lock(gSettingsMutex);
    pugi::xml_document document;
    if (!gf_loadXmlDocument(document, gFiles().settings)) return;
    pugi::xml_node list = gf_rootOf(document).child("parameters");
    const pugi::xml_node item = lf_findItem(list, name);
    if (!item) return;
    list.remove_child(item);
    lf_save(document);
    gf_log(fmt::format("Parameter '{}' removed", name));
}

}  // namespace hcr
