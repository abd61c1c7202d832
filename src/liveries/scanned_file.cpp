#include <fmt/format.h>

#include <algorithm>
#include <pugixml.hpp>
#include <tuple>

#include "liveries/dbase.h"
#include "liveries/reports.h"
#include "liveries/results.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/meta.h"
#include "shell/parameters.h"
#include "shell/text.h"
#include "shell/xml.h"

namespace hcr {

std::vector<LiveryData> gScanList;

namespace {

constexpr i32 kFileMissing = 51, kSectionMissing = 52, kNoLiveries = 533, kAttributeMissing = 999;
constexpr i32 kMsfs2020 = 1, kMsfs2024 = 2;

auto lf_sortKey(const LiveryData& livery) {
    return std::tie(livery.airl, livery.type, livery.title);
}

bool lf_sortsBefore(const LiveryData& a, const LiveryData& b) {
    return lf_sortKey(a) < lf_sortKey(b);
}

void lf_require(pugi::xml_attribute attribute, const char* name, pugi::xml_node node) {
    if (attribute) return;
    throw UserErrorException(kAttributeMissing,
                             fmt::format("Missing required attribute '{}' in <{}>", name, node.name()));
}

LiveryData lf_readLivery(pugi::xml_node node) {
    const pugi::xml_attribute airl = node.attribute("airl"), type = node.attribute("type"),
                              title = node.attribute("title");
    lf_require(airl, "airl", node);
    lf_require(type, "type", node);
    lf_require(title, "title", node);
    LiveryData livery;
    livery.airl = airl.value();
    livery.type = type.value();
    livery.title = title.value();
    livery.atcid = node.attribute("atcid").value();
    livery.cargo = node.attribute("cargo").as_bool();
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

void lf_applyRecord(LiveryData& livery, const DbaseRecord& record) {
    if (livery.cargo != record.cargo) {
        lf_noteConversion(livery, "cargo", lf_flagText(livery.cargo), lf_flagText(record.cargo));
        livery.cargo = record.cargo;
    }
    const std::string& airline = record.opr.empty() ? record.airl : record.opr;
    if (livery.airl != airline) {
        lf_noteConversion(livery, "airl", livery.airl, airline);
        livery.airl = airline;
    }
    if (livery.type != record.type) {
        lf_noteConversion(livery, "model", livery.type, record.type);
        livery.type = record.type;
    }
}

}  // namespace

void gf_sortScanList() {
    // The file of a scan is sorted already; only a hand-edited one isn't.
    if (!std::is_sorted(gScanList.begin(), gScanList.end(), lf_sortsBefore)) {
        std::stable_sort(gScanList.begin(), gScanList.end(), lf_sortsBefore);
    }
}

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
    gf_saveXmlDocument(document, path);
    gf_log(fmt::format("{} liveries in {}", gScanList.size(), gf_pathToUtf8(path)));
}

void gf_readScannedDocument(const pugi::xml_document& document, const std::filesystem::path& path) {
    gScanList.clear();
    gf_readMeta(document, false);
    const pugi::xml_node root = document.child("root");
    const pugi::xml_node liveries = root.child("liveries");
    if (root && !liveries) {
        throw UserErrorException(kSectionMissing,
                                 fmt::format("{} does not contain a <liveries> section", gf_pathToUtf8(path)));
    }
    const auto count = std::distance(liveries.begin(), liveries.end());
    gScanList.reserve(static_cast<std::size_t>(count));
    for (const pugi::xml_node node : liveries.children()) {
        if (node.type() == pugi::node_element) gScanList.push_back(lf_readLivery(node));
    }
    if (gScanList.empty()) {
        throw UserErrorException(kNoLiveries, gf_pathToUtf8(path) + " does not contain liveries");
    }
    gf_sortScanList();
    gf_log(fmt::format("{} liveries read from {}", gScanList.size(), gf_pathToUtf8(path)));
}

void gf_readScannedLiveries() {
    gScanList.clear();
    const std::filesystem::path& path = gFiles().liveriesScanned;
    pugi::xml_document document;
    if (!gf_loadXmlDocument(document, path)) {
        throw UserErrorException(kFileMissing, fmt::format("File {} not found", gf_pathToUtf8(path)));
    }
    gf_readScannedDocument(document, path);
}

void gf_applyDbaseToLiveries() {
    for (LiveryData& livery : gScanList) {
        if (livery.atcid.empty()) continue;
        if (const DbaseRecord* record = gf_dbaseRecord(livery.atcid)) lf_applyRecord(livery, *record);
    }
}

}  // namespace hcr
