#pragma once

#include <functional>
#include <memory>
#include <string>

#include "service/DataFolder.h"
#include "service/Options.h"
#include "service/chat/ChatRooms.h"
#include "service/chat/Issues.h"
#include "service/http/Faults.h"
#include "service/http/HttpFrontend.h"
#include "service/http/Router.h"
#include "service/rest/Desk.h"
#include "service/state/Journal.h"
#include "service/state/Store.h"

namespace supportsdk::service {

/// The whole stand-in: its state, its chat server and its two HTTP ports.
class Service {
 public:
    explicit Service(std::unique_ptr<DataFolder> folder) : folder_(std::move(folder)) {}
    /// stop().
    ~Service();
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    /// False when something does not come up; why stands in `problem`. Also, without a word, when
    /// `isUnwanted` says meanwhile that nobody waits for it any more.
    [[nodiscard]] bool start(const Options& options, const std::function<bool()>& isUnwanted,
                             std::string& problem);

    /// Everything that somebody who wants to use it must know.
    [[nodiscard]] Json readyLine() const;

    /// Ends all that runs, within a second.
    void stop();

 private:
    [[nodiscard]] bool openStore(const Options& options, std::string& problem);
    [[nodiscard]] Json configurationFor(const Json& integration) const;
    void addRoutes();
    Answer handle(Call& call);

    std::unique_ptr<DataFolder> folder_;
    Options options_;
    std::filesystem::path caFile_;
    Journal journal_;
    Faults faults_;
    Router router_;
    std::unique_ptr<Store> store_;
    std::unique_ptr<ChatRooms> rooms_;
    std::unique_ptr<Issues> issues_;
    std::unique_ptr<Desk> desk_;
    std::unique_ptr<HttpFrontend> frontend_;
};

}  // namespace supportsdk::service
