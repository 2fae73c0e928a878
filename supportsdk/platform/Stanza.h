#pragma once

#include <memory>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>

namespace supportsdk {

/// One XMPP stanza (RFC 6120, section 8) as an XML tree. Immutable once shared; then any thread.
/// A namespace is the value of the element's own `xmlns` attribute or of the nearest ancestor that
/// has one.
class Stanza {
 public:
    /// The only element of `xml`; null when `xml` is not well formed or holds anything but one
    /// element.
    static std::shared_ptr<Stanza> parse(std::string_view xml);

    /// An element without attributes or children.
    explicit Stanza(std::string_view name);

    [[nodiscard]] pugi::xml_node root() const { return document_.document_element(); }
    [[nodiscard]] std::string name() const { return root().name(); }

    /// Nothing when the attribute is missing; "" is a value.
    [[nodiscard]] std::optional<std::string> attribute(const char* name) const;

    /// The first child element of that name and namespace ("" for any); a null node when there is
    /// none.
    [[nodiscard]] pugi::xml_node child(std::string_view name, std::string_view xmlns = {}) const;

    /// All text directly inside the child; nothing when there is no such child.
    [[nodiscard]] std::optional<std::string> childText(std::string_view name) const;

    /// Compact XML without a declaration.
    [[nodiscard]] std::string xml() const;

 private:
    Stanza() = default;

    pugi::xml_document document_;
};

/// The namespace of `node`, by the rule above.
std::string_view namespaceOf(pugi::xml_node node);

/// The first child element of `parent` of that name and namespace ("" for any), else a null node.
pugi::xml_node childOf(pugi::xml_node parent, std::string_view name, std::string_view xmlns = {});

}  // namespace supportsdk
