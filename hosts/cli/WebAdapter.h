#pragma once

#include "hosts/cli/ScreenAdapter.h"

namespace supportsdk::host {

/// A web page: `content` has its "url", or its "html".
class WebAdapter : public ScreenAdapter {
 public:
    WebAdapter(std::shared_ptr<ScreenController> screen, Json content)
        : ScreenAdapter(std::move(screen)), content_(std::move(content)) {}

    [[nodiscard]] std::optional<Json> page() const override {
        auto fields = content_;
        fields["title"] = screen().title;
        return fields;
    }

 protected:
    [[nodiscard]] Json state() const override { return content_; }

 private:
    const Json content_;
};

}  // namespace supportsdk::host
