#include "liveries/similar_types.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/model/aircraft_class.h"
#include "liveries/dbase.h"
#include "liveries/livery_tables.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/random.h"
#include "shell/text.h"

namespace hcr {

TextMap<std::vector<std::string>> similarTypes;

namespace {

bool lf_hasGeneric(std::string_view type) {
    return genericTitles[0].contains(type) || genericTitles[1].contains(type);
}

bool lf_airlineHas(std::string_view airline, std::string_view type) {
    return std::any_of(airlineTitles.begin(), airlineTitles.end(), [&](const auto& airlines) {
        const auto types = airlines.find(airline);
        return types != airlines.end() && types->second.contains(type);
    });
}

/// The texts "type,stand-in,stand-in" in sorted order: a type that stands in several groups takes the first of them.
std::set<std::string> lf_standInTexts() {
    std::set<std::string> texts;
    for (const std::vector<std::string>& group : similarGroups) {
        for (const std::string& type : group) {
            std::string text = type;
            for (const std::string& other : group) {
                if (other != type && lf_hasGeneric(other)) text += ',' + other;
            }
            if (text.size() > type.size()) texts.insert(std::move(text));
        }
    }
    return texts;
}

void lf_fillSimilarTypes() {
    similarTypes.clear();
    for (const std::string& text : lf_standInTexts()) {
        const std::vector<std::string_view> pieces = gf_splitCommas(text);
        similarTypes.try_emplace(std::string(pieces.front()), pieces.begin() + 1, pieces.end());
    }
}

const std::vector<std::string>* lf_poolOf(i32 acClass) {
    switch (acClass) {
        case Light:
            return &lightPool;
        case Buzjets:
            return &buzjetPool;
        case Rotorcraft:
            return &rotorcraftPool;
        default:
            return nullptr;
    }
}

}  // namespace

std::vector<std::string> gf_shuffled(const std::vector<std::string>& list) {
    std::vector<std::string> copy = list;
    if (RANDOM.current && copy.size() > 1) std::shuffle(copy.begin(), copy.end(), gf_randomGenerator());
    return copy;
}

std::vector<std::string> gf_similarTypes(std::string_view type) {
    if (const auto similar = similarTypes.find(type); similar != similarTypes.end())
        return gf_shuffled(similar->second);
    const std::vector<std::string>* pool = lf_poolOf(gf_acClass(type));
    if (pool == nullptr || pool->empty()) return {};
    return {(*pool)[gf_randomBelow(static_cast<u32>(pool->size()))]};
}

std::vector<std::string> gf_similarForAirline(std::string_view airline, std::string_view type) {
    // Worked out when it is asked for, with a lookup or two per stand-in: a table of it for every airline would take
    // longer to build than all the rest of the loading.
    const auto similar = similarTypes.find(type);
    if (similar == similarTypes.end() || lf_airlineHas(airline, type)) return {};
    std::vector<std::string> list;
    for (const std::string& standIn : similar->second) {
        if (lf_airlineHas(airline, standIn)) list.push_back(standIn);
    }
    return gf_shuffled(list);
}

void gf_buildSimilarTables() {
    lf_fillSimilarTypes();
    gf_log(fmt::format("{} similar model definitions", similarTypes.size()));
}

}  // namespace hcr
