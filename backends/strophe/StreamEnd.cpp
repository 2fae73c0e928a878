#include "backends/strophe/StreamEnd.h"

#include <cerrno>
#include <system_error>

namespace supportsdk {

void StreamFacts::noteLogLine(std::string_view line) {
    const auto begins = [line](std::string_view text) { return line.starts_with(text); };
    if (begins("connection successful")) connected = true;
    if (begins("RECV: </stream:stream>")) closedInOrder = true;
    if (begins("TLS is not supported")) tlsMissing = true;
    if (begins("Couldn't start TLS")) tlsFailed = true;
    if (begins("parse error")) malformed = true;
    // Also said of one mechanism before the next succeeds; it counts only without a success.
    if (begins("Cannot authenticate") || begins("Password hasn't been set") ||
        (begins("SASL ") && line.ends_with(" auth failed"))) {
        accountRefused = true;
    }
}

XmppStreamEnd endOf(const StreamFacts& facts) {
    if (facts.noDescriptor)
        return {XmppLoss::noDescriptor, "", "The process has too many open files."};
    if (!facts.certificateProblem.empty()) {
        return {XmppLoss::certificate, "",
                "The server's certificate is not accepted: " + facts.certificateProblem + "."};
    }
    if (facts.tlsMissing)
        return {XmppLoss::certificate, "", "The server does not offer encryption."};
    if (!facts.condition.empty()) {
        return {XmppLoss::closedByServer, facts.condition,
                "The server closed the stream: " +
                    (facts.conditionText.empty() ? facts.condition : facts.conditionText)};
    }
    if (facts.accountRefused && !facts.authenticated)
        return {XmppLoss::credentials, "", "The server refused the account."};
    if (!facts.connected) {
        const auto loss = facts.error == ETIMEDOUT ? XmppLoss::timedOut : XmppLoss::refused;
        return {loss, "",
                facts.error > 0 ? std::generic_category().message(facts.error)
                                : std::string("The connection was refused.")};
    }
    if (facts.tlsFailed)
        return {XmppLoss::certificate, "", "No encryption could be agreed on with the server."};
    if (facts.tooLarge) return {XmppLoss::lost, "", "The server sent a stanza beyond all measure."};
    if (facts.malformed) return {XmppLoss::lost, "", "The server sent what is not XML."};
    if (facts.closedInOrder) return {XmppLoss::closedByServer, "", "The server closed the stream."};
    return {XmppLoss::lost, "", "The connection was lost."};
}

const char* nameOf(XmppLoss loss) {
    switch (loss) {
        case XmppLoss::requested:
            return "requested";
        case XmppLoss::refused:
            return "refused";
        case XmppLoss::unresolved:
            return "unresolved";
        case XmppLoss::timedOut:
            return "timed out";
        case XmppLoss::certificate:
            return "certificate";
        case XmppLoss::credentials:
            return "credentials";
        case XmppLoss::closedByServer:
            return "closed by server";
        case XmppLoss::noDescriptor:
            return "no descriptor";
        case XmppLoss::lost:
            return "lost";
    }
    return "lost";
}

}  // namespace supportsdk
