#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "supportsdk/platform/StanzaOutline.h"

namespace supportsdk {

/// One XMPP stanza (RFC 6120, section 8). Immutable once shared; then any thread. A namespace is
/// the value of the element's own `xmlns` attribute or of the nearest ancestor that has one.
///
/// A received one is kept as text with an outline, and becomes an XML tree when somebody asks for
/// root() or child().
class Stanza {
 public:
    /// The only element of `xml`; null when `xml` is not well formed or holds anything but one
    /// element.
    static std::shared_ptr<Stanza> parse(std::string_view xml);

    /// An element without attributes or children.
    explicit Stanza(std::string_view name);

    /// What a StanzaBuilder has written.
    explicit Stanza(StanzaOutline outline);

    [[nodiscard]] pugi::xml_node root() const { return tree().document_element(); }
    /// As long-lived as the stanza.
    [[nodiscard]] std::string_view name() const;

    /// Nothing when the attribute is missing; "" is a value.
    [[nodiscard]] std::optional<std::string> attribute(const char* name) const;
    /// The same without a copy; valid as long as the stanza.
    [[nodiscard]] std::optional<std::string_view> attributeView(const char* name) const;

    /// The first child element of that name and namespace ("" for any); a null node when there is
    /// none.
    [[nodiscard]] pugi::xml_node child(std::string_view name, std::string_view xmlns = {}) const;
    [[nodiscard]] bool hasChild(std::string_view name, std::string_view xmlns = {}) const;

    /// An attribute of that child; nothing when either is missing. Valid as long as the stanza.
    [[nodiscard]] std::optional<std::string_view> childAttribute(std::string_view name,
                                                                 std::string_view xmlns,
                                                                 const char* attribute) const;

    /// All text directly inside the child; nothing when there is no such child.
    [[nodiscard]] std::optional<std::string> childText(std::string_view name) const;

    /// Bytes that a received one takes, about, until somebody asks for its tree; 0 of others.
    [[nodiscard]] std::size_t memory() const { return outline_ ? outline_->memory() : 0; }

    /// Compact XML without a declaration.
    [[nodiscard]] std::string xml() const;

 private:
    Stanza() = default;

    [[nodiscard]] const pugi::xml_document& tree() const;

    const std::optional<StanzaOutline> outline_;
    mutable std::once_flag parsed_;
    mutable std::unique_ptr<pugi::xml_document> tree_;
};

/// The namespace of `node`, by the rule above.
std::string_view namespaceOf(pugi::xml_node node);

/// The first child element of `parent` of that name and namespace ("" for any), else a null node.
pugi::xml_node childOf(pugi::xml_node parent, std::string_view name, std::string_view xmlns = {});

}  // namespace supportsdk
