#include "liveries/dbase_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <pugixml.hpp>
#include <stdexcept>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "liveries/dbase.h"
#include "liveries/xml_pieces.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/stream_cipher.h"
#include "shell/text.h"
#include "shell/xml.h"

namespace hcr {
namespace {

constexpr i32 kEmptySection = 61;
/// The registrations are parsed in pieces of this many bytes: their tree then stays within the processor's caches.
constexpr std::size_t kPieceBytes = 128 * 1024;
/// Usual sizes, by which room is made: a `db` element with its line end, and the registration in it.
constexpr std::size_t kBytesPerAirframe = 48;
constexpr std::size_t kBytesPerRegistration = 7;

constexpr std::size_t kSimilarGroups = 64, kPublisherGroups = 640, kThirdParties20 = 600, kThirdParties24 = 300;

/// The trimmed pieces of a comma list; an empty piece is none.
std::vector<std::string> lf_pieces(std::string_view text) {
    std::vector<std::string> pieces;
    for (const std::string_view piece : gf_splitCommas(text)) {
        if (const std::string_view trimmed = gf_trim(piece); !trimmed.empty()) pieces.emplace_back(trimmed);
    }
    return pieces;
}

void lf_readSet(pugi::xml_node root, const char* section, const char* child, const char* attribute,
                TextOrderedSet& set) {
    for (const pugi::xml_node node : root.child(section).children(child)) {
        for (std::string& piece : lf_pieces(node.attribute(attribute).value())) set.insert(std::move(piece));
    }
    if (set.empty()) {
        throw UserErrorException(
            kEmptySection,
            fmt::format("In XML file section [{}], element [{}], attribute [{}] is empty.", section, child, attribute));
    }
}

void lf_readClass(pugi::xml_node root, const char* section, const char* child, AircraftCategory acClass) {
    lf_readSet(root, section, child, "types", gClassTypes[static_cast<std::size_t>(acClass)]);
}

void lf_readSimilarGroups(pugi::xml_node root) {
    similarGroups.reserve(kSimilarGroups);
    for (const pugi::xml_node node : root.child("similar_types").children("similar")) {
        std::vector<std::string> group = lf_pieces(node.attribute("types").value());
        std::sort(group.begin(), group.end());
        similarGroups.push_back(std::move(group));
    }
}

void lf_readPublishers(pugi::xml_node root) {
    std::set<std::string_view> lines;
    for (const pugi::xml_node node : root.child("publishers").children("pub")) {
        lines.insert(node.attribute("names").value());
    }
    publisherGroups.reserve(kPublisherGroups);
    for (const std::string_view line : lines) {
        if (std::vector<std::string> group = lf_pieces(line); !group.empty()) {
            publisherGroups.push_back(std::move(group));
        }
    }
    gf_log(fmt::format("{} publishers read", publisherGroups.size()));
}

/// 0 for what is no span: a missing attribute, a text that doesn't begin with a number, nan and the like.
f64 lf_metres(pugi::xml_attribute attribute) {
    const std::string_view text = gf_trim(attribute.value());
    f64 metres = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), metres);
    return fault == std::errc{} && std::isfinite(metres) && metres > 0 ? metres : 0;
}

void lf_averageHalfSpans() {
    std::array<f64, kClassCount> sums{}, counts{};
    for (const auto& [type, span] : halfSpans) {
        const auto acClass = static_cast<std::size_t>(gf_acClass(type));
        sums[acClass] += span;
        counts[acClass] += 1;
    }
    for (std::size_t c = 0; c < sums.size(); ++c) classHalfSpan[c] = counts[c] > 0 ? sums[c] / counts[c] : 0;
}

void lf_readWingspans(pugi::xml_node root) {
    for (const pugi::xml_node node : root.child("wingspans").children("wingspan")) {
        const std::string_view type = node.attribute("type").value();
        if (!gf_isValidType(type)) {
            gf_logError(fmt::format("wingspan model {} is not valid, skipped", type));
            continue;
        }
        const f64 span = lf_metres(node.attribute("meters")) * 0.5 / kMetresPerNm;
        halfSpans.try_emplace(std::string(type), span);
        maxHalfSpan = std::max(maxHalfSpan, span);
    }
    lf_averageHalfSpans();
}

void lf_readFixes(pugi::xml_node root) {
    for (const pugi::xml_node node : root.child("fixes").children("fx")) {
        const std::string_view wrong = node.attribute("wro").value();
        const std::string_view correct = node.attribute("cor").value();
        if (!gf_isValidType(correct)) {
            gf_logError(fmt::format("wrong fix {} -> {}, the latter is not valid", wrong, correct));
        } else if (!typeFixes.try_emplace(std::string(wrong), correct).second) {
            gf_logError(fmt::format("wrong part of fix: '{}', already exists, skipped", wrong));
        }
    }
}

void lf_readThirdParties(pugi::xml_node root, const char* section, const char* child, std::size_t room,
                         std::vector<AirportList>& lists) {
    lists.reserve(room);
    for (const pugi::xml_node node : root.child(section).children(child)) {
        lists.push_back({node.attribute("pub").value(), lf_pieces(node.attribute("arpts").value())});
    }
}

