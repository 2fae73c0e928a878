#include "supportsdk/platform/StanzaOutline.h"

#include <array>

#include "supportsdk/platform/Stanza.h"

namespace supportsdk {

namespace {

/// The characters that cannot stand for themselves.
using Escaped = std::array<bool, 256>;

constexpr Escaped escapedBesides(std::string_view controls, std::string_view others) {
    Escaped escaped{};
    for (std::size_t control = 0; control < 0x20; ++control)
        escaped[control] = controls.find(static_cast<char>(control)) == std::string_view::npos;
    for (const char other : others) escaped[static_cast<unsigned char>(other)] = true;
    return escaped;
}

constexpr Escaped escapedInText = escapedBesides("\t\n", "&<>");
constexpr Escaped escapedInQuotes = escapedBesides("", "&<\"");

void appendEntity(std::string& xml, char character) {
    switch (character) {
        case '&':
            xml += "&amp;";
            return;
        case '<':
            xml += "&lt;";
            return;
        case '>':
            xml += "&gt;";
            return;
        case '"':
            xml += "&quot;";
            return;
        default:
            xml += "&#" + std::to_string(static_cast<unsigned char>(character)) + ";";
    }
}

}  // namespace

std::optional<std::string_view> StanzaOutline::attributeFrom(std::size_t note,
                                                             std::string_view name) const {
    for (; note < notes_.size() && notes_[note].kind != Kind::element; ++note) {
        if (notes_[note].kind == Kind::attribute && view(notes_[note].name) == name)
            return view(notes_[note].value);
    }
    return std::nullopt;
}

std::optional<std::string_view> StanzaOutline::attribute(std::string_view name) const {
    return attributeFrom(0, name);
}

StanzaOutline::Child StanzaOutline::child(std::string_view name, std::string_view xmlns) const {
    // Looked up once at most: a stanza may have thousands of attributes and children.
    std::optional<std::string_view> inherited;
    for (std::size_t at = 0; at < notes_.size(); ++at) {
        if (notes_[at].kind != Kind::element || view(notes_[at].name) != name) continue;
        const Child found{this, at};
        if (xmlns.empty()) return found;
        const auto own = found.attribute("xmlns");
        if (!own && !inherited) inherited = attribute("xmlns").value_or("");
        if ((own ? *own : *inherited) == xmlns) return found;
    }
    return {};
}

std::optional<std::string_view> StanzaOutline::Child::attribute(std::string_view name) const {
    return outline ? outline->attributeFrom(at + 1, name) : std::nullopt;
}

std::string_view StanzaOutline::Child::text() const {
    for (auto note = at + 1; outline && note < outline->notes_.size(); ++note) {
        if (outline->notes_[note].kind == Kind::element) break;
        if (outline->notes_[note].kind == Kind::text)
            return outline->view(outline->notes_[note].value);
    }
    return {};
}

StanzaOutline::Slice StanzaBuilder::append(std::string_view text) {
    auto& xml = scratch_.xml_;
    const Slice slice{static_cast<std::uint32_t>(xml.size()),
                      static_cast<std::uint32_t>(text.size()), false};
    xml += text;
    return slice;
}

StanzaOutline::Slice StanzaBuilder::appendEscaped(std::string_view text, bool quoted) {
    std::size_t plain = 0;
    const auto& escaped = quoted ? escapedInQuotes : escapedInText;
    while (plain < text.size() && !escaped[static_cast<unsigned char>(text[plain])]) ++plain;
    if (plain == text.size()) return append(text);
    auto& decoded = scratch_.decoded_;
    const Slice slice{static_cast<std::uint32_t>(decoded.size()),
                      static_cast<std::uint32_t>(text.size()), true};
    decoded += text;
    for (const char character : text) {
        if (escaped[static_cast<unsigned char>(character)]) {
            appendEntity(scratch_.xml_, character);
        } else {
            scratch_.xml_ += character;
        }
    }
    return slice;
}

void StanzaBuilder::endTag() {
    if (inTag_) scratch_.xml_ += '>';
    inTag_ = false;
}

void StanzaBuilder::open(std::string_view name) {
    endTag();
    scratch_.xml_ += '<';
    open_.push_back(append(name));
    inTag_ = true;
    if (open_.size() == 1) scratch_.name_ = open_.back();
    if (open_.size() == 2) scratch_.notes_.push_back({Kind::element, open_.back(), {}});
}

void StanzaBuilder::attribute(std::string_view name, std::string_view value) {
    scratch_.xml_ += ' ';
    const auto nameSlice = append(name);
    scratch_.xml_ += "=\"";
    const auto valueSlice = appendEscaped(value, true);
    scratch_.xml_ += '"';
    if (open_.size() > 2) return forget(valueSlice);
    scratch_.notes_.push_back({Kind::attribute, nameSlice, valueSlice});
}

void StanzaBuilder::text(std::string_view value) {
    endTag();
    const auto slice = appendEscaped(value, false);
    if (open_.size() != 2) return forget(slice);
    noteText(slice);
}

void StanzaBuilder::forget(Slice slice) {
    if (slice.decoded) scratch_.decoded_.resize(slice.offset);
}

void StanzaBuilder::noteText(Slice slice) {
    auto& last = scratch_.notes_.back();
    if (last.kind != Kind::text) {
        scratch_.notes_.push_back({Kind::text, {}, slice});
        return;
    }
    // Interrupted by an element: what follows is put behind the first piece. That piece, once it is
    // decoded, is the last thing decoded, because nothing deeper is kept.
    auto& decoded = scratch_.decoded_;
    if (!slice.decoded) decoded += scratch_.view(slice);
    if (!last.value.decoded) {
        const auto at = static_cast<std::uint32_t>(decoded.size() - slice.size);
        decoded.insert(at, std::string(scratch_.view(last.value)));
        last.value.offset = at;
        last.value.decoded = true;
    }
    last.value.size += slice.size;
}

void StanzaBuilder::close() {
    if (inTag_) {
        scratch_.xml_ += "/>";
    } else {
        // Not by append(): the name is a part of the text that it is added to.
        const Slice name = open_.back();
        auto& xml = scratch_.xml_;
        xml += "</";
        xml.append(xml, name.offset, name.size);
        xml += '>';
    }
    inTag_ = false;
    open_.pop_back();
}

std::shared_ptr<const Stanza> StanzaBuilder::finish() {
    // A copy has the size that is needed, and the builder keeps its room for the next one.
    auto stanza = std::make_shared<const Stanza>(StanzaOutline(scratch_));
    scratch_.xml_.clear();
    scratch_.decoded_.clear();
    scratch_.notes_.clear();
    return stanza;
}

}  // namespace supportsdk
