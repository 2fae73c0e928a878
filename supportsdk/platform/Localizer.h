#pragma once

#include <string>

namespace supportsdk {

/// Translations of the texts that a person sees. The key is the English text. Main thread.
class Localizer {
 public:
    virtual ~Localizer() = default;

    /// The translation into the language of the user; `english` itself when there is none.
    [[nodiscard]] virtual std::string localized(const std::string& english) const = 0;
};

}  // namespace supportsdk
