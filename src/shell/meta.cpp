#include "shell/meta.h"

#include "shell/log.h"
#include "shell/time_text.h"
#include "shell/version.h"
#include "shell/xml.h"

namespace hcr {
namespace {

constexpr const char* kCopyright = "Made by Halcyrane; free to use, to change and to pass on";

bool lf_addInfo(pugi::xml_node meta, const char* name, const std::string& value) {
    pugi::xml_node info = meta.append_child("info");
    return info.append_attribute("name").set_value(name) && info.append_attribute("value").set_value(value.c_str());
}

}  // namespace

void MetaInfo::setSim(i32 code) {
    sim = code;
    if (code == 1 || code == 2) {
        formerSim.clear();
        msfs = code == 1 ? "2020" : "2024";
    } else if (code == 3) {
        formerSim = "v56";
        msfs.clear();
    }
}

bool gf_writeMeta(pugi::xml_document& document, const MetaInfo& info) {
    pugi::xml_node root = document.child("root");
    if (!root) root = document.append_child("root");
    pugi::xml_node meta = root.append_child("meta");
    bool good = lf_addInfo(meta, "author", kProgramName);
    good &= lf_addInfo(meta, "version", info.version);
    good &= lf_addInfo(meta, "date", gf_dateText());
    good &= lf_addInfo(meta, "copyright", kCopyright);
    if (info.sim > 0) return lf_addInfo(meta, "sim", std::to_string(info.sim)) && good;
    if (!info.formerSim.empty()) return lf_addInfo(meta, "P3D", info.formerSim) && good;
    return lf_addInfo(meta, "MSFS", info.msfs) && good;
}

std::optional<MetaInfo> gf_readMeta(const pugi::xml_document& document, bool simOptional) {
    const pugi::xml_node meta = gf_rootOf(document).child("meta");
    const auto item = [&](const char* name) { return meta.find_child_by_attribute("info", "name", name); };
    const auto value = [&](const char* name) { return item(name).attribute("value").as_string(); };
    if (!item("copyright")) return std::nullopt;
    if (*value("copyright") == '\0') {
        gf_logError("no copyright info in the file?");
        return std::nullopt;
    }
    if (!simOptional && !item("sim") && !item("P3D") && !item("MSFS")) return std::nullopt;

    MetaInfo info;
    info.author = value("author");
    info.version = value("version");
    info.date = value("date");
    info.formerSim = value("P3D");
    info.msfs = value("MSFS");
    if (item("sim")) info.setSim(item("sim").attribute("value").as_int());
    return info;
}

}  // namespace hcr
