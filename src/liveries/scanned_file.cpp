#include "liveries/scanned_file.h"

#include <fmt/format.h>

#include <algorithm>

#include "liveries/dbase.h"
#include "liveries/reports.h"
#include "shell/file_names.h"
#include "shell/generations.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/meta.h"
#include "shell/parameters.h"
#include "shell/text.h"
#include "shell/version.h"
#include "shell/xml.h"

namespace hcr {

std::vector<LiveryData> gScanList;

namespace {

constexpr i32 kFileMissing = 51, kSectionMissing = 52, kNoLiveries = 533, kAttributeMissing = 999;
/// Room for all packages together, made at once.
constexpr std::size_t kUsualLiveries = 32768;
constexpr i32 kMsfs2020 = 1, kMsfs2024 = 2;

bool lf_sortsBefore(const ScannedLivery& a, const ScannedLivery& b) {
    if (const int order = a.airl.compare(b.airl); order != 0) return order < 0;
    if (const int order = a.type.compare(b.type); order != 0) return order < 0;
    return a.title < b.title;
}

/// Most names differ in their first letters, so that this is faster than a call that measures or compares whole texts.
bool lf_isName(const char* text, const char* name) {
    while (*text == *name && *name != '\0') ++text, ++name;
    return *text == *name;
}

/// The attributes of a livery, gathered in one walk, which takes half the time of a search for each. Null for what is
/// missing.
struct LiveryAttributes {
    const char* airl = nullptr;
    const char* type = nullptr;
    const char* title = nullptr;
    const char* atcid = nullptr;
    pugi::xml_attribute cargo;

    explicit LiveryAttributes(pugi::xml_node node) {
        for (pugi::xml_attribute given = node.first_attribute(); given; given = given.next_attribute()) {
            const char* const name = given.name();
            if (lf_isName(name, "airl")) {
                lf_keepFirst(airl, given);
            } else if (lf_isName(name, "type")) {
                lf_keepFirst(type, given);
            } else if (lf_isName(name, "title")) {
                lf_keepFirst(title, given);
            } else if (lf_isName(name, "atcid")) {
                lf_keepFirst(atcid, given);
            } else if (lf_isName(name, "cargo") && !cargo) {
                cargo = given;
            }
        }
    }

    static void lf_keepFirst(const char*& value, pugi::xml_attribute given) {
        if (value == nullptr) value = given.value();
    }
};

std::string_view lf_required(const char* value, const char* name, pugi::xml_node node) {
    if (value != nullptr) return value;
    throw UserErrorException(kAttributeMissing,
                             fmt::format("Missing required attribute '{}' in <{}>", name, node.name()));
}

ScannedLivery lf_readLivery(pugi::xml_node node) {
    const LiveryAttributes given(node);
    ScannedLivery livery;
    livery.airl = lf_required(given.airl, "airl", node);
    livery.type = lf_required(given.type, "type", node);
    livery.title = lf_required(given.title, "title", node);
    if (given.atcid != nullptr) livery.atcid = given.atcid;
    livery.cargo = given.cargo.as_bool();
    return livery;
}

void lf_appendLivery(pugi::xml_node parent, const LiveryData& livery) {
    pugi::xml_node node = parent.append_child("liv");
    node.append_attribute("airl") = livery.airl.c_str();
    node.append_attribute("type") = livery.type.c_str();
    if (livery.cargo) node.append_attribute("cargo") = "true";
    node.append_attribute("title") = livery.title.c_str();
    if (!livery.atcid.empty()) node.append_attribute("atcid") = livery.atcid.c_str();
}

const char* lf_flagText(bool flag) {
    return flag ? "true" : "false";
}

void lf_noteConversion(const LiveryData& livery, const char* what, std::string_view from, std::string_view to) {
    gConversions.push_back(fmt::format("{:80} {} {} {} => {}", livery.title, livery.atcid, what, from, to));
}

/// A record that doesn't say what the airframe is can't tell that the file is wrong.
bool lf_isWhole(const DbaseRecord& record) {
    return !record.type.empty() && !record.airl.empty();
}

void lf_applyRecord(LiveryData& livery, const DbaseRecord& record) {
    if (livery.cargo != record.cargo) {
        lf_noteConversion(livery, "cargo", lf_flagText(livery.cargo), lf_flagText(record.cargo));
        livery.cargo = record.cargo;
    }
    const std::string_view airline = record.opr.empty() ? record.airl : record.opr;
    if (livery.airl != airline) {
        lf_noteConversion(livery, "airl", livery.airl, airline);
        livery.airl = airline;
    }
    if (livery.type != record.type) {
        lf_noteConversion(livery, "model", livery.type, record.type);
        livery.type = record.type;
    }
}

[[noreturn]] void lf_failUnread(const std::filesystem::path& path, const pugi::xml_parse_result& result) {
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored)) {
        throw UserErrorException(kFileMissing, fmt::format("File {} not found", gf_pathToUtf8(path)));
    }
    throw UserErrorException(kFileMissing,
                             fmt::format("File {} is damaged: {} at byte {}. Set SCAN_LIVERIES on, the next start "
                                         "scans again and writes it anew",
                                         gf_pathToUtf8(path), result.description(), result.offset));
}

}  // namespace

