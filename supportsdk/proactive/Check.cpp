#include "supportsdk/proactive/Check.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace supportsdk {

namespace {

std::string requireName(std::optional<std::string> name) {
    if (!name) throw std::invalid_argument("new check instances must have a name");
    return *std::move(name);
}

std::uint64_t requireStatus(std::uint64_t status) {
    if (status == Check::invalidStatus)
        throw std::invalid_argument("new check instances must have a valid status code");
    return status;
}

FileHandles withoutNull(const FileHandles& files) {
    FileHandles present;
    std::copy_if(files.begin(), files.end(), std::back_inserter(present),
                 [](const auto& file) { return file != nullptr; });
    return present;
}

}  // namespace

Check::Check(CheckType kind, std::optional<std::string> givenName, std::uint64_t status,
             std::optional<std::string> detail)
    : type(kind),
      name(requireName(std::move(givenName))),
      checkStatus(requireStatus(status)),
      checkStatusDetail(std::move(detail)) {}

std::size_t Check::byteCount() const {
    return name.size() + (checkStatusDetail ? checkStatusDetail->size() : 0);
}

Json Check::dict() const {
    Json record;
    // One by one: a list of them would copy each twice, and a flush makes thousands.
    record["type"] = static_cast<std::int32_t>(type);
    record["name"] = name;
    record["status_code"] = checkStatus;
    if (checkStatusDetail) record["status_detail"] = *checkStatusDetail;
    return record;
}

std::string Check::toString() const {
    // The word stands where a hash would: who searches logs for it finds every check.
    return std::string(className()) + "@hashcode{name=" + name +
           ", type=" + std::to_string(static_cast<std::int32_t>(type)) +
           ", code=" + std::to_string(checkStatus) +
           ", desc=" + checkStatusDetail.value_or("(null)") + "}";
}

CheckAppHealth::CheckAppHealth(std::optional<std::string> givenName, std::uint64_t status,
                               std::optional<std::string> detail)
    : Check(CheckType::appHealth, std::move(givenName), status, std::move(detail)) {}

CheckAppHardware::CheckAppHardware(std::optional<std::string> givenName, std::uint64_t status,
                                   std::optional<std::string> detail)
    : Check(CheckType::appHardware, std::move(givenName), status, std::move(detail)) {}

CheckAppCloud::CheckAppCloud(std::optional<std::string> givenName, std::uint64_t status,
                             std::optional<std::string> detail)
    : Check(CheckType::appCloud, std::move(givenName), status, std::move(detail)) {}

CheckAppDump::CheckAppDump(std::uint64_t status, std::optional<std::string> detail,
                           const FileHandles& given)
    : Check(CheckType::appDump, "APP DUMP", status, std::move(detail)), files(withoutNull(given)) {}

}  // namespace supportsdk
