#include "hosts/cli/HostPresenter.h"

#include "hosts/cli/Adapters.h"

namespace supportsdk::host {

HostPresenter::HostPresenter(std::shared_ptr<Reports> reports, std::shared_ptr<MainQueue> queue)
    : reports_(std::move(reports)),
      choices_(std::make_shared<Choices>(reports_)),
      changes_(std::move(queue), [this] { reportChanged(); }) {
    // The host's own home screen, on which the kit's screens are pushed.
    root_->children.push_back(std::make_shared<ScreenController>());
    layers_.push_back({root_, {}});
}

HostPresenter::~HostPresenter() = default;

std::shared_ptr<ScreenController> HostPresenter::rootController() {
    return root_;
}

void HostPresenter::display(std::shared_ptr<ScreenController> screen) {
    add(layers_.size() - 1, screen, "displayed");
}

void HostPresenter::present(std::shared_ptr<ScreenController> screen, ScreenController*) {
    if (!screen) return;
    const auto& below = layers_.back();
    below.controller->presentedController = screen;
    screen->presentingController = below.controller;
    layers_.push_back({screen, {}});
    const auto navigation = std::dynamic_pointer_cast<NavigationController>(screen);
    if (!navigation) {
        add(layers_.size() - 1, screen, "presented");
        return;
    }
    const auto children = navigation->children;
    for (const auto& child : children) add(layers_.size() - 1, child, "presented");
}

void HostPresenter::push(std::shared_ptr<ScreenController> screen, ScreenController& from) {
    const auto place = find(from);
    add(place ? place->layer : layers_.size() - 1, screen, "pushed");
}

void HostPresenter::pop(ScreenController& screen) {
    if (const auto place = find(screen)) removeFrom(place->layer, place->index);
}

void HostPresenter::dismiss(ScreenController& screen) {
    const auto place = find(screen);
    if (!place) return;
    // A presented screen goes with its whole layer; in the host's own one it goes alone.
    removeFrom(place->layer, place->layer == 0 ? place->index : 0);
}

void HostPresenter::clear() {
    choices_->clear();
    removeFrom(0, 0);
}

void HostPresenter::add(std::size_t layer, const std::shared_ptr<ScreenController>& screen,
                        const std::string& how) {
    if (!screen) return;
    const auto self = shared_from_this();
    const auto covered = topShown() ? topShown()->screen : nullptr;
    if (layer > 0 && how == "presented")
        screen->presentingController = layers_[layer - 1].controller;
    auto adapter = adapterFor(screen, [weak = weak_from_this(), raw = screen.get()] {
        if (const auto presenter = weak.lock()) presenter->reloaded(raw);
    });
    layers_[layer].screens.push_back({screen, std::move(adapter), how, false});
    updateNavigation(layer);

    screen->viewDidLoad();
    if (covered) covered->viewWillDisappear();
    screen->viewWillAppear();
    reportNewScreens();
    if (covered) covered->viewDidDisappear();
    // It may have left again or opened another one, by its own doing.
    if (isOnTop(*screen)) screen->viewDidAppear();
}

void HostPresenter::removeFrom(std::size_t layer, std::size_t first) {
    const auto self = shared_from_this();
    const auto top = topShown() ? topShown()->screen : nullptr;
    std::vector<Shown> leaving;
    while (layers_.size() - 1 > layer) {
        takeScreens(layers_.back(), 0, leaving);
        closeLayer();
    }
    takeScreens(layers_[layer], first, leaving);
    if (layer > 0 && first == 0) {
        closeLayer();
    } else {
        updateNavigation(layer);
    }
    if (leaving.empty()) return;

    const auto uncovered = topShown() ? topShown()->screen : nullptr;
    top->viewWillDisappear();
    for (const auto& gone : leaving) {
        reports_->write("left", {{"class", gone.screen->className()}});
    }
    if (uncovered) uncovered->viewWillAppear();
    top->viewDidDisappear();
    if (uncovered && isOnTop(*uncovered)) uncovered->viewDidAppear();
}

void HostPresenter::takeScreens(Layer& layer, std::size_t keep, std::vector<Shown>& taken) {
    while (layer.screens.size() > keep) {
        taken.push_back(std::move(layer.screens.back()));
        layer.screens.pop_back();
    }
}

void HostPresenter::closeLayer() {
    layers_.pop_back();
    layers_.back().controller->presentedController.reset();
}

void HostPresenter::updateNavigation(std::size_t layer) {
    const auto navigation =
        std::dynamic_pointer_cast<NavigationController>(layers_[layer].controller);
    if (!navigation) return;
    navigation->children.resize(layer == 0 ? 1 : 0);
    for (const auto& shown : layers_[layer].screens) navigation->children.push_back(shown.screen);
}

const HostPresenter::Shown* HostPresenter::topShown() const {
    for (auto layer = layers_.rbegin(); layer != layers_.rend(); ++layer) {
        if (!layer->screens.empty()) return &layer->screens.back();
    }
    return nullptr;
}

bool HostPresenter::isOnTop(const ScreenController& screen) const {
    const auto* shown = topShown();
    return shown && shown->screen.get() == &screen;
}

std::shared_ptr<ScreenAdapter> HostPresenter::top() const {
    const auto* shown = topShown();
    return shown ? shown->adapter : nullptr;
}

std::optional<HostPresenter::Place> HostPresenter::find(const ScreenController& screen) const {
    for (std::size_t layer = 0; layer < layers_.size(); ++layer) {
        const auto& screens = layers_[layer].screens;
        for (std::size_t index = 0; index < screens.size(); ++index) {
            if (screens[index].screen.get() == &screen) return Place{layer, index};
        }
        // A navigation stands for all that is in it.
        if (layers_[layer].controller.get() == &screen) return Place{layer, 0};
    }
    return std::nullopt;
}

void HostPresenter::reportScreen(const Shown& shown, const std::string& is) const {
    auto fields = shown.adapter->describe();
    fields["how"] = shown.how;
    reports_->write(is, fields);
    const auto page = is == "screen" ? shown.adapter->page() : std::nullopt;
    if (page) reports_->write("web", *page);
}

void HostPresenter::reportNewScreens() {
    // Bottom up: one that opens the next as it appears is reported before that.
    for (auto& layer : layers_) {
        for (auto& shown : layer.screens) {
            if (!std::exchange(shown.isReported, true)) reportScreen(shown, "screen");
        }
    }
}

void HostPresenter::reloaded(const ScreenController* screen) {
    const auto* shown = topShown();
    if (!shown || !shown->isReported || shown->screen.get() != screen) return;
    changed_ = screen;
    changes_.ask();
}

void HostPresenter::reportChanged() const {
    const auto* shown = topShown();
    // Another one may have come on top while the report waited.
    if (shown && shown->isReported && shown->screen.get() == changed_)
        reportScreen(*shown, "changed");
}

void HostPresenter::lookChanged() {
    if (const auto* shown = topShown()) reportScreen(*shown, "changed");
}

bool HostPresenter::show() {
    if (choices_->show()) return true;
    const auto* shown = topShown();
    if (!shown) return false;
    reportScreen(*shown, "screen");
    return true;
}

bool HostPresenter::back() {
    const auto* shown = topShown();
    if (!shown) return false;
    const auto screen = shown->screen;
    const auto adapter = shown->adapter;
    if (adapter->press("Back")) return true;
    // The first screen of a layer takes it along.
    const bool isPushed = find(*screen)->index > 0;
    isPushed ? pop(*screen) : dismiss(*screen);
    return true;
}

void HostPresenter::showAlert(Alert alert) {
    choices_->showAlert(std::move(alert));
}

void HostPresenter::showSheet(ActionSheet sheet) {
    choices_->showSheet(std::move(sheet));
}

}  // namespace supportsdk::host
