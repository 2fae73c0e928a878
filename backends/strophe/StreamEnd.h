#pragma once

#include <string>
#include <string_view>

#include "supportsdk/platform/XmppStream.h"

namespace supportsdk {

/// What was seen of one attempt and its stream. libstrophe reports most ends with one event and
/// one number; its log lines tell the rest.
struct StreamFacts {
    bool noDescriptor = false;
    bool connected = false;
    bool authenticated = false;
    bool closedInOrder = false;
    bool malformed = false;
    bool tooLarge = false;
    bool tlsMissing = false;
    bool tlsFailed = false;
    bool accountRefused = false;
    /// The verifier's words; "" when it had no complaint.
    std::string certificateProblem;
    /// The stream error's condition and text; "" when there was none.
    std::string condition;
    std::string conditionText;
    /// errno of a connect that failed.
    int error = 0;

    /// Takes up what a line of libstrophe's log says. The lines hold stanzas and credentials:
    /// nothing of them is kept.
    void noteLogLine(std::string_view line);
};

/// Why a stream ended that nobody asked to end.
XmppStreamEnd endOf(const StreamFacts& facts);

/// "refused" and so on, for the log.
const char* nameOf(XmppLoss loss);

}  // namespace supportsdk
