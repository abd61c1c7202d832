#pragma once

#include <filesystem>
#include <pugixml.hpp>
#include <string>
#include <system_error>

namespace hcr {

/// Saves UTF-8 with declaration, indented by two blanks, beside the target and then in its place; false when that
/// can't be done, which is told. Any thread.
bool gf_saveXmlDocument(pugi::xml_document& document, const std::filesystem::path& path);
/// The same for callers that tell it themselves.
bool gf_saveXmlDocument(pugi::xml_document& document, const std::filesystem::path& path, std::error_code& error);
/// Loads with the library's default options.
pugi::xml_parse_result gf_loadXmlDocument(pugi::xml_document& document, const std::filesystem::path& path);
/// The child `root` if there is one, else the document itself.
pugi::xml_node gf_rootOf(const pugi::xml_document& document);

}  // namespace hcr
