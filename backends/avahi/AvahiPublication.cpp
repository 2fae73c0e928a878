#include "backends/avahi/AvahiPublication.h"

#include <avahi-common/alternative.h>
#include <avahi-common/malloc.h>

#include <algorithm>

namespace supportsdk {

namespace {

/// More conflicts than this in a row are no accident, and RFC 6762 (8.1) wants them slowed down.
constexpr int mostNames = 15;

/// A daemon that takes the service and then says nothing counts as failed after this time.
constexpr std::chrono::seconds longestSilence{30};

}  // namespace

AvahiPublication::AvahiPublication(ServiceRecord record, Report report)
    : record_(std::move(record)), report_(std::move(report)), name_(record_.name) {
    AvahiStringList* items = nullptr;
    avahi_string_list_parse(record_.txt.data(), record_.txt.size(), &items);
    txt_.reset(items);
}

void AvahiPublication::run(int stop) {
    overdue_ = Clock::now() + longestSilence;
    poll_.reset(avahi_simple_poll_new());
    if (!poll_) {
        fail(AVAHI_ERR_NO_MEMORY);
        return;
    }
    const AvahiPoll* events = avahi_simple_poll_get(poll_.get());
    events->watch_new(
        events, stop, AVAHI_WATCH_IN,
        [](AvahiWatch*, int, AvahiWatchEvent, void* self) {
            static_cast<AvahiPublication*>(self)->stopped_ = true;
        },
        this);
    // Dropped before it began: not even seen by others.
    avahi_simple_poll_iterate(poll_.get(), 0);
    while (!stopped_ && connect()) {
        while (!stopped_ && !lost_) {
            if (avahi_simple_poll_iterate(poll_.get(), patience()) != 0) {
                lose(AVAHI_ERR_OS);
                stopped_ = true;
            }
            if (!last_ && Clock::now() >= overdue_) fail(AVAHI_ERR_TIMEOUT);
        }
        // Freed here, as its own callbacks must not do it. The daemon withdraws what it held.
        group_ = nullptr;
        client_.reset();
    }
}

bool AvahiPublication::connect() {
    lost_ = false;
    int error = AVAHI_OK;
    client_.reset(avahi_client_new(
        avahi_simple_poll_get(poll_.get()), AVAHI_CLIENT_NO_FAIL,
        [](AvahiClient* client, AvahiClientState state, void* self) {
            static_cast<AvahiPublication*>(self)->clientChanged(client, state);
        },
        this, &error));
    if (!client_) lose(error);
    return client_ != nullptr;
}

void AvahiPublication::clientChanged(AvahiClient* client, AvahiClientState state) {
    switch (state) {
        case AVAHI_CLIENT_S_RUNNING:
            namesTaken_ = 0;
            announce(client);
            break;
        case AVAHI_CLIENT_S_REGISTERING:
            // The host gets a new name; the service follows when that is settled.
            withdraw();
            break;
        case AVAHI_CLIENT_S_COLLISION:
            withdraw();
            fail(AVAHI_ERR_COLLISION);
            break;
        case AVAHI_CLIENT_CONNECTING:
            lose(AVAHI_ERR_NO_DAEMON);
            break;
        case AVAHI_CLIENT_FAILURE:
            lost_ = true;
            fail(avahi_client_errno(client));
            break;
    }
}

void AvahiPublication::groupChanged(AvahiEntryGroup* group, AvahiEntryGroupState state) {
    AvahiClient* client = avahi_entry_group_get_client(group);
    if (state == AVAHI_ENTRY_GROUP_ESTABLISHED) succeed();
    if (state == AVAHI_ENTRY_GROUP_FAILURE) fail(avahi_client_errno(client));
    if (state == AVAHI_ENTRY_GROUP_COLLISION) {
        withdraw();
        if (takeNextName()) {
            announce(client);
        } else {
            fail(AVAHI_ERR_COLLISION);
        }
    }
}

void AvahiPublication::announce(AvahiClient* client) {
    if (!chooseName(client)) return fail(avahi_client_errno(client));
    if (!group_) {
        group_ = avahi_entry_group_new(
            client,
            [](AvahiEntryGroup* group, AvahiEntryGroupState state, void* self) {
                static_cast<AvahiPublication*>(self)->groupChanged(group, state);
            },
            this);
    }
    if (!group_) return fail(avahi_client_errno(client));
    int result = AVAHI_OK;
    do {
        result = avahi_entry_group_add_service_strlst(
            group_, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, {}, name_.c_str(), record_.type.c_str(),
            record_.domain.c_str(), nullptr, record_.port, txt_.get());
        // Taken by another service of this device; those of others show in the group's state.
    } while (result == AVAHI_ERR_COLLISION && takeNextName());
    if (result == AVAHI_OK) result = avahi_entry_group_commit(group_);
    if (result == AVAHI_OK) return;
    withdraw();
    fail(result);
}

bool AvahiPublication::chooseName(AvahiClient* client) {
    if (!record_.name.empty()) return true;
    const char* host = avahi_client_get_host_name(client);
    if (!host) return false;
    // A name that had to be changed stays, for as long as the device keeps its own.
    if (hostName_ != host) name_ = hostName_ = host;
    return true;
}

bool AvahiPublication::takeNextName() {
    if (++namesTaken_ >= mostNames) return false;
    char* next = avahi_alternative_service_name(name_.c_str());
    if (!next) return false;
    name_ = next;
    avahi_free(next);
    return true;
}

void AvahiPublication::withdraw() {
    if (group_) avahi_entry_group_reset(group_);
}

void AvahiPublication::succeed() {
    namesTaken_ = 0;
    report({true, name_, AVAHI_OK, {}});
}

void AvahiPublication::fail(int code) {
    report({false, name_, code, avahi_strerror(code)});
}

void AvahiPublication::lose(int code) {
    if (!last_ || last_->published) fail(code);
}

void AvahiPublication::report(const PublishOutcome& outcome) {
    if (last_ == outcome) return;
    last_ = outcome;
    report_(outcome);
}

int AvahiPublication::patience() const {
    if (last_) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(overdue_ - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

}  // namespace supportsdk
