#include "supportsdk/platform/Stanza.h"

#include <utility>

namespace supportsdk {

namespace {

/// Entities and character references are decoded; a document type is neither parsed nor expanded.
bool load(pugi::xml_document& document, std::string_view xml) {
    return document.load_buffer(xml.data(), xml.size(),
                                pugi::parse_default | pugi::parse_ws_pcdata);
}

struct TextWriter : pugi::xml_writer {
    void write(const void* data, std::size_t size) override {
        text.append(static_cast<const char*>(data), size);
    }
    std::string text;
};

}  // namespace

std::shared_ptr<Stanza> Stanza::parse(std::string_view xml) {
    std::shared_ptr<Stanza> stanza(new Stanza);
    stanza->tree_ = std::make_unique<pugi::xml_document>();
    if (!load(*stanza->tree_, xml)) return nullptr;
    int elements = 0;
    for (const auto& node : stanza->tree_->children()) {
        if (node.type() == pugi::node_element) ++elements;
    }
    return elements == 1 ? stanza : nullptr;
}

Stanza::Stanza(std::string_view name) : tree_(std::make_unique<pugi::xml_document>()) {
    tree_->append_child(pugi::node_element).set_name(std::string(name).c_str());
}

Stanza::Stanza(StanzaOutline outline) : outline_(std::move(outline)) {}

const pugi::xml_document& Stanza::tree() const {
    if (outline_) {
        std::call_once(parsed_, [this] {
            tree_ = std::make_unique<pugi::xml_document>();
            load(*tree_, outline_->xml());
        });
    }
    return *tree_;
}

std::string_view Stanza::name() const {
    return outline_ ? outline_->name() : root().name();
}

std::optional<std::string_view> Stanza::attributeView(const char* name) const {
    if (outline_) return outline_->attribute(name);
    const auto found = root().attribute(name);
    return found ? std::optional<std::string_view>(found.value()) : std::nullopt;
}

std::optional<std::string> Stanza::attribute(const char* name) const {
    const auto found = attributeView(name);
    return found ? std::optional<std::string>(*found) : std::nullopt;
}

pugi::xml_node Stanza::child(std::string_view name, std::string_view xmlns) const {
    // The outline knows of what is not there without a tree.
    if (outline_ && !outline_->child(name, xmlns)) return {};
    return childOf(root(), name, xmlns);
}

bool Stanza::hasChild(std::string_view name, std::string_view xmlns) const {
    return outline_ ? bool(outline_->child(name, xmlns)) : bool(childOf(root(), name, xmlns));
}

std::optional<std::string_view> Stanza::childAttribute(std::string_view name,
                                                       std::string_view xmlns,
                                                       const char* attribute) const {
    if (outline_) return outline_->child(name, xmlns).attribute(attribute);
    const auto found = childOf(root(), name, xmlns).attribute(attribute);
    return found ? std::optional<std::string_view>(found.value()) : std::nullopt;
}

std::optional<std::string> Stanza::childText(std::string_view name) const {
    if (outline_) {
        const auto found = outline_->child(name, {});
        return found ? std::optional<std::string>(found.text()) : std::nullopt;
    }
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
    if (outline_) return outline_->xml();
    TextWriter writer;
    root().print(writer, "", pugi::format_raw);
    return std::move(writer.text);
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
