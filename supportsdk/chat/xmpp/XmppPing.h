#pragma once

#include <functional>
#include <string>

#include "supportsdk/platform/Stanza.h"

namespace supportsdk {

/// Answers pings (XEP-0199). Main thread.
class XmppPing {
 public:
    explicit XmppPing(std::function<void(std::string xml)> send) : send_(std::move(send)) {}

    /// Whether pings are answered; otherwise they are left to others.
    void setRespondsToQueries(bool responds) { responds_ = responds; }

    /// True when `stanza` was a ping and has been answered.
    bool receive(const Stanza& stanza);

 private:
    std::function<void(std::string xml)> send_;
    bool responds_ = true;
};

}  // namespace supportsdk
