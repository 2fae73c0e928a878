#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// A site, for hosts; the kit itself works with the identity of Support. Fields carry the service's
/// names. A plain record: any thread, one at a time.
class SUPPORTSDK_API QDLocation {
 public:
    // These work on the fields from `id` to `longitude`; the others take no part.
    void clear();
    void copyFrom(const QDLocation& other);
    /// The fields that are not null.
    [[nodiscard]] Json dict() const;

    [[nodiscard]] std::string debugDescription() const;

    std::optional<std::string> id;
    std::optional<std::string> site_name;
    std::optional<std::string> street_1;
    std::optional<std::string> street_2;
    std::optional<std::string> city;
    std::optional<std::string> state;
    std::optional<std::int64_t> state_id;
    std::optional<std::string> zipcode;
    std::optional<std::string> phone;
    std::optional<std::string> latitude;
    std::optional<std::string> longitude;

    std::optional<std::string> entity_name;
    std::optional<std::string> related_id;
    std::optional<std::string> related_to;
    std::optional<std::string> related_name;
    std::optional<std::string> status;
};

}  // namespace supportsdk
