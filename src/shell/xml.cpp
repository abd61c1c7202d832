#include "shell/xml.h"

#include "shell/generations.h"

namespace hcr {
namespace {

constexpr const char* kIndent = "  ";

struct TextWriter : pugi::xml_writer {
    std::string text;
    void write(const void* data, std::size_t size) override { text.append(static_cast<const char*>(data), size); }
};

void lf_setAttribute(pugi::xml_node node, const char* name, const char* value) {
    pugi::xml_attribute attribute = node.attribute(name);
    if (!attribute) attribute = node.append_attribute(name);
    attribute.set_value(value);
}

void lf_completeDeclaration(pugi::xml_document& document) {
    pugi::xml_node declaration = document.first_child();
    if (declaration.type() != pugi::node_declaration) {
        declaration = document.prepend_child(pugi::node_declaration);
        declaration.set_name("xml");
    }
    lf_setAttribute(declaration, "version", "1.0");
    lf_setAttribute(declaration, "encoding", "UTF-8");
}

}  // namespace

bool gf_saveXmlDocument(pugi::xml_document& document, const std::filesystem::path& path, std::error_code& error) {
    lf_completeDeclaration(document);
    TextWriter writer;
    document.save(writer, kIndent, pugi::format_indent, pugi::encoding_utf8);
    return gf_writeInPlace(path, writer.text, error);
}

bool gf_saveXmlDocument(pugi::xml_document& document, const std::filesystem::path& path) {
    std::error_code error;
    if (gf_saveXmlDocument(document, path, error)) return true;
    gf_tellWriteFault(path, error);
    return false;
}

pugi::xml_parse_result gf_loadXmlDocument(pugi::xml_document& document, const std::filesystem::path& path) {
    return document.load_file(path.c_str());
}

pugi::xml_node gf_rootOf(const pugi::xml_document& document) {
    const pugi::xml_node root = document.child("root");
    return root ? root : document;
}

}  // namespace hcr
