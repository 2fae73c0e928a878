#pragma once

#include "hosts/cli/ListAdapter.h"
#include "supportsdk/launcher/HistoryViewController.h"

namespace supportsdk::host {

/// The customer's issues.
class HistoryAdapter : public ListAdapter<HistoryViewController> {
 public:
    using ListAdapter::ListAdapter;

 protected:
    [[nodiscard]] std::size_t numberOfRows() const override { return list().numberOfRows(); }
    [[nodiscard]] Json describeRow(std::size_t row) const override;
    void selectRow(std::size_t row) override { list().didSelectRow(row); }
};

}  // namespace supportsdk::host
