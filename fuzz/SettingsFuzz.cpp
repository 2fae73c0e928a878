#include <span>

#include "fuzz/Fuzzing.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/RestResponse.h"
#include "supportsdk/core/Settings.h"

using namespace supportsdk;
using fuzz::require;

namespace {

void check(const ReadSettings& settings) {
    require(settings.defaultMember.is_object() && settings.features.supportForms->is_array());
    require(settings.features.callMeButtonText && settings.features.callMeButtonConfirmation);
}

}  // namespace

/// The input is the body of a settings response. Both layouts are read from it, whichever it
/// claims, twice over, so that the second reading meets the leftovers of the first.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    HttpResponse response;
    response.status = 200;
    response.body = toBytes({reinterpret_cast<const char*>(data), size});
    const auto result = readResponse(response);
    require(result.dictionary.is_object() && result.dictionary.at("status") == 200);
    require(result.isSuccess || result.dictionary.at("message").is_string());

    const auto& advanced = dictionaryForKey(result.dictionary, "advancedConfiguration");
    const auto flat = readFlatSettings(result.dictionary, {}, {});
    require(flat.features.journeysEnabled && flat.theme == advanced);
    check(flat);
    const auto components = readComponentSettings(advanced, flat.features, {});
    require(components.features.isV2Settings);
    check(components);
    check(readFlatSettings(result.dictionary, components.features, {}));
    (void)isComponentLayout(result.dictionary);
    return 0;
}
