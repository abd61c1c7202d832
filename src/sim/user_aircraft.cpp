#include "sim/user_aircraft.h"

#include <fmt/format.h>

#include <array>
#include <optional>
#include <string_view>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "liveries/dbase.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/text.h"
#include "shell/window_state.h"

namespace hcr {

std::atomic<f64> userHalfWingSpan{0};
std::atomic<bool> gUserHalfSpanKnown{false};
std::atomic<i32> userCategory{Light};

namespace {

constexpr std::size_t kTitleLength = 48;       // what the window has room for
constexpr std::size_t kLongestTypeCode = 4;    // ICAO type designators
constexpr const char* kIndent = "          ";  // log lines without a stand

std::string gUserTitle;  // SimClient only

struct Replacement {
    std::string_view from, to;
};

constexpr std::array<Replacement, 4> kWholeModels = {{
    {"A350-900", "A359"},
    {"N738B", "B38M"},
    {"777", "772"},
    {"A330-200 (RR)", "A332"},
}};

/// Parts of the title that tell which 737 it is.
constexpr std::array<Replacement, 4> kTitles737 = {{
    {"DG 737-800", "B738"},
    {"DG 737-700", "B737"},
    {"DG 737-600", "B736"},
    {"DG 737-900", "B739"},
}};

/// Beginnings of titles whose model isn't an ICAO type.
constexpr std::array<Replacement, 3> kTitleStarts = {{
    {"Aerosoft A319", "A319"},
    {"Aerosoft A320", "A320"},
    {"Aerosoft A321", "A321"},
}};

bool lf_contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// At most so many bytes, not ending inside of a UTF-8 character.
std::string_view lf_cut(std::string_view text, std::size_t length) {
    if (text.size() <= length) return text;
    const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    std::size_t end = length;
    while (end > 0 && length - end < 3 && continues(text[end])) --end;
    return text.substr(0, continues(text[end]) ? length : end);
}

/// A title may hold bytes of any code page; the program's texts are UTF-8.
std::string lf_asUtf8(const std::string& text) {
    return gf_isUtf8(text) ? text : gf_ansiToUtf8(text);
}

void lf_setHalfSpan(f64 halfSpan) {
    userHalfWingSpan = halfSpan;
    gUserHalfSpanKnown = true;
}

void lf_setModelKnown(bool known) {
    gWindow.modelKnown = known;
    gf_repaint(Band::simulator);
}

/// The type in a text like "TT:ATCCOM.AC_MODEL_B738.0.text": what stands before the ending and has a wing span.
std::string lf_typeBeforeEnding(std::string_view model, std::size_t ending) {
    for (std::size_t length = kLongestTypeCode; length >= 2; --length) {
        if (length > ending) continue;
        const std::string_view type = model.substr(ending - length, length);
        if (gf_halfSpanNm(type) != 0) return std::string(type);
    }
    return std::string(model);
}

std::string lf_repair737(std::string_view model) {
    for (const Replacement& item : kTitles737) {
        if (lf_contains(gUserTitle, item.from)) return std::string(item.to);
    }
    return std::string(model);
}

/// The first rule that fits makes an ICAO type of what the simulator gives as the model.
std::string lf_repairModel(const std::string& model) {
    for (const Replacement& item : kWholeModels) {
        if (model == item.from) return std::string(item.to);
    }
    const std::size_t ending = model.find(".0.text");
    if (model.size() > 6 && ending != std::string::npos) return lf_typeBeforeEnding(model, ending);
    if (model.size() > 4 && model.starts_with("$$:")) return model.substr(3);
    if (model == "737") return lf_repair737(model);
    return model;
}

std::optional<std::string> lf_typeOfTitle() {
    for (const Replacement& item : kTitleStarts) {
        if (gUserTitle.starts_with(item.from)) return std::string(item.to);
    }
    return {};
}

void lf_onNoModel() {
    gWindow.userAircraft.set("Unknown (encrypted?) aircraft");
    gf_repaint(Band::simulator);
    gf_showMessage("171: No model info from your user aircraft received in SimConnect, CRJ7 is taken instead", true);
    const f64 halfSpan = gf_halfSpanNm("CRJ7");
    lf_setHalfSpan(halfSpan != 0 ? halfSpan : maxHalfSpan);
}

/// Cameras and walking crew are no aircraft; they get the room of a small airliner.
void lf_onNoAircraft(const std::string& report) {
    lf_setModelKnown(true);
    lf_setHalfSpan(gf_halfSpanNm("E190"));
    userCategory = Light;
    gf_log(report);
}

/// Half wing span of the model, or the maximum, with which collision checks err on the side of caution.
f64 lf_modelHalfSpan(const std::string& model) {
    return model.size() <= kLongestTypeCode ? gf_halfSpanNm(model) : maxHalfSpan;
}

}  // namespace

void gf_onUserTitle(const std::string& title) {
    if (title.empty()) {
        gf_log("! Title of your aircraft is empty?");
        return;
    }
    const std::string text = lf_asUtf8(title);
    const std::string_view shown = lf_cut(text, kTitleLength);
    if (shown == gUserTitle) return;
    gUserTitle = shown;
    gWindow.userAircraft.set(gUserTitle);
    gf_repaint(Band::simulator);
    gf_log(fmt::format("{}SimConnect: User aircraft title: {}", kIndent, gUserTitle));
}

void gf_onUserModel(const std::string& rawModel) {
    if (rawModel.empty()) {
        lf_onNoModel();
        return;
    }
    gf_log(fmt::format("{}model raw: {}", kIndent, rawModel));
    std::string model = lf_repairModel(rawModel);
    std::string report = fmt::format("SimConnect: User aircraft model: {}", model);
    if (lf_contains(model, "camerapod") || lf_contains(model, "Crew Vessel")) {
        lf_onNoAircraft(report);
        return;
    }
    f64 halfSpan = lf_modelHalfSpan(model);
    bool understood = halfSpan != maxHalfSpan;
    if (!understood) {
        if (const std::optional<std::string> type = lf_typeOfTitle()) {
            model = *type;
            report = fmt::format("SimConnect: User aircraft model deduced from title: {}", model);
            halfSpan = gf_halfSpanNm(model);
            understood = halfSpan != 0;
            if (!understood) halfSpan = maxHalfSpan;
        }
    }
    lf_setHalfSpan(halfSpan);
    lf_setModelKnown(understood);
    if (understood) {
        report += fmt::format(", half wing span: {:.1F} meter", halfSpan * kMetresPerNm);
    } else {
        gf_showMessage("User aircraft wing span unknown, max is taken instead, please report in my Forum!", true);
    }
    const i32 category = gf_acClass(model);
    userCategory = category;
    report += fmt::format(", category: {}", classValue(kClassNames, category));
    gf_log(fmt::format("{}{}", kIndent, report));
}

void gf_resetUserAircraft() {
    gUserTitle = {};
    userHalfWingSpan = 0;
    gUserHalfSpanKnown = false;
    userCategory = Light;
}

}  // namespace hcr
