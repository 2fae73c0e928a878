#pragma once

#include <memory>
#include <optional>
#include <string>

#include "supportsdk/core/NotificationCenter.h"

namespace supportsdk {

/// The channel between the kit and its host: one notification of the shared NotificationCenter,
/// whose object is the name of the event or request (core/EventNames.h). Observers get all of them
/// and pick theirs by the object. Threads and delivery are those of NotificationCenter.
class SUPPORTSDK_API EventManager {
 public:
    static constexpr const char* channel = "com.goquorrand.supportsdk.event";

    EventManager() = delete;

    static void notify(const std::string& event,
                       const std::optional<Json>& userInfo = std::nullopt);

    /// Observes until the result is dropped.
    [[nodiscard]] static Registration addObserver(NotificationCenter::Handler selector);
    /// Observes until removeObserver(), or until `object` is gone.
    static void addObserver(const std::shared_ptr<const void>& object,
                            NotificationCenter::Handler selector);
    static void removeObserver(const void* object);
};

}  // namespace supportsdk
