#pragma once

#include "hosts/cli/ListAdapter.h"
#include "supportsdk/knowledge/KBListViewController.h"

namespace supportsdk::host {

/// The knowledge base: folders, open or closed, and articles, indented.
class KBListAdapter : public ListAdapter<KBListViewController> {
 public:
    using ListAdapter::ListAdapter;

 protected:
    [[nodiscard]] std::size_t numberOfRows() const override;
    [[nodiscard]] Json describeRow(std::size_t row) const override;
    void selectRow(std::size_t row) override;
};

}  // namespace supportsdk::host
