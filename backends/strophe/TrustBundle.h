#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace supportsdk {

/// Several PEM files as one, in memory, for a library that takes the name of one file.
class TrustBundle {
 public:
    /// Files that cannot be read are left out.
    explicit TrustBundle(const std::vector<std::filesystem::path>& files);
    ~TrustBundle();
    TrustBundle(const TrustBundle&) = delete;
    TrustBundle& operator=(const TrustBundle&) = delete;

    /// To be opened by this process while the object lives; "" when there is nothing in it.
    [[nodiscard]] std::string path() const;

 private:
    int descriptor_ = -1;
};

}  // namespace supportsdk
