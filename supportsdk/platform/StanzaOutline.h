#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace supportsdk {

class Stanza;

/// The XML of a stanza, with notes of where in it the things lie that nearly every reader asks for:
/// the attributes of the root, and its child elements with their attributes and own text. A chat
/// line is read from these alone; a tree would cost it ten times the memory. Immutable, so any
/// thread; what it returns lives as long as it does.
class StanzaOutline {
 public:
    [[nodiscard]] const std::string& xml() const { return xml_; }
    /// In bytes, about.
    [[nodiscard]] std::size_t memory() const {
        return xml_.size() + decoded_.size() + notes_.size() * sizeof(Note);
    }
    [[nodiscard]] std::string_view name() const { return view(name_); }
    [[nodiscard]] std::optional<std::string_view> attribute(std::string_view name) const;
    /// The first child element of that name and namespace ("" for any); null when there is none.
    /// An attribute of it, and all text directly inside it.
    struct Child {
        const StanzaOutline* outline = nullptr;
        std::size_t at = 0;

        explicit operator bool() const { return outline; }
        [[nodiscard]] std::optional<std::string_view> attribute(std::string_view name) const;
        [[nodiscard]] std::string_view text() const;
    };
    [[nodiscard]] Child child(std::string_view name, std::string_view xmlns) const;

 private:
    friend class StanzaBuilder;

    /// A piece of xml_, or of decoded_ where the XML writes it differently.
    struct Slice {
        std::uint32_t offset = 0;
        std::uint32_t size = 0;
        bool decoded = false;
    };
    enum class Kind : std::uint8_t { attribute, element, text };
    /// In the order of the XML: attributes and text belong to the element noted before them, those
    /// before the first one to the root.
    struct Note {
        Kind kind;
        Slice name;
        Slice value;
    };

    [[nodiscard]] std::string_view view(Slice slice) const {
        return std::string_view(slice.decoded ? decoded_ : xml_).substr(slice.offset, slice.size);
    }
    [[nodiscard]] std::optional<std::string_view> attributeFrom(std::size_t note,
                                                                std::string_view name) const;

    std::string xml_;
    std::string decoded_;
    Slice name_;
    std::vector<Note> notes_;
};

/// Writes stanzas down one after the other, as a parser meets their parts. Names must be names of
/// XML; everything else is escaped. One thread at a time.
class StanzaBuilder {
 public:
    /// Begins an element inside the one that is open.
    void open(std::string_view name);
    /// Of the element that was opened last, before anything is put into it.
    void attribute(std::string_view name, std::string_view value);
    void text(std::string_view value);
    void close();
    /// What was written since the last call; every element must be closed.
    [[nodiscard]] std::shared_ptr<const Stanza> finish();

 private:
    using Kind = StanzaOutline::Kind;
    using Slice = StanzaOutline::Slice;

    void endTag();
    void noteText(Slice slice);
    void forget(Slice slice);
    [[nodiscard]] Slice append(std::string_view text);
    [[nodiscard]] Slice appendEscaped(std::string_view text, bool quoted);

    StanzaOutline scratch_;
    /// Names of the open elements.
    std::vector<Slice> open_;
    bool inTag_ = false;
};

}  // namespace supportsdk
