#pragma once

#include <filesystem>
#include <pugixml.hpp>
#include <string>

namespace hcr {

/// Saves UTF-8 with declaration, indented by two blanks, beside the target and then in its place. Any thread.
bool gf_saveXmlDocument(pugi::xml_document& document, const std::filesystem::path& path);
/// Loads with the library's default options.
pugi::xml_parse_result gf_loadXmlDocument(pugi::xml_document& document, const std::filesystem::path& path);
/// The child `root` if there is one, else the document itself.
pugi::xml_node gf_rootOf(const pugi::xml_document& document);

}  // namespace hcr
