#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/core/Support.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Screens.h"

namespace supportsdk {

/// Taps on the version that switch developer mode.
inline constexpr int kTapsToEnter = 10;

/// "SDK Settings": shows the kit's version, and in developer mode lets a developer take another
/// configuration into use. What is entered takes effect when the screen disappears. Main thread
/// only.
class SUPPORTSDK_API SettingsViewController : public ScreenController {
 public:
    /// What the screen asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        virtual void reloadTable() = 0;
        /// Shows a picker of these names with "Done" and "Cancel"; none is selected in advance.
        virtual void showServerPicker(const std::vector<std::string>& names) = 0;
        virtual void removeServerPicker() = 0;
    };

    /// Reads a code with the camera.
    class BarcodeScanner {
     public:
        virtual ~BarcodeScanner() = default;
        /// Opens over `screen`; `found` runs at most once, on the main thread.
        virtual void scan(ScreenController& screen,
                          std::function<void(const std::string& code)> found) = 0;
    };

    explicit SettingsViewController(std::shared_ptr<Support> support);

    [[nodiscard]] std::string_view className() const override { return "SettingsViewController"; }
    /// Puts the configuration that was noted, if any, on trial.
    void viewDidDisappear() override;

    /// 1, or 2 in developer mode.
    [[nodiscard]] std::size_t numberOfSections() const;
    [[nodiscard]] std::size_t numberOfRows(std::size_t section) const;
    /// "" for none.
    [[nodiscard]] std::string headerOfSection(std::size_t section) const;
    /// "" when there is no such row.
    [[nodiscard]] std::string textOfRow(std::size_t section, std::size_t row) const;
    void didSelectRow(std::size_t section, std::size_t row);

    /// Moves the picker to the server of that name.
    void didMovePicker(const std::string& name);
    void didFinishPicker();
    void didCancelPicker();

    /// Takes a scanned code: an address ("http...") at which the configuration lies, or the
    /// configuration itself. An address is read off the main thread within 10 seconds, up to 1 MiB.
    void didScan(const std::string& code);

    /// Notes a configuration for the moment when the screen disappears.
    void updateJSON(const Json& dictionary) { updatedJSON = dictionary; }

    std::weak_ptr<View> view;
    /// Without one, nothing can be scanned.
    std::shared_ptr<BarcodeScanner> scanner;

    int tapsSoFar = 0;
    bool developerMode = false;
    bool isServerPickerShown = false;
    std::optional<std::string> selectedServer;
    std::optional<Json> updatedJSON;

 private:
    void versionTapped();
    void changeDeveloperMode();
    void scanCode();
    void pasteConfiguration();
    void showServerPicker();
    void removeServerPicker();
    void askForParameters();
    void didEnterParameters(const std::string& integrationId, const std::string& apiKey);
    void didPaste(const std::string& text);
    void useScannedText(const std::optional<std::string>& text);
    std::optional<Json> parseConfiguration(const std::string& text);
    void showError(const char* text) const;
    [[nodiscard]] std::string localized(const char* text) const;
    std::weak_ptr<SettingsViewController> weakSelf();

    std::shared_ptr<Support> support_;
    std::map<std::string, std::string> servers_;
};

}  // namespace supportsdk
