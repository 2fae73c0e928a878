#pragma once

#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "supportsdk/platform/Registration.h"

namespace supportsdk {

/// Who wants to be told of a change. For hosts that implement an interface with an observe()
/// operation. Main thread; registrations may outlive this object.
class Observers {
 public:
    /// Told until the result is dropped.
    [[nodiscard]] Registration add(std::function<void()> observer) {
        const int id = ++list_->lastId;
        list_->observers.emplace(id, std::move(observer));
        return Registration([weak = std::weak_ptr(list_), id] {
            if (const auto list = weak.lock()) list->observers.erase(id);
        });
    }

    /// Tells all in the order in which they came. Each may end itself or any other, which is then
    /// not told, and may destroy this object; those who come meanwhile are told the next time.
    void notify() const {
        const auto list = list_;
        const int last = list->lastId;
        auto next = list->observers.begin();
        while (next != list->observers.end() && next->first <= last) {
            const int id = next->first;
            const auto observer = next->second;
            observer();
            next = list->observers.upper_bound(id);
        }
    }

 private:
    struct List {
        int lastId = 0;
        std::map<int, std::function<void()>> observers;
    };
    std::shared_ptr<List> list_ = std::make_shared<List>();
};

}  // namespace supportsdk
