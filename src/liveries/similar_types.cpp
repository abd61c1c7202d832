#include <fmt/format.h>

#include <algorithm>

#include "core/model/aircraft_class.h"
#include "liveries/dbase.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/random.h"
#include "shell/text.h"

namespace hcr {

TextMap<std::vector<std::string>> similarTypes;
TextMap<TextMap<std::vector<std::string>>> similarForAirline;

namespace {

using SimilarEntry = TextMap<std::vector<std::string>>::value_type;

/// Length of an airline's ICAO code; what stands behind it in a key isn't part of the airline.
constexpr std::size_t kAirlineLength = 3;

bool lf_hasGeneric(std::string_view type) {
    return genericTitles[0].contains(type) || genericTitles[1].contains(type);
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

/// For each type, the entries of similarTypes in whose lists it stands.
std::unordered_map<std::string_view, std::vector<const SimilarEntry*>> lf_entriesByStandIn() {
    std::unordered_map<std::string_view, std::vector<const SimilarEntry*>> entries;
    for (const SimilarEntry& entry : similarTypes) {
        for (const std::string& standIn : entry.second) entries[standIn].push_back(&entry);
    }
    return entries;
}

void lf_fillSimilarForAirline() {
    similarForAirline.clear();
    // From the airline's own types back to what they can stand in for: an airline has few types, and asking it for
    // each of the similar types would cost more than all the rest of the loading.
    const auto entriesByStandIn = lf_entriesByStandIn();
    for (const auto& [airline, types] : liveryIndex) {
        const std::string code = airline.substr(0, kAirlineLength);
        for (const auto& [ownType, liveries] : types) {
            const auto entries = entriesByStandIn.find(ownType);
            if (entries == entriesByStandIn.end()) continue;
            for (const SimilarEntry* entry : entries->second) {
                if (types.contains(entry->first)) continue;
                std::vector<std::string>& list = similarForAirline[code][entry->first];
                if (!list.empty()) continue;
                for (const std::string& standIn : entry->second) {
                    if (types.contains(standIn)) list.push_back(standIn);
                }
            }
        }
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
    const auto types = similarForAirline.find(airline);
    if (types == similarForAirline.end()) return {};
    const auto list = types->second.find(type);
    return list == types->second.end() ? std::vector<std::string>{} : gf_shuffled(list->second);
}

void gf_buildSimilarTables() {
    lf_fillSimilarTypes();
    lf_fillSimilarForAirline();
    gf_log(fmt::format("{} similar model definitions", similarTypes.size()));
}

}  // namespace hcr
