#include "supportsdk/knowledge/JourneysViewController.h"
#include "supportsdk/knowledge/KBListViewController.h"
#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk {

void SupportButton::actionSearchKnowledge() {
    const auto self = shared_from_this();
    hideBadge();
    displayKnowledgeBase();
}

void SupportButton::displayKnowledgeBase() {
    if (!support) return;
    kbListViewController = KBListViewController::create(support);
    displayScreen(kbListViewController);
}

void SupportButton::actionJourneys() {
    if (support) displayScreen(JourneysViewController::create(support));
}

}  // namespace supportsdk
