#pragma once

#include <functional>
#include <memory>

#include "hosts/cli/ScreenAdapter.h"

namespace supportsdk::host {

/// A screen that is one list of rows, which its view reloads as a whole.
template <typename Screen>
class ListAdapter : public ScreenAdapter, public Screen::View {
 public:
    ListAdapter(std::shared_ptr<Screen> list, std::function<void()> reloaded)
        : ScreenAdapter(list), list_(std::move(list)), reloaded_(std::move(reloaded)) {}

    bool select(std::size_t section, std::size_t row) override {
        if (section != 0 || row >= numberOfRows()) return false;
        selectRow(row);
        return true;
    }

    void reloadTable() override { reloaded_(); }

 protected:
    [[nodiscard]] virtual std::size_t numberOfRows() const = 0;
    [[nodiscard]] virtual Json describeRow(std::size_t row) const = 0;
    virtual void selectRow(std::size_t row) = 0;

    [[nodiscard]] Json state() const override {
        Json rows = Json::array();
        for (std::size_t row = 0; row < numberOfRows(); ++row) rows.push_back(describeRow(row));
        return {{"sections", Json::array({{{"rows", std::move(rows)}}})}};
    }

    [[nodiscard]] Screen& list() const { return *list_; }

 private:
    const std::shared_ptr<Screen> list_;
    const std::function<void()> reloaded_;
};

/// Each row is a text.
template <typename Screen>
class TextListAdapter : public ListAdapter<Screen> {
 public:
    using ListAdapter<Screen>::ListAdapter;

 protected:
    [[nodiscard]] std::size_t numberOfRows() const override { return this->list().numberOfRows(); }
    [[nodiscard]] Json describeRow(std::size_t row) const override {
        return {{"label", this->list().textOfRow(row)}};
    }
    void selectRow(std::size_t row) override { this->list().didSelectRow(row); }
};

}  // namespace supportsdk::host