/// All sections but `dbase`, in the order of the file format.
void lf_readSmallSections(pugi::xml_node root) {
    lf_readSet(root, "aircrafts", "aircraft", "types", aircraftTypes);
    lf_readClass(root, "high_performance", "hpf", HighPerf);
    lf_readClass(root, "heavy", "hvy", Heavy);
    lf_readClass(root, "large", "lar", Large);
    lf_readClass(root, "buzjet", "bzj", Buzjets);
    lf_readClass(root, "rotorcraft", "rot", Rotorcraft);
    lf_readSet(root, "cargo_types", "cargo_type", "types", cargoTypes);
    lf_readSimilarGroups(root);
    lf_readSet(root, "ICAO_airlines", "ICAO", "codes", icaoAirlines);
    lf_readSet(root, "cargo_operators", "ICAO", "codes", cargoOperators);
    lf_readPublishers(root);
    lf_readWingspans(root);
    lf_readFixes(root);
    lf_readSet(root, "simaddons20", "simaddon20", "arpts", simAddons20);
    lf_readThirdParties(root, "thirdparties20", "thirdpartie20", kThirdParties20, thirdParties20);
    lf_readThirdParties(root, "thirdparties24", "thirdpartie24", kThirdParties24, thirdParties24);
}

/// The `db` elements among the children of a node.
void lf_readAirframes(pugi::xml_node parent) {
    for (const pugi::xml_node node : parent.children("db")) {
        const DbaseRecord record{node.attribute("airl").value(), node.attribute("type").value(),
                                 node.attribute("opr").value(), node.attribute("cargo").as_bool()};
        const std::string_view registration = node.attribute("reg").value();
        if (!dbaseRecords.add(registration, record)) {
            gf_logError(fmt::format("regcode {} already exists", registration));
        }
    }
}

std::string lf_readAirframesInPieces(char* body, std::size_t size) {
    dbaseRecords.reserve(size / kBytesPerAirframe, size / kBytesPerAirframe * kBytesPerRegistration);
    pugi::xml_document piece;
    while (size > 0) {
        const std::size_t length = gf_pieceLength({body, size}, kPieceBytes);
        const pugi::xml_parse_result result =
            piece.load_buffer_inplace(body, length, pugi::parse_default | pugi::parse_fragment, pugi::encoding_utf8);
        if (!result) return result.description();
        lf_readAirframes(piece);
        body += length;
        size -= length;
    }
    return {};
}

/// Reads a document that must be parsed as a whole.
std::string lf_readWhole(std::string& text) {
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_buffer_inplace(text.data(), text.size());
    if (!result) return result.description();
    const pugi::xml_node root = gf_rootOf(document);
    lf_readSmallSections(root);
    lf_readAirframes(root.child("dbase"));
    return {};
}

/// Reads the document without the body of `dbase`, which is nearly all of it, and then that body piece by piece.
std::string lf_readInPieces(std::string& text, const ElementBody& body) {
    std::string frame = text.substr(0, body.begin) + text.substr(body.end);
    {
        pugi::xml_document document;
        const pugi::xml_parse_result result = document.load_buffer_inplace(frame.data(), frame.size());
        if (result.encoding != pugi::encoding_utf8) return lf_readWhole(text);
        if (!result) return result.description();
        lf_readSmallSections(gf_rootOf(document));
    }
    return lf_readAirframesInPieces(text.data() + body.begin, body.end - body.begin);
}

std::string lf_readTables(std::string text) {
    const std::optional<ElementBody> body = gf_findElementBody(text, "dbase");
    return body ? lf_readInPieces(text, *body) : lf_readWhole(text);
}

/// The plain form of the data file, which never outlives the reading.
struct PlainFile {
    const std::filesystem::path& path;

    explicit PlainFile(const std::filesystem::path& plainPath) : path(plainPath) {}
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;
    ~PlainFile() { gf_removeIfPresent(path); }

    /// Nothing if it can't be read.
    std::optional<std::string> text() const {
        std::ifstream stream(path, std::ios::binary | std::ios::ate);
        if (!stream) return std::nullopt;
        std::string content(static_cast<std::size_t>(stream.tellg()), '\0');
        stream.seekg(0);
        stream.read(content.data(), static_cast<std::streamsize>(content.size()));
        if (!stream) return std::nullopt;
        return content;
    }
};

std::string lf_readPlainFile(const PlainFile& file) {
    std::optional<std::string> text = file.text();
    return text ? gf_readDbaseText(std::move(*text)) : "the file can't be read";
}

}  // namespace

std::string gf_readDbaseText(std::string text) {
    gf_forgetDbase();
    std::string fault = lf_readTables(std::move(text));
    if (!fault.empty()) gf_forgetDbase();
    dbaseRecords.shrink();
    return fault;
}

bool gf_readDbase() {
    const FileNames& files = gFiles();
    if (!std::filesystem::exists(files.dbaseEnc)) {
        throw std::runtime_error(fmt::format("{} not available", gf_pathToUtf8(files.dbaseEnc)));
    }
    if (!gf_streamDecrypt(files.dbaseEnc, files.dbaseXml)) {
        throw std::runtime_error(gf_decryptFaultText(files.dbaseEnc));
    }
    const PlainFile plain(files.dbaseXml);
    if (const std::string fault = lf_readPlainFile(plain); !fault.empty()) {
        gf_logError(fmt::format("'{}' not read because of {}", gf_pathToUtf8(plain.path), fault));
        return false;
    }
    gf_log(fmt::format("{} dbase records read", dbaseRecords.size()));
    gf_logFlush();
    return true;
}

}  // namespace hcr
