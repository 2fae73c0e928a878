#pragma once

#include <optional>
#include <string>

namespace supportsdk {

inline constexpr const char* SupportSDKErrorDomain = "com.goquorrand.supportsdk";

/// What a host is told of a failure. Both texts are translated already and fit for a person's eyes.
struct SupportError {
    std::string domain = SupportSDKErrorDomain;
    int code = -1;
    std::string localizedDescription;
    std::optional<std::string> localizedFailureReason;
};

}  // namespace supportsdk
