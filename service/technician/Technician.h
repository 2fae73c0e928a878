#pragma once

#include <atomic>
#include <chrono>
#include <set>
#include <string>

#include "service/technician/Script.h"

namespace supportsdk::service {

/// Answers in every chat of a local service, by a script, through its /lab. One thread, except
/// stop().
class Technician {
 public:
    /// `lab` is the address of /lab.
    Technician(const std::string& lab, Script script);

    /// Works until stop(), or until the service has been gone for `patience`.
    void run(std::chrono::milliseconds patience);
    /// Makes run() return soon. Any thread.
    void stop() { ending_ = true; }

 private:
    std::optional<Json> call(const std::string& path, const Json* body);
    void answer(const Json& event);
    void greet(const std::string& commId);
    void speak(const std::string& commId, const std::vector<Json>& messages);

    std::string address_;
    std::string prefix_;
    Script script_;
    std::atomic<bool> ending_ = false;
    std::uint64_t after_ = 0;
    std::set<std::string> greeted_;
};

}  // namespace supportsdk::service
