#include "liveries/categories.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/model/aircraft_class.h"
#include "liveries/dbase.h"
#include "liveries/livery_tables.h"
#include "shell/controls.h"
#include "shell/log.h"
#include "shell/parameter_file.h"
#include "shell/parameters.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr std::size_t kModelsPerRow = 20;
constexpr const char* kUnbrandedAirline = "ZZZ";

/// What is installed of a class.
struct Category {
    std::array<std::size_t, 2> liveries{};  ///< passenger, cargo
    std::set<std::string_view> types;
};

/// What the program does with a class besides logging it.
struct ClassRule {
    std::vector<std::string>* pool = nullptr;
    CheckBox* wanted = nullptr;  ///< the user wants to see such aircraft
    const char* plainName = nullptr;
};

ClassRule lf_ruleOf(i32 acClass) {
    switch (acClass) {
        case Light:
            return {&lightPool, &LIGHT_AIRCRAFT, "light aircraft"};
        case Buzjets:
            return {&buzjetPool, nullptr, nullptr};
        case HighPerf:
            return {nullptr, &HIGH_PERF_AIRCRAFT, "High Perf aircraft"};
        case Rotorcraft:
            return {&rotorcraftPool, &HELICOPTERS, "Helicopters"};
        default:
            return {};
    }
}

std::array<Category, kClassCount> lf_categories() {
    std::array<Category, kClassCount> categories;
    for (std::size_t cargo = 0; cargo < genericTitles.size(); ++cargo) {
        for (const auto& [type, titles] : genericTitles[cargo]) {
            Category& category = categories[static_cast<std::size_t>(gf_acClass(type))];
            category.liveries[cargo] += titles.size();
            category.types.insert(type);
        }
    }
    return categories;
}

/// Rows of model names; each name goes into the pool as well, if there is one.
void lf_logModels(const std::set<std::string_view>& types, std::vector<std::string>* pool) {
    std::string row;
    std::size_t inRow = 0;
    for (const std::string_view type : types) {
        if (pool != nullptr) pool->emplace_back(type);
        row += inRow == 0 ? "  " : ",";
        row += type;
        if (++inRow < kModelsPerRow) continue;
        gf_log(row);
        row.clear();
        inRow = 0;
    }
    if (inRow > 0) gf_log(row);
}

void lf_switchOff(const ClassRule& rule) {
    if (rule.wanted->current) {
        rule.wanted->current = false;
        gf_storeParameter(*rule.wanted);
        gf_showInControl(*rule.wanted);
        gf_log(fmt::format("{} temporarily switched off because you do not have {} installed", rule.wanted->name,
                           rule.plainName));
    }
    gf_enableControl(*rule.wanted, false);
}

void lf_reportCategory(const Category& category, i32 acClass) {
    const ClassRule rule = lf_ruleOf(acClass);
    const char* const name = classValue(kClassNames, acClass);
    const auto [pax, cargo] = category.liveries;
    if (pax == 0 && cargo == 0) {
        gf_log(fmt::format("Category {}: No livery found", name));
        if (rule.wanted != nullptr) lf_switchOff(rule);
        return;
    }
    const std::string extra = cargo > 0 ? fmt::format(" and {} cargo liverie{}", cargo, gf_plural(cargo)) : "";
    gf_log(fmt::format("Category {}: {} pax liverie{}{}", name, pax, gf_plural(pax), extra));
    lf_logModels(category.types, rule.pool);
    if (rule.wanted != nullptr) gf_enableControl(*rule.wanted, true);
}

void lf_reportGenerics() {
    std::set<std::string_view> names;
    for (const LiveryGroup& group : liveryIndex) {
        if (group.airline == kUnbrandedAirline) names.insert(group.type);
    }
    if (names.empty()) {
        gf_log("No generic liveries");
        return;
    }
    gf_log(fmt::format("{} model{} have a generic livery", names.size(), gf_plural(names.size())));
    lf_logModels(names, nullptr);
}

}  // namespace

void gf_reportCategories() {
    const std::array<Category, kClassCount> categories = lf_categories();
    for (i32 acClass = 0; acClass < kClassCount; ++acClass) {
        lf_reportCategory(categories[static_cast<std::size_t>(acClass)], acClass);
    }
    lf_reportGenerics();
}

}  // namespace hcr
