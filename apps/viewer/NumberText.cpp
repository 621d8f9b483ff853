#include "NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include <QLocale>

namespace KOVA::Quorvex::viewer {

namespace {

constexpr int c_digits = 7;        // of a number as large as the part
constexpr int c_mostDecimals = 12; // more are an exponent's
constexpr double c_largest = 1e12;

// Without marks between thousands: the numbers stand in rows, and people copy them.
QLocale NumberLocale() {
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale;
}

} // namespace

QString NumberText(double value, double size) {
    const QLocale locale = NumberLocale();
    const double magnitude = size > 0.0 ? size : std::abs(value);
    const int decimals = magnitude > 0.0 ? c_digits - 1 - static_cast<int>(std::floor(std::log10(magnitude))) : 0;
    if (decimals > c_mostDecimals || !(std::abs(value) < c_largest)) {
        return locale.toString(value, 'g', c_digits);
    }
    const double step = std::pow(10.0, std::max(decimals, 0));
    return locale.toString(std::round(value * step) / step + 0.0, 'f', QLocale::FloatingPointShortest);
}

double DecimalOf(float value) {
    std::array<char, 32> text{};
    const char* const end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    double decimal = 0.0;
    std::from_chars(text.data(), end, decimal);
    return decimal;
}

QString PlaceText(const Vector3d& place, double size) {
    const QString between =
        NumberLocale().decimalPoint() == QLatin1String(",") ? QStringLiteral("; ") : QStringLiteral(", ");
    return NumberText(place.x, size) + between + NumberText(place.y, size) + between + NumberText(place.z, size);
}

} // namespace KOVA::Quorvex::viewer
