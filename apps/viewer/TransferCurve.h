#pragma once

#include <cstddef>
#include <vector>

#include <shared/TransferFunction.h>

namespace KOVA::Quorvex::viewer {

// A transfer function as people edit it: points with an intensity, a colour and an opacity (the colour's a), between
// which it runs straight; before the first and after the last it stays as it is there. There are always two points or
// more, in ascending order. Intensities are 0..lastIntensity, though a window that was moved may carry points beyond.
class TransferCurve {
public:
    static constexpr double lastIntensity = 255.0;

    struct Point {
        double intensity;
        ColorRGBA color;
    };

    TransferCurve(); // from transparent black to opaque white
    explicit TransferCurve(std::vector<Point> points);

    // The points that are needed to come as near to the table as can be seen.
    static TransferCurve FromTable(const TransferTable& table);

    const std::vector<Point>& GetPoints() const { return m_points; }
    ColorRGBA At(double intensity) const;
    TransferTable MakeTable() const;

    // A new point on the curve; returns its place. The others return nothing or do nothing where they cannot be.
    std::size_t Insert(double intensity);
    void Remove(std::size_t index);                                 // not the last two
    void Move(std::size_t index, double intensity, double opacity); // between its neighbours, within 0..255 and 0..1
    void SetColor(std::size_t index, const ColorRGBA& color);       // the opacity stays

    // The intensities from the first to the last point: their middle and extent. Setting moves and stretches all.
    double GetLevel() const { return (m_points.front().intensity + m_points.back().intensity) / 2.0; }
    double GetWindow() const { return m_points.back().intensity - m_points.front().intensity; }
    void SetWindow(double level, double window);

private:
    std::vector<Point> m_points;
};

} // namespace KOVA::Quorvex::viewer
