#include "hosts/cli/EventReporter.h"

#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"

namespace supportsdk::host {

EventReporter::EventReporter(const std::shared_ptr<Reports>& reports) {
    observations_.push_back(EventManager::addObserver([reports](const Notification& event) {
        Json fields = {{"name", event.object.text().value_or("")}};
        if (event.userInfo) fields["userInfo"] = *event.userInfo;
        reports->write("event", fields);
    }));
    for (const auto* name : {notification::chatUnreadCountUpdated, notification::roomInformation,
                             notification::networkReachabilityChanged}) {
        observations_.push_back(
            NotificationCenter::shared().addObserver(name, [reports](const Notification& posted) {
                Json fields = {{"name", posted.name}};
                if (const auto text = posted.object.text()) fields["object"] = *text;
                if (const auto number = posted.object.number()) fields["object"] = *number;
                if (posted.userInfo) fields["userInfo"] = *posted.userInfo;
                reports->write("notification", fields);
            }));
    }
}

}  // namespace supportsdk::host
