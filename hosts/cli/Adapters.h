#pragma once

#include <functional>
#include <memory>

#include "hosts/cli/ScreenAdapter.h"

namespace supportsdk::host {

/// The adapter for the class of `screen`; for one without an adapter of its own, the plain one.
/// `reloaded` runs whenever the screen reloads its picture, and not after the adapter is destroyed.
std::shared_ptr<ScreenAdapter> adapterFor(const std::shared_ptr<ScreenController>& screen,
                                          const std::function<void()>& reloaded);

}  // namespace supportsdk::host
