#include "liveries/registrations.h"

#include <limits>
#include <stdexcept>

namespace hcr {
namespace {

auto lf_textOf(const RegistrationTable& table) {
    return [&table](u32 position) { return table.registration(position); };
}

/// Number of a word, which is kept when it is new.
u32 lf_wordNumber(RegistrationTable& table, std::string_view word) {
    const auto textOf = [&table](u32 number) -> std::string_view { return table.words[number]; };
    if (const u32 known = table.wordIndex.find(word, textOf); known != TextIndex::kNone) return known;
    const u32 number = static_cast<u32>(table.words.size());
    table.words.emplace_back(word);
    table.wordIndex.insert(number, textOf);
    return number;
}

/// Number of a record, which is kept when it is new.
u32 lf_recordNumber(RegistrationTable& table, const DbaseRecord& record) {
    const auto textOf = [&table](u32 number) {
        const RegistrationTable::RecordKey& key = table.recordKeys[number];
        return std::string_view(reinterpret_cast<const char*>(key.data()), sizeof(key));
    };
    const RegistrationTable::RecordKey key{lf_wordNumber(table, record.airl), lf_wordNumber(table, record.type),
                                           lf_wordNumber(table, record.opr), record.cargo ? 1U : 0U};
    const u32 number = static_cast<u32>(table.records.size());
    table.recordKeys.push_back(key);
    if (const u32 known = table.recordIndex.insert(number, textOf); known != TextIndex::kNone) {
        table.recordKeys.pop_back();
        return known;
    }
    table.records.push_back({table.words[key[0]], table.words[key[1]], table.words[key[2]], record.cargo});
    return number;
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
    entries.back().record = lf_recordNumber(*this, record);
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

void RegistrationTable::shrink() {
    texts.shrink_to_fit();
    entries.shrink_to_fit();
    recordKeys.shrink_to_fit();
}

void RegistrationTable::clear() {
    *this = {};
}

}  // namespace hcr