void gf_writeScannedLiveries() {
    if (gScanList.empty()) return;
    const std::filesystem::path& path = gFiles().liveriesScanned;
    pugi::xml_document document;
    MetaInfo meta;
    meta.version = gf_programVersion().text();
    meta.setSim(gf_sim2024Chosen() ? kMsfs2024 : kMsfs2020);
    gf_writeMeta(document, meta);
    pugi::xml_node liveries = document.child("root").append_child("liveries");
    for (const LiveryData& livery : gScanList) lf_appendLivery(liveries, livery);
    std::error_code error;
    const bool isSaved = gf_saveXmlDocument(document, path, error);
    gf_log(fmt::format("{} liveries in {}", gScanList.size(), gf_pathToUtf8(path)));
    if (!isSaved) gf_tellWriteFault(path, error);
}

std::vector<ScannedLivery> gf_readScannedDocument(const pugi::xml_document& document,
                                                  const std::filesystem::path& path) {
    gf_readMeta(document, false);  // for its complaint only: the file serves whatever version and simulator it names
    const pugi::xml_node root = document.child("root");
    const pugi::xml_node liveries = root.child("liveries");
    if (root && !liveries) {
        throw UserErrorException(kSectionMissing,
                                 fmt::format("{} does not contain a <liveries> section", gf_pathToUtf8(path)));
    }
    std::vector<ScannedLivery> list;
    list.reserve(kUsualLiveries);
    bool sorted = true;  // as the file of a scan is; a hand-edited one may not be
    for (pugi::xml_node node = liveries.first_child(); node; node = node.next_sibling()) {
        if (node.type() != pugi::node_element) continue;
        list.push_back(lf_readLivery(node));
        sorted = sorted && (list.size() < 2 || !lf_sortsBefore(list.back(), list[list.size() - 2]));
    }
    if (list.empty()) throw UserErrorException(kNoLiveries, gf_pathToUtf8(path) + " does not contain liveries");
    if (!sorted) std::stable_sort(list.begin(), list.end(), lf_sortsBefore);
    gf_log(fmt::format("{} liveries read from {}", list.size(), gf_pathToUtf8(path)));
    return list;
}

std::vector<ScannedLivery> gf_readScannedLiveries(pugi::xml_document& document) {
    const std::filesystem::path& path = gFiles().liveriesScanned;
    if (const pugi::xml_parse_result result = gf_loadXmlDocument(document, path); !result) lf_failUnread(path, result);
    return gf_readScannedDocument(document, path);
}

void gf_applyDbaseToLiveries() {
    for (LiveryData& livery : gScanList) {
        if (livery.atcid.empty()) continue;
        const DbaseRecord* record = gf_dbaseRecord(livery.atcid);
        if (record != nullptr && lf_isWhole(*record)) lf_applyRecord(livery, *record);
    }
}

}  // namespace hcr
