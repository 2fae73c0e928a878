#include "supportsdk/core/EventManager.h"

#include <utility>

namespace supportsdk {

void EventManager::notify(const std::string& event, const std::optional<Json>& userInfo) {
    NotificationCenter::shared().post(channel, event, userInfo);
}

Registration EventManager::addObserver(NotificationCenter::Handler selector) {
    return NotificationCenter::shared().addObserver(channel, std::move(selector));
}

void EventManager::addObserver(const std::shared_ptr<const void>& object,
                               NotificationCenter::Handler selector) {
    NotificationCenter::shared().addObserver(object, channel, std::move(selector));
}

void EventManager::removeObserver(const void* object) {
    NotificationCenter::shared().removeObserver(object, channel);
}

}  // namespace supportsdk
