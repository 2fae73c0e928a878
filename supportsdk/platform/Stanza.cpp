#include "supportsdk/platform/Stanza.h"

#include <sstream>

namespace supportsdk {

std::shared_ptr<Stanza> Stanza::parse(std::string_view xml) {
    std::shared_ptr<Stanza> stanza(new Stanza);
    // Entities and character references are decoded; a document type is neither parsed nor
    // expanded.
    const auto result = stanza->document_.load_buffer(xml.data(), xml.size(),
                                                      pugi::parse_default | pugi::parse_ws_pcdata);
    if (!result) return nullptr;
    int elements = 0;
    for (const auto& node : stanza->document_.children()) {
        if (node.type() == pugi::node_element) ++elements;
    }
    return elements == 1 ? stanza : nullptr;
}

Stanza::Stanza(std::string_view name) {
    document_.append_child(pugi::node_element).set_name(std::string(name).c_str());
}

std::optional<std::string> Stanza::attribute(const char* name) const {
    const auto found = root().attribute(name);
    return found ? std::optional<std::string>(found.value()) : std::nullopt;
}

pugi::xml_node Stanza::child(std::string_view name, std::string_view xmlns) const {
    return childOf(root(), name, xmlns);
}

std::optional<std::string> Stanza::childText(std::string_view name) const {
    const auto found = child(name);
    if (!found) return std::nullopt;
    std::string text;
    for (const auto& node : found.children()) {
        if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata)
            text += node.value();
    }
    return text;
}

std::string Stanza::xml() const {
    std::ostringstream out;
    root().print(out, "", pugi::format_raw);
    return std::move(out).str();
}

std::string_view namespaceOf(pugi::xml_node node) {
    for (; node; node = node.parent()) {
        if (const auto xmlns = node.attribute("xmlns")) return xmlns.value();
    }
    return {};
}

pugi::xml_node childOf(pugi::xml_node parent, std::string_view name, std::string_view xmlns) {
    for (const auto& node : parent.children()) {
        if (node.type() == pugi::node_element && name == node.name() &&
            (xmlns.empty() || namespaceOf(node) == xmlns)) {
            return node;
        }
    }
    return {};
}

}  // namespace supportsdk
