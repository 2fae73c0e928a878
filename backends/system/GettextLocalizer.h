#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "backends/system/GettextCatalog.h"
#include "supportsdk/platform/Localizer.h"

namespace supportsdk {

/// Translations from catalogues of GNU gettext, `<folder>/<language>/LC_MESSAGES/supportsdk.mo`.
/// They are read here and not through libintl: that follows the locale of the process, which is the
/// host's to set, and binds text domains for all of it.
class GettextLocalizer final : public Localizer {
 public:
    /// `languages` by preference, as "de_AT" or "de"; each also stands for its language without the
    /// territory. The first with a catalogue wins; English needs none. The catalogue is read with
    /// the first text.
    GettextLocalizer(std::filesystem::path folder, std::vector<std::string> languages)
        : folder_(std::move(folder)), languages_(std::move(languages)) {}

    [[nodiscard]] std::string localized(const std::string& english) const override;

 private:
    [[nodiscard]] std::optional<GettextCatalog> loadCatalog() const;

    const std::filesystem::path folder_;
    const std::vector<std::string> languages_;
    mutable bool loaded_ = false;
    mutable std::optional<GettextCatalog> catalog_;
};

/// The languages that the environment asks for, by preference: those of LANGUAGE, unless the locale
/// for messages (LC_ALL, LC_MESSAGES or LANG, the first that is not empty) is C or POSIX or
/// missing; then that locale's own. Empty for English texts.
std::vector<std::string> languagesOfEnvironment();

}  // namespace supportsdk
