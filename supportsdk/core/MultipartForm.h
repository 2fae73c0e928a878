#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// A body of the type multipart/form-data (RFC 7578). Pure but for the random boundary.
class MultipartForm {
 public:
    /// Makes boundaries until one fits; random by default.
    using BoundaryMaker = std::function<std::string()>;

    MultipartForm();
    explicit MultipartForm(BoundaryMaker makeBoundary);

    /// Parts keep the order in which they are added.
    void addField(std::string_view name, std::string_view value);
    void addFile(std::string_view name, std::string_view fileName, std::string_view contentType,
                 std::span<const std::byte> data);

    struct Encoded {
        /// For the Content-Type header; names the boundary, which occurs in no part.
        std::string contentType;
        Bytes body;
    };
    [[nodiscard]] Encoded encode() const;

 private:
    [[nodiscard]] std::string freeBoundary() const;

    BoundaryMaker makeBoundary_;
    /// Header and content of each part, without boundaries.
    std::vector<std::string> parts_;
};

}  // namespace supportsdk
