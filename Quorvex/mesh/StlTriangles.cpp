#include <Quorvex/mesh/StlTriangles.h>

#include <cmath>

#include <Quorvex/platform/Memory.h>

namespace KOVA::Quorvex::stl {

namespace {

constexpr unsigned int modeTriangles = 4;

} // namespace

void Triangles::SetBounds(const Bounds& bounds) const {
    data->SetBB0(bounds.lower);
    data->SetBB1(bounds.upper);
    data->SetCenter((bounds.lower + bounds.upper) * 0.5F);
    data->SetRadius((bounds.upper - bounds.lower).Length() * 0.5F);
}

Triangles AllocateTriangles(std::uint64_t count) {
    Triangles triangles;
    if (count > std::numeric_limits<unsigned int>::max() / 3U) {
        return triangles;
    }
    triangles.data = std::make_unique<MeshData>(static_cast<unsigned int>(count * 3), modeTriangles);
    triangles.data->CreateNormalArray(nullptr);
    triangles.data->CreateVertexArray(nullptr);
    triangles.normals = triangles.data->GetNormalArray();
    triangles.vertices = triangles.data->GetVertexArray();
    const std::size_t bytes = static_cast<std::size_t>(count) * 3 * sizeof(Vector3f);
    platform::AdviseLargeBlock(triangles.normals, bytes);
    platform::AdviseLargeBlock(triangles.vertices, bytes);
    return triangles;
}

Bounds MeasureBounds(const Triangles& triangles) {
    Bounds bounds;
    for (std::size_t i = 0; i < triangles.Count() * 3; ++i) {
        bounds.Add(triangles.vertices[i]);
    }
    return bounds;
}

// In double precision: the products of the smallest and the largest coordinates stay numbers.
Vector3f TriangleNormal(const Vector3f& a, const Vector3f& b, const Vector3f& c) {
    const double ux = static_cast<double>(b.x) - static_cast<double>(a.x);
    const double uy = static_cast<double>(b.y) - static_cast<double>(a.y);
    const double uz = static_cast<double>(b.z) - static_cast<double>(a.z);
    const double vx = static_cast<double>(c.x) - static_cast<double>(a.x);
    const double vy = static_cast<double>(c.y) - static_cast<double>(a.y);
    const double vz = static_cast<double>(c.z) - static_cast<double>(a.z);
    const double nx = uy * vz - uz * vy;
    const double ny = uz * vx - ux * vz;
    const double nz = ux * vy - uy * vx;
    const double length = std::hypot(nx, ny, nz);
    if (!(length > 0.0) || !std::isfinite(length)) {
        return {0.0F, 0.0F, 0.0F};
    }
    return {static_cast<float>(nx / length), static_cast<float>(ny / length), static_cast<float>(nz / length)};
}

bool IsFinite(const Vector3f& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

bool IsBlankNormal(const Vector3f& normal) {
    return !IsFinite(normal) || (normal.x == 0.0F && normal.y == 0.0F && normal.z == 0.0F);
}

} // namespace KOVA::Quorvex::stl
