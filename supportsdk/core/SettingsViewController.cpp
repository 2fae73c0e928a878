#include "supportsdk/core/SettingsViewController.h"

#include <array>
#include <utility>

#include "supportsdk/core/Configuration.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk {

namespace {

constexpr std::array developerRows{"Scan QR Code", "Paste JSON Configuration", "Enter Parameters",
                                   "Reset to Default"};
constexpr std::chrono::seconds codeTimeLimit{10};
constexpr std::size_t maximumCodeBytes = std::size_t{1024} * 1024;

std::optional<std::string> readAddress(HttpClient& http, const std::string& address) {
    const auto data = http.read(address, codeTimeLimit);
    if (!data || data->size() > maximumCodeBytes) return std::nullopt;
    return toText(*data);
}

}  // namespace

SettingsViewController::SettingsViewController(std::shared_ptr<Support> support)
    : developerMode(Configuration::isDeveloperMode(*support->platform)),
      support_(std::move(support)),
      servers_(support_->config->deployment.developerServers) {
    title = localized("SDK Settings");
}

void SettingsViewController::viewDidDisappear() {
    if (const auto noted = std::exchange(updatedJSON, std::nullopt)) {
        support_->reloadWithJSON(noted);
    }
}

std::size_t SettingsViewController::numberOfSections() const {
    return developerMode ? 2 : 1;
}

std::size_t SettingsViewController::numberOfRows(std::size_t section) const {
    if (section >= numberOfSections()) return 0;
    return section == 0 ? 1 : developerRows.size();
}

std::string SettingsViewController::headerOfSection(std::size_t section) const {
    return section == 1 && developerMode ? localized("Developer Mode") : "";
}

std::string SettingsViewController::textOfRow(std::size_t section, std::size_t row) const {
    if (row >= numberOfRows(section)) return "";
    if (section == 1) return localized(developerRows.at(row));
    return support_->supportSDKName.value_or("(null)") + " Version " +
           support_->supportSDKVersion.value_or("(null)") + " Build " +
           support_->supportSDKBuild.value_or("(null)");
}

void SettingsViewController::didSelectRow(std::size_t section, std::size_t row) {
    if (row >= numberOfRows(section)) return;
    if (section == 0) return versionTapped();
    switch (row) {
        case 0:
            return scanCode();
        case 1:
            return pasteConfiguration();
        case 2:
            return showServerPicker();
        default:
            return support_->restoreDefaultConfiguration();
    }
}

void SettingsViewController::versionTapped() {
    if (++tapsSoFar == kTapsToEnter) changeDeveloperMode();
}

void SettingsViewController::changeDeveloperMode() {
    tapsSoFar = 0;
    developerMode = !developerMode;
    Configuration::enableDeveloperMode(*support_->platform, developerMode);
    if (const auto shown = view.lock()) shown->reloadTable();
}

void SettingsViewController::scanCode() {
    removeServerPicker();
    if (!scanner) return;
    scanner->scan(*this, [weak = weakSelf()](const std::string& code) {
        if (const auto self = weak.lock()) self->didScan(code);
    });
}

void SettingsViewController::pasteConfiguration() {
    removeServerPicker();
    Alert alert;
    alert.title = localized("Enter JSON Parameters");
    alert.fields = {{localized("Paste JSON here"), ""}};
    alert.actions = {{localized("OK"), ActionStyle::plain,
                      [weak = weakSelf()](const std::vector<std::string>& fields) {
                          const auto self = weak.lock();
                          if (self && !fields.empty()) self->didPaste(fields[0]);
                      }},
                     {localized("Cancel"), ActionStyle::cancel, {}}};
    support_->platform->presenter->showAlert(std::move(alert));
}

void SettingsViewController::didPaste(const std::string& text) {
    if (const auto dictionary = parseConfiguration(text)) {
        updateJSON(*dictionary);
    } else {
        showError("That does not appear to be valid JSON. Please try again.");
    }
}

void SettingsViewController::showServerPicker() {
    std::vector<std::string> names;
    for (const auto& [name, host] : servers_) names.push_back(name);
    isServerPickerShown = true;
    if (const auto shown = view.lock()) shown->showServerPicker(names);
}

void SettingsViewController::removeServerPicker() {
    if (!std::exchange(isServerPickerShown, false)) return;
    if (const auto shown = view.lock()) shown->removeServerPicker();
}

void SettingsViewController::didMovePicker(const std::string& name) {
    if (servers_.contains(name)) selectedServer = name;
}

void SettingsViewController::didFinishPicker() {
    removeServerPicker();
    askForParameters();
}

void SettingsViewController::didCancelPicker() {
    removeServerPicker();
}

void SettingsViewController::askForParameters() {
    Alert alert;
    alert.title = localized("Paste JSON Configuration");
    alert.fields = {{localized("Enter integration id"), ""}, {localized("Enter API key"), ""}};
    alert.actions = {{localized("OK"), ActionStyle::plain,
                      [weak = weakSelf()](const std::vector<std::string>& fields) {
                          const auto self = weak.lock();
                          if (self && fields.size() > 1)
                              self->didEnterParameters(fields[0], fields[1]);
                      }},
                     {localized("Cancel"), ActionStyle::cancel, {}}};
    support_->platform->presenter->showAlert(std::move(alert));
}

void SettingsViewController::didEnterParameters(const std::string& integrationId,
                                                const std::string& apiKey) {
    if (integrationId.empty() || apiKey.empty()) {
        return showError("Both an integration id and api key are required.");
    }
    // A picker that was never moved names no server: the trial then fails and is rolled back.
    const auto server = selectedServer ? servers_.find(*selectedServer) : servers_.end();
    updateJSON({{"apiHost", server == servers_.end() ? "" : server->second},
                {"integrationId", integrationId},
                {"apiKey", apiKey}});
}

void SettingsViewController::didScan(const std::string& code) {
    if (!code.starts_with("http")) return useScannedText(code);
    support_->platform->backgroundQueue->post([weak = weakSelf(), http = support_->platform->http,
                                               mainQueue = support_->platform->mainQueue, code] {
        auto text = readAddress(*http, code);
        mainQueue->post([weak, text = std::move(text)] {
            if (const auto self = weak.lock()) self->useScannedText(text);
        });
    });
}

void SettingsViewController::useScannedText(const std::optional<std::string>& text) {
    const auto dictionary = text ? parseConfiguration(*text) : std::nullopt;
    if (dictionary) {
        updateJSON(*dictionary);
    } else {
        showError("That QR code does not provide any usable information.");
    }
}

/// Nothing unless the text is a dictionary; says so itself when it is not even JSON.
std::optional<Json> SettingsViewController::parseConfiguration(const std::string& text) {
    auto json = parseJson(text);
    if (!json) showError("The JSON configuration is not valid.");
    return json && json->is_object() ? std::move(json) : std::nullopt;
}

void SettingsViewController::showError(const char* text) const {
    support_->platform->progress->showError(localized(text));
}

std::string SettingsViewController::localized(const char* text) const {
    return support_->platform->localizer->localized(text);
}

std::weak_ptr<SettingsViewController> SettingsViewController::weakSelf() {
    return std::static_pointer_cast<SettingsViewController>(shared_from_this());
}

}  // namespace supportsdk
