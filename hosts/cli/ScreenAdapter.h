#pragma once

#include <memory>
#include <optional>
#include <string>

#include "supportsdk/platform/Screens.h"

namespace supportsdk::host {

/// One screen as this host shows it: its state as data, and its controls by their labels. The
/// operations return false when the screen has no such control.
class ScreenAdapter {
 public:
    explicit ScreenAdapter(std::shared_ptr<ScreenController> screen) : screen_(std::move(screen)) {}
    virtual ~ScreenAdapter() = default;
    ScreenAdapter(const ScreenAdapter&) = delete;
    ScreenAdapter& operator=(const ScreenAdapter&) = delete;

    /// Class, title and bar buttons, and what is in state().
    [[nodiscard]] Json describe() const;

    /// A bar button, or whatever else the screen has with that label.
    bool press(const std::string& label);

    /// What the screen's web view shows; nothing when it has none.
    [[nodiscard]] virtual std::optional<Json> page() const { return std::nullopt; }

    virtual bool select(std::size_t section, std::size_t row) {
        (void)section, (void)row;
        return false;
    }
    virtual bool type(const std::string& text, const std::optional<std::string>& field) {
        (void)text, (void)field;
        return false;
    }
    /// Sets a switch or a picker by its label.
    virtual bool set(const std::string& field, const Json& value) {
        (void)field, (void)value;
        return false;
    }
    /// Taps a part of a chat line.
    virtual bool tapLine(const std::string& id, const std::string& part) {
        (void)id, (void)part;
        return false;
    }
    virtual bool send() { return false; }
    virtual bool pull() { return false; }

 protected:
    [[nodiscard]] const ScreenController& screen() const { return *screen_; }
    /// What this screen shows beside title and bars.
    [[nodiscard]] virtual Json state() const { return Json::object(); }
    virtual bool pressControl(const std::string& label) {
        (void)label;
        return false;
    }

 private:
    std::shared_ptr<ScreenController> screen_;
};

}  // namespace supportsdk::host
