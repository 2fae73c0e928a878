#pragma once

#include <chrono>
#include <condition_variable>
#include <list>
#include <mutex>
#include <optional>
#include <string>

#include "supportsdk/platform/Values.h"

namespace supportsdk::service {

struct Fault {
    enum class Kind {
        /// The right answer, late.
        delay,
        /// No answer while the fault is there; then the connection closes.
        silence,
        /// The connection closes without an answer.
        drop,
        /// The right answer, but the connection closes halfway through its body.
        cut,
        /// Another answer altogether; the request is not carried out.
        answer,
        /// The right answer under another content type.
        contentType,
    };

    int id = 0;
    Kind kind = Kind::answer;
    /// "" fits any.
    std::string method;
    /// A path; one that ends in "*" fits all that begin so.
    std::string path;
    /// How many requests it still strikes; 0 is without end.
    int times = 1;
    std::chrono::milliseconds delay{0};
    int status = 200;
    std::string content;
    std::string contentType;
    Json headers = Json::object();

    /// How it is given and listed: "kind" is one of delay, silence, drop, cut, status, garbage,
    /// list, contentType and answer. Nothing when a member is missing or makes no sense.
    static std::optional<Fault> read(const Json& json);
    [[nodiscard]] Json write() const;
};

/// What is to go wrong, by route. Any thread.
class Faults {
 public:
    /// Its number.
    int add(Fault fault);
    /// False when there is none.
    bool remove(int id);
    void clear();
    [[nodiscard]] Json list() const;

    /// The oldest fault that fits, counted down.
    [[nodiscard]] std::optional<Fault> take(const std::string& method, const std::string& path);

    /// Returns after `time`, or when everything ends.
    void wait(std::chrono::milliseconds time);
    /// Returns when the faults are cleared, or everything ends.
    void waitForClear();
    /// Ends all waiting, now and later.
    void close();

 private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::list<Fault> faults_;
    int last_ = 0;
    int clears_ = 0;
    bool closed_ = false;
};

}  // namespace supportsdk::service
