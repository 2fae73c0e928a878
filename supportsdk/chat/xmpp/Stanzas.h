#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "supportsdk/platform/Stanza.h"

namespace supportsdk {

/// The stanzas that the kit writes. All text and addresses pass through cleanText(). Any thread.

namespace xmlns {
inline constexpr const char* muc = "http://jabber.org/protocol/muc";
inline constexpr const char* mucUser = "http://jabber.org/protocol/muc#user";
inline constexpr const char* mucOwner = "http://jabber.org/protocol/muc#owner";
inline constexpr const char* dataForm = "jabber:x:data";
inline constexpr const char* ping = "urn:xmpp:ping";
inline constexpr const char* roster = "jabber:iq:roster";
inline constexpr const char* stanzaErrors = "urn:ietf:params:xml:ns:xmpp-stanzas";
}  // namespace xmlns

/// Servers commonly close a stream over a stanza of 256 KiB; this leaves room for what they add.
inline constexpr std::size_t maximumStanzaBytes = std::size_t{240} * 1024;

/// `text` as XML 1.0 may hold it: control characters other than tab, line feed and carriage return
/// are left out; noncharacters, and each byte that is not UTF-8 (encoded surrogates among them),
/// become U+FFFD.
[[nodiscard]] std::string cleanText(std::string_view text);

/// A random identifier (RFC 9562, version 4) in upper case.
[[nodiscard]] std::string generateUUID();

using StanzaPtr = std::shared_ptr<Stanza>;

/// A new last child of `parent`.
pugi::xml_node appendElement(pugi::xml_node parent, const char* name);
pugi::xml_node appendElement(pugi::xml_node parent, const char* name, std::string_view text);
/// Replaces the attribute when it is there.
void setAttribute(pugi::xml_node element, const char* name, std::string_view value);

/// Without the attributes that are absent.
[[nodiscard]] StanzaPtr makePresence(const std::optional<std::string>& type = {},
                                     const std::optional<std::string>& to = {});
[[nodiscard]] StanzaPtr makeMessage(std::string_view body);
[[nodiscard]] StanzaPtr makeIq(std::string_view type, std::string_view id,
                               const std::optional<std::string>& to = {});
/// The answer to the request `iq`, back to where it came from.
[[nodiscard]] StanzaPtr makeResult(const Stanza& iq);
/// The same with an error (RFC 6120, 8.3) of the type "cancel".
[[nodiscard]] StanzaPtr makeError(const Stanza& iq, const char* condition);

/// "<history maxstanzas='50'/>" (XEP-0045, 7.2.14).
[[nodiscard]] StanzaPtr makeHistory();
/// Entering a room, or asking it for its history: `history` may be null.
[[nodiscard]] StanzaPtr makeRoomPresence(const std::string& to, const Stanza* history);
/// The form `form` with every field `muc#roomconfig_persistentroom` set to "1".
[[nodiscard]] StanzaPtr makePersistentRoomForm(const Stanza& form);

/// The condition of a stanza error; "" when `stanza` has none.
[[nodiscard]] std::string errorCondition(const Stanza& stanza);

}  // namespace supportsdk
