// For builds without FreeType or fontconfig.

#include <Quorvex/platform/Text.h>

namespace KOVA::Quorvex::platform {

LabelPicture RasterizeLabel(const std::string& /*text*/) {
    return {};
}

} // namespace KOVA::Quorvex::platform
