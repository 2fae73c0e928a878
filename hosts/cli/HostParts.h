#pragma once

#include <map>
#include <memory>
#include <string>

#include "hosts/cli/Reports.h"
#include "supportsdk/platform/Observers.h"
#include "supportsdk/platform/Queues.h"
#include "supportsdk/platform/Screens.h"
#include "supportsdk/platform/UrlOpener.h"

// The small platform parts of this host: each one reports what it is asked to show.

namespace supportsdk::host {

class HostProgress : public Progress {
 public:
    explicit HostProgress(std::shared_ptr<Reports> reports) : reports_(std::move(reports)) {}
    void showStatus(const std::string& text) override { write("progress", text); }
    void showError(const std::string& text) override { write("error", text); }
    void showInfo(const std::string& text) override { write("info", text); }
    void showSuccess(const std::string& text) override { write("success", text); }
    void dismiss() override { reports_->write("dismiss"); }
    void dismissAfter(std::chrono::milliseconds delay) override {
        reports_->write("dismiss", {{"delay", delay.count()}});
    }
    // Nothing is on view for a time, or has a style.
    void setMinimumDisplayTime(std::chrono::milliseconds) override {}
    void setDarkStyle(bool) override {}

 private:
    void write(const char* is, const std::string& text) { reports_->write(is, {{"text", text}}); }

    std::shared_ptr<Reports> reports_;
};

/// Reports the colours that all bars and controls start from, each time one changes.
class HostGlobalAppearance : public GlobalAppearance {
 public:
    explicit HostGlobalAppearance(std::shared_ptr<Reports> reports)
        : reports_(std::move(reports)) {}
    void setNavigationBarTranslucent(bool translucent) override;
    void setNavigationBarTintColor(const std::optional<Color>& color) override;
    void setNavigationBarBarTintColor(const std::optional<Color>& color) override;
    void setControlTintColor(const std::optional<Color>& color) override;

 private:
    void set(const char* what, Json value);

    std::shared_ptr<Reports> reports_;
    std::map<std::string, Json> values_;
};

/// A look that is switched by command, in black and white.
class HostTraits : public Traits {
 public:
    [[nodiscard]] bool darkMode() const override { return isDark_; }
    [[nodiscard]] std::optional<Color> systemColor(const std::string& name) const override;
    [[nodiscard]] Registration observe(std::function<void()> changed) override {
        return observers_.add(std::move(changed));
    }
    void setDark(bool on) {
        isDark_ = on;
        observers_.notify();
    }

 private:
    bool isDark_ = false;
    Observers observers_;
};

/// Opens nothing: an address of a known kind counts as opened.
class HostUrlOpener : public UrlOpener {
 public:
    HostUrlOpener(std::shared_ptr<Reports> reports, std::shared_ptr<MainQueue> queue)
        : reports_(std::move(reports)), queue_(std::move(queue)) {}
    [[nodiscard]] bool canOpen(const std::string& url) override;
    void open(const std::string& url, std::function<void(bool worked)> completion) override;
    [[nodiscard]] bool canSendMail() override { return true; }

 private:
    std::shared_ptr<Reports> reports_;
    std::shared_ptr<MainQueue> queue_;
};

}  // namespace supportsdk::host
