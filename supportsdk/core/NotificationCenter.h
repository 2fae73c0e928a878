#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Registration.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// What a notification is about: nothing, a text, a number, or an object kept alive by it.
class NotificationObject {
 public:
    NotificationObject() = default;
    NotificationObject(std::string text) : value_(std::move(text)) {}                // NOLINT
    NotificationObject(const char* text) : value_(std::string(text)) {}              // NOLINT
    NotificationObject(std::int64_t number) : value_(number) {}                      // NOLINT
    NotificationObject(std::shared_ptr<void> object) : value_(std::move(object)) {}  // NOLINT

    /// The text; nothing when it is no text.
    [[nodiscard]] std::optional<std::string> text() const { return as<std::string>(); }
    [[nodiscard]] std::optional<std::int64_t> number() const { return as<std::int64_t>(); }
    /// Null when it is no object.
    [[nodiscard]] std::shared_ptr<void> object() const {
        return as<std::shared_ptr<void>>().value_or(nullptr);
    }

    /// Whether it is this text.
    bool operator==(std::string_view text) const {
        const auto* held = std::get_if<std::string>(&value_);
        return held && *held == text;
    }

 private:
    template <typename T>
    [[nodiscard]] std::optional<T> as() const {
        const auto* held = std::get_if<T>(&value_);
        return held ? std::optional<T>(*held) : std::nullopt;
    }

    std::variant<std::monostate, std::string, std::int64_t, std::shared_ptr<void>> value_;
};

struct Notification {
    std::string name;
    NotificationObject object;
    /// An object; nothing when there is none.
    std::optional<Json> userInfo;
};

/// Hands notifications to whoever observes their name. Any thread; observers run on the thread that
/// posts, in the order of their registration, and outside any lock. Inside a delivery an observer
/// may post, add observers (they get the next one) and end any observation (it gets nothing more).
class SUPPORTSDK_API NotificationCenter {
 public:
    using Handler = std::function<void(const Notification&)>;

    NotificationCenter();
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    /// The one of this process, shared by the kit and its host. It lasts until the process ends.
    static NotificationCenter& shared();

    void post(const std::string& name, NotificationObject object = {},
              std::optional<Json> userInfo = std::nullopt);

    /// Observes until the result is dropped, which may outlive this centre.
    [[nodiscard]] Registration addObserver(const std::string& name, Handler handler);

    /// Observes until removeObserver() or until `object` is gone. Twice means told twice.
    void addObserver(const std::shared_ptr<const void>& object, const std::string& name,
                     Handler handler);
    /// Ends every observation of `name` that was added for `object`.
    void removeObserver(const void* object, const std::string& name);

 private:
    struct Observation;
    struct State;

    std::shared_ptr<State> state_;
};

}  // namespace supportsdk
