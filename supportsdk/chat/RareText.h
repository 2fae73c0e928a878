#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace supportsdk {

/// An optional text that most of its owners lack: one pointer where it is absent. Reads and writes
/// like std::optional<std::string>.
class RareText {
 public:
    RareText() = default;
    RareText(std::nullopt_t) {}
    RareText(std::string text) : text_(std::make_unique<std::string>(std::move(text))) {}
    RareText(const char* text) : RareText(std::string(text)) {}
    RareText(std::optional<std::string> text) {
        if (text) text_ = std::make_unique<std::string>(*std::move(text));
    }
    RareText(const RareText& other) { *this = other; }
    RareText(RareText&&) noexcept = default;
    ~RareText() = default;
    RareText& operator=(const RareText& other) {
        if (this != &other) text_ = other ? std::make_unique<std::string>(*other) : nullptr;
        return *this;
    }
    RareText& operator=(RareText&&) noexcept = default;

    [[nodiscard]] bool has_value() const { return text_ != nullptr; }
    explicit operator bool() const { return has_value(); }
    const std::string& operator*() const { return *text_; }
    const std::string* operator->() const { return text_.get(); }
    [[nodiscard]] std::string value_or(std::string_view other) const {
        return text_ ? *text_ : std::string(other);
    }
    operator std::optional<std::string>() const {
        return text_ ? std::optional(*text_) : std::nullopt;
    }
    void reset() { text_.reset(); }

    friend bool operator==(const RareText& one, const RareText& other) {
        return one.text_ && other.text_ ? *one == *other : !one.text_ && !other.text_;
    }
    template <typename Text>
    requires std::is_convertible_v<const Text&, std::string_view>
    friend bool operator==(const RareText& one, const Text& other) {
        return one && *one == std::string_view(other);
    }
    friend bool operator==(const RareText& one, std::nullopt_t) { return !one; }

 private:
    std::unique_ptr<std::string> text_;
};

}  // namespace supportsdk
