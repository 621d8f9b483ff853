#include "TransferCurve.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace KOVA::Quorvex::viewer {

namespace {

constexpr double c_nearestNeighbours = 0.25; // intensities
constexpr float c_tolerance = 0.012F;        // of a colour's range, and of the largest opacity

std::array<float, 4> Channels(const ColorRGBA& color) {
    return {color.r, color.g, color.b, color.a};
}

ColorRGBA Between(const ColorRGBA& a, const ColorRGBA& b, float share) {
    const auto mixed = [share](float from, float to) { return from + (to - from) * share; };
    return {mixed(a.r, b.r), mixed(a.g, b.g), mixed(a.b, b.b), mixed(a.a, b.a)};
}

// Finds the entries at which a table has to be held so that straight lines between them follow it.
class Simplification {
public:
    explicit Simplification(const TransferTable& table) : m_table(table) {
        for (const ColorRGBA& color : table) {
            m_largestOpacity = std::max(m_largestOpacity, color.a);
        }
    }

    std::vector<std::size_t> Entries() const {
        std::vector<std::size_t> entries{0, m_table.size() - 1};
        for (std::size_t i = 0; i + 1 < entries.size();) {
            const std::size_t worst = Worst(entries[i], entries[i + 1]);
            if (worst == entries[i]) {
                ++i;
            } else {
                entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(i) + 1, worst);
            }
        }
        return entries;
    }

private:
    // The entry that is farthest off the line between two others; the first one when all are close to it.
    std::size_t Worst(std::size_t first, std::size_t last) const {
        std::size_t worst = first;
        float largest = c_tolerance;
        for (std::size_t i = first + 1; i < last; ++i) {
            const float share = static_cast<float>(i - first) / static_cast<float>(last - first);
            const float error = Difference(m_table[i], Between(m_table[first], m_table[last], share));
            if (error > largest) {
                largest = error;
                worst = i;
            }
        }
        return worst;
    }

    float Difference(const ColorRGBA& a, const ColorRGBA& b) const {
        const auto x = Channels(a);
        const auto y = Channels(b);
        const float opacity = m_largestOpacity > 0.0F ? std::abs(x[3] - y[3]) / m_largestOpacity : 0.0F;
        return std::max({std::abs(x[0] - y[0]), std::abs(x[1] - y[1]), std::abs(x[2] - y[2]), opacity});
    }

    const TransferTable& m_table;
    float m_largestOpacity = 0.0F;
};

} // namespace

TransferCurve::TransferCurve() : m_points{{0.0, {0.0F, 0.0F, 0.0F, 0.0F}}, {lastIntensity, {1.0F, 1.0F, 1.0F, 1.0F}}} {}

TransferCurve::TransferCurve(std::vector<Point> points) : m_points(std::move(points)) {}

TransferCurve TransferCurve::FromTable(const TransferTable& table) {
    std::vector<Point> points;
    for (const std::size_t entry : Simplification(table).Entries()) {
        points.push_back({static_cast<double>(entry), table[entry]});
    }
    // Ends that only go on as their neighbour does are not points that mean anything.
    const auto same = [](const Point& a, const Point& b) { return Channels(a.color) == Channels(b.color); };
    if (points.size() > 2 && same(points[points.size() - 1], points[points.size() - 2])) {
        points.pop_back();
    }
    if (points.size() > 2 && same(points[0], points[1])) {
        points.erase(points.begin());
    }
    return TransferCurve(std::move(points));
}

ColorRGBA TransferCurve::At(double intensity) const {
    const auto after = std::find_if(m_points.begin(), m_points.end(),
                                    [intensity](const Point& point) { return point.intensity > intensity; });
    if (after == m_points.begin()) {
        return after->color;
    }
    const auto before = after - 1;
    if (after == m_points.end()) {
        return before->color;
    }
    const double share = (intensity - before->intensity) / (after->intensity - before->intensity);
    return Between(before->color, after->color, static_cast<float>(share));
}

TransferTable TransferCurve::MakeTable() const {
    TransferTable table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = At(static_cast<double>(i));
    }
    return table;
}

std::size_t TransferCurve::Insert(double intensity) {
    const double at = std::clamp(intensity, 0.0, lastIntensity);
    const ColorRGBA color = At(at);
    const auto after =
        std::find_if(m_points.begin(), m_points.end(), [at](const Point& point) { return point.intensity > at; });
    const auto index = static_cast<std::size_t>(after - m_points.begin());
    m_points.insert(after, {at, color});
    return index;
}

void TransferCurve::Remove(std::size_t index) {
    if (m_points.size() > 2 && index < m_points.size()) {
        m_points.erase(m_points.begin() + static_cast<std::ptrdiff_t>(index));
    }
}

void TransferCurve::Move(std::size_t index, double intensity, double opacity) {
    if (index >= m_points.size()) {
        return;
    }
    double low = 0.0;
    double high = lastIntensity;
    if (index > 0) {
        low = std::max(low, m_points[index - 1].intensity + c_nearestNeighbours);
    }
    if (index + 1 < m_points.size()) {
        high = std::min(high, m_points[index + 1].intensity - c_nearestNeighbours);
    }
    Point& point = m_points[index];
    if (low <= high) {
        point.intensity = std::clamp(intensity, low, high);
    }
    point.color.a = static_cast<float>(std::clamp(opacity, 0.0, 1.0));
}

void TransferCurve::SetColor(std::size_t index, const ColorRGBA& color) {
    if (index < m_points.size()) {
        ColorRGBA& own = m_points[index].color;
        own = {color.r, color.g, color.b, own.a};
    }
}

void TransferCurve::SetWindow(double level, double window) {
    const double oldLevel = GetLevel();
    const double oldWindow = GetWindow();
    const double smallest = c_nearestNeighbours * static_cast<double>(m_points.size() - 1);
    const double factor = std::max(window, smallest) / std::max(oldWindow, smallest);
    for (Point& point : m_points) {
        point.intensity = level + (point.intensity - oldLevel) * factor;
    }
}

} // namespace KOVA::Quorvex::viewer
