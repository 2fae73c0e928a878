#pragma once

#include <optional>
#include <string>

namespace supportsdk {

/// An absolute http or https address that needed no repair (RFC 3986). One that holds a user name
/// or any character that should have been encoded does not parse.
class HttpAddress {
 public:
    [[nodiscard]] static std::optional<HttpAddress> parse(const std::string& text);

    /// The address that `reference`, absolute or relative, means from here (RFC 3986, section 5).
    [[nodiscard]] std::optional<HttpAddress> resolve(const std::string& reference) const;

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
