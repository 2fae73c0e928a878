#include "supportsdk/knowledge/KBSearchViewController.h"

#include <algorithm>
#include <utility>

#include "supportsdk/core/DefaultsKeys.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/knowledge/KBArticle.h"
#include "supportsdk/knowledge/KBViewModel.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

/// Hears of one search. The screen keeps that of the latest one alone, so that an earlier answer
/// that arrives last finds nobody.
class KBSearchViewController::Search : public SupportDelegate {
 public:
    explicit Search(KBSearchViewController& screen)
        : screen_(std::static_pointer_cast<KBSearchViewController>(screen.shared_from_this())) {}

    void supportSearchKBWithModel(const std::shared_ptr<KBViewModel>& model) override {
        if (const auto screen = listener()) screen->supportSearchKBWithModel(model);
    }
    void supportSearchKBFailed() override {
        if (const auto screen = listener()) screen->supportSearchKBFailed();
    }

 private:
    [[nodiscard]] std::shared_ptr<KBSearchViewController> listener() const {
        auto screen = screen_.lock();
        return screen && !screen->support->isRetired() ? screen : nullptr;
    }

    const std::weak_ptr<KBSearchViewController> screen_;
};

std::shared_ptr<KBSearchViewController> KBSearchViewController::create(
    std::shared_ptr<Support> support, std::weak_ptr<SupportButton> button) {
    return std::shared_ptr<KBSearchViewController>(
        new KBSearchViewController(std::move(support), std::move(button)));
}

KBSearchViewController::KBSearchViewController(std::shared_ptr<Support> owner,
                                               std::weak_ptr<SupportButton> button)
    : support(std::move(owner)), supportButton(std::move(button)) {}

void KBSearchViewController::viewDidLoad() {
    title = localized(support->appearance->knowledgeMenuText().value_or("Knowledge base"));
    topResults.clear();
    loadRecentSearches();
}

void KBSearchViewController::viewWillAppear() {
    isOnView_ = true;
}

void KBSearchViewController::viewWillDisappear() {
    isOnView_ = false;
}

// --- The search bar ---

void KBSearchViewController::searchBarTextDidChange(const std::string& text) {
    const auto self = shared_from_this();
    barText = text;
    isBarFocused = !text.empty();
    if (text.empty()) {
        showRecentSearches();
    } else {
        isCancelButtonShown = true;
        tellBarDidChange();
    }
    doSearch(text);
}

void KBSearchViewController::searchBarTextDidEndEditing() {
    isBarFocused = false;
    if (!barText.empty()) isCancelButtonShown = true;
    tellBarDidChange();
}

void KBSearchViewController::searchBarSearchButtonClicked() {
    const auto self = shared_from_this();
    isBarFocused = false;
    isCancelButtonShown = false;
    tellBarDidChange();
    search(barText);
}

void KBSearchViewController::searchBarCancelButtonClicked() {
    barText.clear();
    showRecentSearches();
}

void KBSearchViewController::showRecentSearches() {
    const auto self = shared_from_this();
    // The answer to a search would take them away again.
    latestSearch_.reset();
    isCancelButtonShown = false;
    hideRecentSearches = false;
    reloadTable();
    tellBarDidChange();
}

// --- Searching ---

void KBSearchViewController::search(const std::string& text) {
    searchText = text;
    latestSearch_ = std::make_shared<Search>(*this);
    support->searchKB(latestSearch_, searchText);
}

void KBSearchViewController::supportSearchKBWithModel(const std::shared_ptr<KBViewModel>& model) {
    if (!model) return;
    recordSearch();
    topResults = model->entries;
    hideRecentSearches = true;
    reloadTable();
}

void KBSearchViewController::supportSearchKBFailed() {
    if (isOnView_) support->platform->progress->showError(localized("No results."));
}

void KBSearchViewController::recordSearch() {
    const auto end = recentSearches.end();
    if (std::find(recentSearches.begin(), end, searchText) != end) return;
    recentSearches.push_back(searchText);
    saveRecentSearches();
}

void KBSearchViewController::loadRecentSearches() {
    recentSearches.clear();
    auto stored = support->platform->userDefaults->standard()->array(defaultsKey::recentSearches);
    if (!stored) return;
    for (auto& entry : *stored) {
        if (auto* text = entry.get_ptr<Json::string_t*>())
            recentSearches.push_back(std::move(*text));
    }
}

void KBSearchViewController::saveRecentSearches() const {
    const auto defaults = support->platform->userDefaults->standard();
    defaults->setValue(defaultsKey::recentSearches, recentSearches);
    defaults->flush();
}

// --- The list ---

std::string KBSearchViewController::headingOfSection(std::size_t section) const {
    if (section == top) return localized("TOP RESULTS");
    return section == recent && !hideRecentSearches ? localized("RECENT SEARCHES") : "";
}

std::size_t KBSearchViewController::numberOfRows(std::size_t section) const {
    if (section == top) return topResults.size();
    return section == recent && !hideRecentSearches ? recentSearches.size() : 0;
}

std::string KBSearchViewController::textOfRow(std::size_t section, std::size_t row) const {
    if (row >= numberOfRows(section)) return "";
    return section == top ? topResults[row]->title.value_or("") : recentSearches[row];
}

void KBSearchViewController::didSelectRow(std::size_t section, std::size_t row) {
    if (row >= numberOfRows(section)) return;
    if (section == recent) {
        barText = recentSearches[row];
        isBarFocused = true;
        return tellBarDidChange();
    }
    const auto entry = topResults[row];
    if (entry->url && !entry->url->empty()) {
        viewEntry(entry);
    } else if (entry->id) {
        retrieveKB(*entry->id);
    } else {
        alertArticleIsMissing(*support->platform, "");
    }
}

void KBSearchViewController::viewEntry(const std::shared_ptr<KBEntryModel>& entry) {
    if (entry->body && !entry->body->empty()) {
        pushArticle(*support, *entry, *this);
    } else {
        presentArticle(*support, *entry, *this);
    }
}

void KBSearchViewController::retrieveKB(const std::string& identifier) {
    const auto request = ++latestArticle_;
    support->retrieveKB(identifier,
                        unlessObsolete(request, &KBSearchViewController::articleDidArrive),
                        unlessObsolete(request, &KBSearchViewController::articleIsMissing));
}

/// No other screen shall be covered by an article that was asked for here, nor an article by one
/// that was asked for before.
RestCallback KBSearchViewController::unlessObsolete(std::uint64_t request, Handler handler) {
    return [weak = weak_from_this(), request, handler](const Json& response) {
        const auto self = std::static_pointer_cast<KBSearchViewController>(weak.lock());
        const bool isWanted = self && self->isOnView_ && self->latestArticle_ == request;
        if (isWanted && !self->support->isRetired()) ((*self).*handler)(response);
    };
}

void KBSearchViewController::articleDidArrive(const Json& response) {
    const auto& results = arrayForKey(response, "results");
    if (results.empty()) return articleIsMissing(response);
    viewEntry(std::make_shared<KBEntryModel>(results.front()));
}

void KBSearchViewController::articleIsMissing(const Json& response) {
    alertArticleIsMissing(*support->platform, stringForKey(response, "message").value_or(""));
}

void KBSearchViewController::reloadTable() {
    if (const auto picture = view.lock()) picture->reloadTable();
}

void KBSearchViewController::tellBarDidChange() {
    if (const auto picture = view.lock()) picture->searchBarDidChange();
}

std::string KBSearchViewController::localized(const std::string& english) const {
    return support->platform->localizer->localized(english);
}

}  // namespace supportsdk
