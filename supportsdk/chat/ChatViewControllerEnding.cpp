#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk {

void ChatViewController::cancel() {
    if (const auto companion = calls.lock()) companion->stopVideoSession();
    resolveIssueIfPossible();
}

void ChatViewController::resolveIssueIfPossible() {
    if (!issue || !issue->id) return;
    showStatus("Checking issue status");
    const auto progress = platform().progress;
    support->getIssue(
        *issue->id,
        [weak = weak(this), progress](const Json& response) {
            progress->dismiss();
            const auto self = weak.lock();
            const auto& results = arrayForKey(response, "results");
            if (!self || results.empty()) return;
            const QDIssue found(results.front());
            if (found.isOpen()) return self->resolveIssue();
            // The refresh that the latest line waits for would bring the same.
            if (self->refreshAgain_) self->support->rateableIssueId = found.id;
            self->exitIssue();
        },
        [weak = weak(this), progress](const Json&) {
            progress->dismiss();
            if (const auto self = weak.lock()) self->exitIssue();
        });
}

void ChatViewController::resolveIssue() {
    if (engine().isOffline) {
        exitIssue();
        return;
    }
    if (!issue || !issue->id) return;
    showStatus("Resolving issue");
    const auto progress = platform().progress;
    support->resolveIssue(
        *issue->id,
        [weak = weak(this), progress, id = issue->id](const Json& response) {
            progress->dismiss();
            const auto self = weak.lock();
            if (!self) return;
            if (boolForKey(response, "success")) {
                self->support->rateableIssueId = id;
                self->exitIssue();
            } else {
                self->cancelIssue();
            }
        },
        [weak = weak(this), progress](const Json&) {
            progress->dismiss();
            if (const auto self = weak.lock()) self->cancelIssue();
        });
}

void ChatViewController::cancelIssue() {
    if (!issue || !issue->id) return;
    showStatus("Cancelling issue");
    const auto progress = platform().progress;
    support->cancelIssue(
        *issue->id,
        [weak = weak(this), progress](const Json& response) {
            progress->dismiss();
            const auto self = weak.lock();
            if (!self) return;
            if (boolForKey(response, "success")) {
                self->exitIssue();
            } else {
                self->displayResolveFailureWithMessage("");
            }
        },
        [weak = weak(this), progress](const Json& response) {
            progress->dismiss();
            if (const auto self = weak.lock()) {
                self->displayResolveFailureWithMessage(
                    stringForKey(response, "message").value_or(""));
            }
        });
}

void ChatViewController::displayResolveFailureWithMessage(const std::string& message) {
    alertWithTitle("Unable to resolve issue", message);
}

void ChatViewController::exitIssue() {
    // "End Chat" pressed twice gets here twice, and must not leave two screens.
    if (!issue) return;
    EventManager::notify(event::chatIssueResolved);
    support->clearCurrentIssue();
    issue.reset();
    engine().postUnreadMessageCount = false;
    engine().disconnect();
    platform().mainQueue->post([weak = weak(this)] {
        if (const auto self = weak.lock()) self->exit();
    });
}

void ChatViewController::exit() {
    if (presentingController.lock()) {
        platform().presenter->dismiss(*this);
    } else {
        platform().presenter->pop(*this);
    }
}

void ChatViewController::backButtonPressed() {
    platform().presenter->dismiss(*this);
}

void ChatViewController::handleNotifications(const Notification& notification) {
    if (notification.object == request::chatExit) {
        platform().log->write("Chat exit requested");
        exit();
    } else if (notification.object == request::chatExitResolveIssue) {
        platform().log->write("Chat exit resolve requested");
        cancel();
    }
}

void ChatViewController::testCancel() {
    EventManager::notify(request::chatExitResolveIssue);
}

}  // namespace supportsdk
