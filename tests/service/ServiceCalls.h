#pragma once

#include <httplib.h>

#include <memory>
#include <string>

#include "tests/support/ServiceProcess.h"

namespace supportsdk::test {

struct Reply {
    /// 0 when there was no answer.
    int status = 0;
    Json body;
    httplib::Headers headers;
    std::string content;
};

/// Calls a service as one of its integrations does.
class ServiceCalls {
 public:
    explicit ServiceCalls(const Json& configuration);

    Reply get(const std::string& path);
    Reply post(const std::string& path, const std::string& body);
    Reply post(const std::string& path, const Json& body) { return post(path, body.dump()); }

    /// A new issue of Jo Linden, as it is answered.
    Json createIssue();

    httplib::Headers headers;

 private:
    static Reply replyTo(const httplib::Result& result);
    httplib::Client client_;
};

/// One service for all tests of this program: most of them do not get into each other's way.
ServiceProcess& sharedService();

}  // namespace supportsdk::test
