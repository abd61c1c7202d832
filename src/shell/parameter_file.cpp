#include "shell/parameter_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <mutex>

#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/text.h"
#include "shell/window/controls.h"
#include "shell/xml.h"

namespace hcr {
namespace {

// Guards the file, which the window thread and the run thread change item by item. No other lock is taken under it but
// those of the log and of a single text.
std::recursive_mutex gSettingsMutex;

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

void lf_save(pugi::xml_document& document) {
    if (!gf_saveXmlDocument(document, gFiles().settings)) {
        gf_logError(fmt::format("saving: {} failed", lf_settingsText()));
    }
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

template <typename Kind>
void lf_store(const Kind& parameter) {
    const std::lock_guard lock(gSettingsMutex);
    const std::string& name = parameter.name;
    const std::string value = lf_text(lf_current(parameter));
    pugi::xml_document document;
    if (!gf_loadXmlDocument(document, gFiles().settings)) {
        document.reset();
        lf_appendItem(document.append_child("root").append_child("parameters"), name, value.c_str());
        gf_log(fmt::format("{}={}", name, value));
        lf_save(document);
        return;
    }

    pugi::xml_node root = gf_rootOf(document);
    pugi::xml_node list = root.child("parameters");
    if (!list) list = root.append_child("parameters");
    bool found = false;
    for (const pugi::xml_node item : list.children("parameter")) {
        if (item.attribute("name").as_string() != name) continue;
        lf_setValue(item, value.c_str());
        found = true;
    }
    if (!found) lf_appendItem(list, name, value.c_str());
    gf_log(fmt::format("{}={}", name, value));
    if (document.child("root")) {
        lf_save(document);
    } else {
        gf_placeRootLevel();
    }
}

}  // namespace

bool gf_readParameters(pugi::xml_document& document) {
    const pugi::xml_node list = gf_rootOf(document).child("parameters");
    if (!list) return false;
    lf_forEach([&](auto& parameter) {
        if (const pugi::xml_node item = lf_findItem(list, parameter.name)) {
            lf_takeValue(parameter, item.attribute("value"));
        } else {
            lf_makeDefaultCurrent(parameter);
            lf_appendItem(list, parameter.name, lf_cString(lf_text(parameter.defaultValue)));
        }
        gf_logIfRunning(fmt::format("{}={}", parameter.name, lf_text(lf_current(parameter))));
    });
    return true;
}

bool gf_loadParameters() {
    {
        const std::lock_guard lock(gSettingsMutex);
        gf_log(gf_logBanner(kLogSectionHeadWidth, 0, true, false, "parameters"));
        pugi::xml_document document;
        const bool parsed = gf_loadXmlDocument(document, gFiles().settings);
        if (!parsed || !gf_rootOf(document).child("parameters")) {
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

void gf_placeRootLevel() {
    gf_log("\nPlacing a root level around a new parameters.xml to make it 100% xml compliance\n");
    gf_saveParameters(false);
}

void gf_saveParameters(bool useDefaults) {
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
    lf_save(document);
    lf_logFoot();
}

void gf_storeParameter(const BoolParameter& parameter) {
    lf_store(parameter);
}

void gf_storeParameter(const IntParameter& parameter) {
    lf_store(parameter);
}

void gf_storeParameter(const StringParameter& parameter) {
    lf_store(parameter);
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
