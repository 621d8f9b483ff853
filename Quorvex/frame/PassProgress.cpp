#include <Quorvex/frame/PassProgress.h>

#include <algorithm>
#include <limits>

namespace KOVA::Quorvex {

float PassProgress(float fraction, float objectsDone, unsigned int objects, bool stereo) {
    if (objects == 0) {
        return 0.0F;
    }
    const float total = static_cast<float>(objects) * (stereo ? 2.0F : 1.0F);
    return (std::min(fraction, 1.0F) + objectsDone) / total;
}

int ProgressLineEnd(unsigned int width, float progress) {
    constexpr unsigned int largest = std::numeric_limits<int>::max();
    const int limit = static_cast<int>(std::min(width, largest));
    const float end = static_cast<float>(width) * progress;
    if (!(end > 0.0F)) { // also when it is not a number
        return 0;
    }
    return end < static_cast<float>(limit) ? static_cast<int>(end) : limit;
}

} // namespace KOVA::Quorvex
