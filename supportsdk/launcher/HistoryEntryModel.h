#pragma once

#include <optional>
#include <string>

#include "supportsdk/core/QDIssue.h"

namespace supportsdk {

/// An issue as a row of the history may describe it, for hosts that draw rows of their own. The
/// kit's rows hold plain issues.
class SUPPORTSDK_API HistoryEntryModel : public QDIssue {
 public:
    using QDIssue::QDIssue;

    std::optional<std::string> referenceId;
    std::optional<std::string> creationDate;
    std::optional<std::string> resolutionDate;
};

}  // namespace supportsdk
