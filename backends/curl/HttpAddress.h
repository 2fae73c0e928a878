#pragma once

#include <optional>
#include <string>

namespace supportsdk {

/// An absolute http or https address (RFC 3986). Behind its authority, bytes that may not stand in
/// an address become percent escapes, as in browsers; before that nothing is repaired, and a user
/// name does not parse.
class HttpAddress {
 public:
    [[nodiscard]] static std::optional<HttpAddress> parse(const std::string& raw);

    /// The address that `raw`, absolute or relative, means from here (RFC 3986, section 5).
    [[nodiscard]] std::optional<HttpAddress> resolve(const std::string& raw) const;

    /// With its escapes.
    [[nodiscard]] const std::string& text() const { return text_; }
    /// Host and port, for people.
    [[nodiscard]] std::string name() const { return host_ + ":" + port_; }
    [[nodiscard]] bool isSecure() const { return scheme_ == "https"; }
    [[nodiscard]] bool isLoopback() const;
    /// The same scheme, host and port.
    [[nodiscard]] bool hasOriginOf(const HttpAddress& other) const;

 private:
    HttpAddress() = default;

    std::string text_;
    std::string scheme_;
    std::string host_;
    std::string port_;
};

}  // namespace supportsdk
