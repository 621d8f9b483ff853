// What the viewer calculates, without a window.

#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include <Quorvex/mesh/MeshBuilder.h>
#include <Quorvex/volume/VolumeAttribute.h>
#include <Quorvex/volume/VolumeBuilder.h>

#include <shared/MeetMesh.h>
#include <viewer/CameraRig.h>
#include <viewer/Measurements.h>
#include <viewer/MeetVolume.h>
#include <viewer/TransferCurve.h>

namespace KOVA::Quorvex::viewer {

namespace {

constexpr Box c_box{{-1.0, -0.6, -0.8}, {1.0, 0.6, 0.8}};

// Where the frame draws a point: matrices of the view, with the aspect ratio that the frame multiplies in.
CameraRig::Pixel Drawn(const CameraRig& rig, const Vector3d& p) {
    const auto times = [](const double* m, const std::array<double, 4>& v) {
        std::array<double, 4> result{};
        for (std::size_t row = 0; row < 4; ++row) {
            for (std::size_t column = 0; column < 4; ++column) {
                result[row] += m[column * 4 + row] * v[column];
            }
        }
        return result;
    };
    const std::array<double, 4> eye = times(rig.GetView().GetModelviewMatrix(), {p.x, p.y, p.z, 1.0});
    std::array<double, 4> clip = times(rig.GetView().GetProjectionMatrix(), eye);
    clip[1] *= static_cast<double>(rig.GetWidth()) / rig.GetHeight();
    EXPECT_LE(std::abs(clip[2]), clip[3] * (1.0 + 1e-6)); // between the planes
    return {(1.0 + clip[0] / clip[3]) * rig.GetWidth() / 2.0, (1.0 - clip[1] / clip[3]) * rig.GetHeight() / 2.0};
}

TEST(CameraRigTest, AgreesWithTheMatricesHoweverItIsMoved) {
    std::mt19937 random(21);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (int i = 0; i < 200; ++i) {
        CameraRig rig;
        rig.SetSize(300 + i, 700 - 2 * i);
        rig.SetScene(c_box);
        rig.SetProjection(i % 2 == 0 ? Projection::Perspective : Projection::Orthogonal);
        rig.Look(static_cast<Side>(i % 7));
        rig.Turn(50, 50, 50 + i, 90);
        rig.Pan(unit(random) * 30.0, unit(random) * 30.0);
        // The point under the cursor stays where it is when it lies at the pivot's depth, and the ray runs through it.
        const double x = 80.0 + unit(random) * 60.0;
        const double y = 100.0 + unit(random) * 60.0;
        const Ray before = rig.RayAt(x, y);
        rig.Zoom(1.5, x, y);
        const Ray after = rig.RayAt(x, y);
        if (i % 2 == 1) {
            EXPECT_LT(Length(Cross(after.origin - before.origin, before.direction)), 1e-5);
        }
        const Vector3d point(unit(random), 0.6 * unit(random), 0.8 * unit(random));
        const auto seen = rig.PixelOf(point);
        if (!seen) {
            continue;
        }
        const CameraRig::Pixel drawn = Drawn(rig, point);
        EXPECT_NEAR(seen->x, drawn.x, 0.05);
        EXPECT_NEAR(seen->y, drawn.y, 0.05);
        const Ray ray = rig.RayAt(seen->x, seen->y);
        EXPECT_LT(Length(Cross(point - ray.origin, ray.direction)), 1e-5 * Length(point - ray.origin) + 1e-6);
        if (const auto front = rig.InFront(point)) {
            const CameraRig::Pixel moved = Drawn(rig, Vector3d(front->place));
            EXPECT_NEAR(moved.x, drawn.x, 0.5);
            EXPECT_NEAR(moved.y, drawn.y, 0.5);
        }
    }
}

TEST(MeetTest, SpheresAreMetWhereTheyAre) {
    const Mesh mesh = MeshBuilder::BuildSphere({0.0F, 0.0F, 0.0F}, 1.0F);
    std::mt19937 random(3);
    std::normal_distribution<double> normal;
    for (int i = 0; i < 200; ++i) {
        const Vector3d eye = Vector3d(normal(random), normal(random), normal(random)) * 3.0 + Vector3d(0.0, 0.0, 8.0);
        const Vector3d target(0.4 * normal(random), 0.4 * normal(random), 0.4 * normal(random));
        const Vector3d way = target - eye;
        const Ray ray{eye, way * (1.0 / Length(way))};
        const double b = Dot(ray.origin, ray.direction);
        const double discriminant = b * b - Dot(eye, eye) + 1.0;
        const auto met = MeetTriangles(mesh.GetData(), ray);
        if (discriminant > 0.05) { // not where the facets' outline is
            ASSERT_TRUE(met);
            EXPECT_NEAR(*met, -b - std::sqrt(discriminant), 0.06);
        } else if (discriminant < 0.0) {
            EXPECT_FALSE(met);
        }
    }
    EXPECT_FALSE(MeetTriangles(mesh.GetData(), {{0.0, 0.0, 3.0}, {0.0, 0.0, 1.0}})); // behind
}

// A slab of opaque voxels from z = 10 on in a volume of 32: its face is where the intensity is half of it.
TEST(MeetTest, VolumesAreMetByTheirTransferFunction) {
    const Volume volume = VolumeBuilder::BuildBox(32, 32, 32);
    VolumeData& data = volume.GetData();
    for (std::size_t z = 10; z < 32; ++z) {
        std::fill_n(data.Slice(z), 32 * 32, static_cast<unsigned char>(z == 20 ? 250 : 200));
    }
    VolumeAttribute& attribute = volume.GetAttribute();
    attribute.SetRenderMode(VolumeAttribute::Shaded);
    for (unsigned int i = 0; i < 256; ++i) {
        const float level = static_cast<float>(i) / 255.0F;
        attribute.SetTransferFunction(i, {level, level, level, i >= 100 ? 1.0F : 0.0F});
    }
    const Ray ray{{0.1, 0.05, -3.0}, {0.0, 0.0, 1.0}};
    const auto depthOfVoxel = [&](double z) { return 3.0 + (2.0 * (z + 0.5) - 32.0) / 32.0; };
    EXPECT_NEAR(MeetVolume(data, attribute, ray).value_or(0.0), depthOfVoxel(9.5), 0.04);

    attribute.SetUserClipPlane(0, Vector4d(0.0, 0.0, 1.0, -0.25)); // keeps z >= 0.25
    EXPECT_NEAR(MeetVolume(data, attribute, ray).value_or(0.0), 3.25, 0.04);
    attribute.SetUserClipPlane(1, Vector4d(0.0, 0.0, -1.0, 0.2)); // nothing is left
    EXPECT_FALSE(MeetVolume(data, attribute, ray));
    for (unsigned int i = 0; i < 256; ++i) {
        attribute.SetUserSliceTransferFunction(2, i, {1.0F, 1.0F, 1.0F, i > 150 ? 1.0F : 0.0F});
    }
    attribute.SetUserSlice(2, Vector4d(0.0, 0.0, 2.0, -0.1)); // at z = 0.05
    EXPECT_NEAR(MeetVolume(data, attribute, ray).value_or(0.0), 3.05, 1e-6);
    EXPECT_FALSE(MeetVolume(data, attribute, {{2.0, 0.0, -3.0}, {0.0, 0.0, 1.0}})); // past it

    VolumeAttribute thin; // opacities that add up
    for (unsigned int i = 0; i < 256; ++i) {
        thin.SetTransferFunction(i, {1.0F, 1.0F, 1.0F, i >= 100 ? 0.05F : 0.0F});
    }
    const double steps = std::log(0.5) / std::log(0.95);
    EXPECT_NEAR(MeetVolume(data, thin, ray).value_or(0.0), depthOfVoxel(9.5) + steps / 32.0, 0.04);
}

TEST(TransferCurveTest, FollowsTablesAndKeepsItsOrder) {
    TransferTable table{};
    for (std::size_t i = 0; i < table.size(); ++i) { // two ramps and a step
        const float t = static_cast<float>(i) / 255.0F;
        const float ramp = std::min(std::max((t - 0.3F) * 4.0F, 0.0F), 1.0F);
        table[i] = {t, t * t, i > 128 ? 1.0F : 0.0F, 0.02F * ramp};
    }
    TransferCurve curve = TransferCurve::FromTable(table);
    EXPECT_LT(curve.GetPoints().size(), 16U);
    const TransferTable again = curve.MakeTable();
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_NEAR(again[i].g, table[i].g, 0.013F) << i;
        EXPECT_NEAR(again[i].a, table[i].a, 0.013F * 0.02F) << i;
    }
    std::mt19937 random(5);
    std::uniform_real_distribution<double> anywhere(-50.0, 300.0);
    for (int i = 0; i < 500; ++i) {
        const std::size_t index = random() % curve.GetPoints().size();
        switch (random() % 4) {
        case 0:
            if (const double at = anywhere(random); at > 0.0 && at < 255.0) {
                EXPECT_EQ(curve.GetPoints()[curve.Insert(at)].intensity, at);
            }
            break;
        case 1:
            curve.Remove(index);
            break;
        case 2:
            curve.SetWindow(anywhere(random), anywhere(random));
            break;
        default:
            curve.Move(index, anywhere(random), anywhere(random) / 200.0);
            break;
        }
        const auto& points = curve.GetPoints();
        ASSERT_GE(points.size(), 2U);
        for (std::size_t k = 0; k + 1 < points.size(); ++k) {
            ASSERT_LE(points[k].intensity, points[k + 1].intensity);
        }
        for (const ColorRGBA& color : curve.MakeTable()) {
            ASSERT_TRUE(color.a >= 0.0F && color.a <= 1.0F);
        }
    }
    curve.SetWindow(100.0, 60.0);
    EXPECT_NEAR(curve.GetLevel(), 100.0, 1e-9);
    EXPECT_NEAR(curve.GetWindow(), 60.0, 1e-9);
}

} // namespace

} // namespace KOVA::Quorvex::viewer
