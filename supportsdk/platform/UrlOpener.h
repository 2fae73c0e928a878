#pragma once

#include <functional>
#include <string>

namespace supportsdk {

/// Hands addresses to the system: browser, mail program, telephone. Main thread.
class UrlOpener {
 public:
    virtual ~UrlOpener() = default;

    /// Whether something on this device claims to handle the scheme of `url`.
    [[nodiscard]] virtual bool canOpen(const std::string& url) = 0;

    /// Opens `url`; `completion` runs once, later, on the main thread, and tells whether it worked.
    virtual void open(const std::string& url, std::function<void(bool worked)> completion) = 0;

    /// Whether an e-mail can be composed.
    [[nodiscard]] virtual bool canSendMail() = 0;
};

}  // namespace supportsdk
