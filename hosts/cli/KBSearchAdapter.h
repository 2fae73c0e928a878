#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "hosts/cli/ScreenAdapter.h"
#include "supportsdk/knowledge/KBSearchViewController.h"

namespace supportsdk::host {

/// The search of the knowledge base: its bar, recent searches and results. The keyboard's search
/// key is the command that sends.
class KBSearchAdapter : public ScreenAdapter, public KBSearchViewController::View {
 public:
    KBSearchAdapter(std::shared_ptr<KBSearchViewController> search, std::function<void()> reloaded)
        : ScreenAdapter(search), search_(std::move(search)), reloaded_(std::move(reloaded)) {}

    bool select(std::size_t section, std::size_t row) override;
    /// The bar is the only text, and has no label.
    bool type(const std::string& text, const std::optional<std::string>& field) override;
    bool send() override;

    void reloadTable() override { reloaded_(); }
    void searchBarDidChange() override { reloaded_(); }

 protected:
    [[nodiscard]] Json state() const override;
    bool pressControl(const std::string& label) override;

 private:
    [[nodiscard]] Json describeSection(std::size_t section) const;

    const std::shared_ptr<KBSearchViewController> search_;
    const std::function<void()> reloaded_;
};

}  // namespace supportsdk::host
