#include "liveries/registrations.h"

#include <limits>
#include <stdexcept>

namespace hcr {
namespace {

auto lf_textOf(const RegistrationTable& table) {
    return [&table](u32 position) { return table.registration(position); };
}

std::string lf_recordKey(const DbaseRecord& record) {
    std::string key;
    for (const std::string* text : {&record.airl, &record.type, &record.opr}) {
        key += *text;
        key += '\0';  // can't stand in a text of an XML document
    }
    key += record.cargo ? '1' : '0';
    return key;
}

}  // namespace

std::string_view RegistrationTable::registration(u32 position) const {
    const Entry& entry = entries[position];
    return std::string_view(texts).substr(entry.textAt, entry.textLength);
}

bool RegistrationTable::add(std::string_view registration, const DbaseRecord& record) {
    if (texts.size() + registration.size() > std::numeric_limits<u32>::max()) {
        throw std::length_error("too many registrations");
    }
    const u32 position = static_cast<u32>(entries.size());
    entries.push_back({static_cast<u32>(texts.size()), static_cast<u32>(registration.size()), 0});
    texts += registration;
    if (index.insert(position, lf_textOf(*this)) != TextIndex::kNone) {
        texts.resize(entries.back().textAt);
        entries.pop_back();
        return false;
    }
    const auto [known, isNew] = recordNumbers.try_emplace(lf_recordKey(record), static_cast<u32>(records.size()));
    if (isNew) records.push_back(record);
    entries.back().record = known->second;
    return true;
}

u32 RegistrationTable::positionOf(std::string_view registration) const {
    return index.find(registration, lf_textOf(*this));
}

const DbaseRecord* RegistrationTable::find(std::string_view registration) const {
    const u32 position = positionOf(registration);
    return position == TextIndex::kNone ? nullptr : &records[entries[position].record];
}

void RegistrationTable::reserve(std::size_t count, std::size_t textBytes) {
    entries.reserve(count);
    texts.reserve(textBytes);
    index.reserve(count, lf_textOf(*this));
}

void RegistrationTable::finish() {
    texts.shrink_to_fit();
    entries.shrink_to_fit();
    recordNumbers = {};
}

void RegistrationTable::clear() {
    *this = {};
}

}  // namespace hcr
