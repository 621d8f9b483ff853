#include "MeetVolume.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include <Quorvex/volume/VolumeAttribute.h>
#include <Quorvex/volume/VolumeData.h>

namespace KOVA::Quorvex::viewer {

namespace {

constexpr double c_seen = 0.5; // of the light that a surface takes before it is one

// The part of a ray that lies in the volume and is not cut away.
struct Span {
    double begin = 0.0;
    double end = std::numeric_limits<double>::infinity();

    // Keeps where start + t * slope is not negative.
    void Keep(double start, double slope) {
        if (slope > 0.0) {
            begin = std::max(begin, -start / slope);
        } else if (slope < 0.0) {
            end = std::min(end, -start / slope);
        } else if (start < 0.0) {
            end = -1.0;
        }
    }
};

double Value(const Vector4d& plane, const Vector3d& point) {
    return plane.x * point.x + plane.y * point.y + plane.z * point.z + plane.w;
}

double Slope(const Vector4d& plane, const Vector3d& direction) {
    return plane.x * direction.x + plane.y * direction.y + plane.z * direction.z;
}

Span SpanInBox(const VolumeData& data, const Ray& ray) {
    const Vector3d low(data.GetBB0());
    const Vector3d high(data.GetBB1());
    Span span;
    span.Keep(ray.origin.x - low.x, ray.direction.x);
    span.Keep(high.x - ray.origin.x, -ray.direction.x);
    span.Keep(ray.origin.y - low.y, ray.direction.y);
    span.Keep(high.y - ray.origin.y, -ray.direction.y);
    span.Keep(ray.origin.z - low.z, ray.direction.z);
    span.Keep(high.z - ray.origin.z, -ray.direction.z);
    return span;
}

// The intensities between the centres of voxels.
class Field {
public:
    explicit Field(const VolumeData& data) : m_data(data), m_perUnit(0.5 / double{data.getVoxelSize()}) {}

    double At(const Vector3d& p) const {
        const double x = Index(p.x, m_data.getDimX());
        const double y = Index(p.y, m_data.getDimY());
        const double z = Index(p.z, m_data.getDimZ());
        const double x0 = std::floor(x);
        const double y0 = std::floor(y);
        const double z0 = std::floor(z);
        double sum = 0.0;
        for (unsigned int corner = 0; corner < 8; ++corner) {
            const double cx = x0 + (corner & 1U);
            const double cy = y0 + ((corner >> 1U) & 1U);
            const double cz = z0 + (corner >> 2U);
            const double weight = (1.0 - std::abs(x - cx)) * (1.0 - std::abs(y - cy)) * (1.0 - std::abs(z - cz));
            sum +=
                weight * m_data.get(static_cast<long long>(cx), static_cast<long long>(cy), static_cast<long long>(cz));
        }
        return sum;
    }

private:
    double Index(double coordinate, std::size_t dimension) const {
        return coordinate * m_perUnit + (static_cast<double>(dimension) - 1.0) / 2.0;
    }

    const VolumeData& m_data;
    double m_perUnit; // voxels in one of the scene's
};

std::size_t Entry(double intensity) {
    return static_cast<std::size_t>(std::clamp(std::lround(intensity), 0L, 255L));
}

std::optional<double> HalfTaken(const Field& field, const ColorRGBA* table, const Ray& ray, const Span& span,
                                double step) {
    double light = 1.0;
    for (double t = span.begin + step / 2; t < span.end; t += step) {
        const double opacity = std::min(1.0, double{table[Entry(field.At(ray.At(t)))].a});
        const double left = light * (1.0 - opacity);
        if (left <= 1.0 - c_seen) {
            return t - step / 2 + step * (light - (1.0 - c_seen)) / std::max(light - left, 1e-9);
        }
        light = left;
    }
    return std::nullopt;
}

std::optional<double> Extreme(const Field& field, const ColorRGBA* table, const Ray& ray, const Span& span, double step,
                              double sign) {
    std::optional<double> found;
    double best = 0.0;
    for (double t = span.begin + step / 2; t < span.end; t += step) {
        const ColorRGBA& color = table[Entry(field.At(ray.At(t)))];
        const double brightness = sign * (double{color.r} + double{color.g} + double{color.b});
        if (color.a > 0.0F && (!found || brightness > best)) {
            best = brightness;
            found = t;
        }
    }
    return found;
}

// The first of the slices that shows something where the ray crosses it.
std::optional<double> MeetSlices(const Field& field, const VolumeAttribute& attribute, const Ray& ray,
                                 const Span& box) {
    std::optional<double> nearest;
    for (unsigned int i = 0; i < VolumeAttribute::userPlanes; ++i) {
        const Vector4d plane = attribute.GetUserSlice(i);
        const double slope = Slope(plane, ray.direction);
        const double t = slope != 0.0 ? -Value(plane, ray.origin) / slope : -1.0;
        const bool inside = t >= box.begin && t <= box.end;
        if (inside && (!nearest || t < *nearest) &&
            attribute.GetUserSliceTransferFunction(i, static_cast<unsigned int>(Entry(field.At(ray.At(t))))).a > 0.0F) {
            nearest = t;
        }
    }
    return nearest;
}

} // namespace

std::optional<double> MeetVolume(const VolumeData& data, const VolumeAttribute& attribute, const Ray& ray) {
    const Span box = SpanInBox(data, ray);
    if (box.begin > box.end) {
        return std::nullopt;
    }
    const Field field(data);
    std::optional<double> slice = MeetSlices(field, attribute, ray, box);

    Span span = box;
    for (unsigned int i = 0; i < VolumeAttribute::userPlanes; ++i) {
        const Vector4d plane = attribute.GetUserClipPlane(i);
        span.Keep(Value(plane, ray.origin), Slope(plane, ray.direction));
    }
    // Opacities are those of this distance.
    const double step = double{data.getVoxelSize()} / Length(ray.direction);
    const ColorRGBA* const table = attribute.GetTransferFunctionTable();
    std::optional<double> inside;
    switch (attribute.GetRenderMode()) {
    case VolumeAttribute::MinimumIntensity:
        inside = Extreme(field, table, ray, span, step, -1.0);
        break;
    case VolumeAttribute::MaximumIntensity:
        inside = Extreme(field, table, ray, span, step, 1.0);
        break;
    default:
        inside = HalfTaken(field, table, ray, span, step);
        break;
    }
    if (slice && inside) {
        return std::min(*slice, *inside);
    }
    return slice ? slice : inside;
}

} // namespace KOVA::Quorvex::viewer
