#pragma once

#include <algorithm>

#include <QColor>

#include <Quorvex/core/Colors.h>

namespace KOVA::Quorvex::viewer {

// Without the opacity.
inline QColor ToQColor(const ColorRGBA& color) {
    const auto share = [](float v) { return std::clamp(v, 0.0F, 1.0F); };
    return QColor::fromRgbF(share(color.r), share(color.g), share(color.b));
}

inline ColorRGBA FromQColor(const QColor& color) {
    return {color.redF(), color.greenF(), color.blueF()};
}

} // namespace KOVA::Quorvex::viewer
