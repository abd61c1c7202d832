#include <cstdint>
#include <cstdlib>
#include <pugixml.hpp>
#include <set>
#include <string>

#include "liveries/dbase.h"
#include "liveries/dbase_reader.h"
#include "shell/messages.h"
#include "shell/xml.h"

// Reference data of any content. The registrations are parsed in pieces; that must find the very ones that a parser
// finds in the whole document.

namespace {

constexpr const char* kNeededSections =
    "<aircrafts><aircraft types='C172,B738'/></aircrafts><high_performance><hpf types='F16'/></high_performance>"
    "<heavy><hvy types='B744'/></heavy><large><lar types='B738'/></large><buzjet><bzj types='C25A'/></buzjet>"
    "<rotorcraft><rot types='EC35'/></rotorcraft><cargo_types><cargo_type types='B744'/></cargo_types>"
    "<ICAO_airlines><ICAO codes='KLM'/></ICAO_airlines><cargo_operators><ICAO codes='GEC'/></cargo_operators>"
    "<simaddons20><simaddon20 arpts='EHAM'/></simaddons20>";

void lf_check(bool good) {
    if (!good) std::abort();
}

void lf_compareWithParser(std::string text, const std::string& fault) {
    const std::string title = text.substr(0, 100);
    pugi::xml_document document;
    if (!document.load_buffer_inplace(text.data(), text.size())) return;
    lf_check(fault.empty());
    std::set<std::string> registrations;
    for (const pugi::xml_node node : hcr::gf_rootOf(document).child("dbase").children("db")) {
        registrations.insert(node.attribute("reg").value());
    }
    lf_check(hcr::dbaseRecords.size() == registrations.size());
    for (const std::string& registration : registrations) {
        lf_check(hcr::dbaseRecords.find(registration) != nullptr);
        hcr::gf_dbaseRecord(registration);
    }
    hcr::gf_regcodeInTitle(title);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    if (text.starts_with('!')) text = std::string("<root>") + kNeededSections + text.substr(1) + "</root>";
    try {
        lf_compareWithParser(text, hcr::gf_readDbaseText(text));
    } catch (const hcr::UserErrorException&) {
        // a section that must not be empty
    }
    return 0;
}
