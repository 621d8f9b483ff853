#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <Quorvex/Quorvex.h>
#include <Quorvex/volume/BrickFill.h>

namespace {

using namespace KOVA::Quorvex;

using Voxels = std::vector<unsigned char>;

// A volume on lent blocks of unequal size, filled with noise, and the same voxels in one row.
struct LentVolume {
    LentVolume(std::size_t x, std::size_t y, std::size_t z, std::mt19937& random) : voxels(x * y * z) {
        std::generate(voxels.begin(), voxels.end(), [&] { return static_cast<unsigned char>(random() >> 8U); });
        std::vector<unsigned char*> blocks;
        std::vector<std::size_t> starts;
        for (std::size_t start = 0; start < z;) {
            const std::size_t slices = std::min<std::size_t>(1 + random() % 4, z - start);
            const auto first = voxels.begin() + static_cast<std::ptrdiff_t>(start * x * y);
            m_blocks.push_back(std::make_unique<Voxels>(first, first + static_cast<std::ptrdiff_t>(slices * x * y)));
            blocks.push_back(m_blocks.back()->data());
            starts.push_back(start);
            start += slices;
        }
        data.setExternData(blocks, starts, x, y, z);
    }

    Voxels voxels;
    VolumeData data;

private:
    std::vector<std::unique_ptr<Voxels>> m_blocks;
};

Voxels VoxelsOf(const VolumeData& data) {
    Voxels voxels;
    for (long long z = 0; z < data.getDimensionZ(); ++z) {
        for (long long y = 0; y < data.getDimensionY(); ++y) {
            for (long long x = 0; x < data.getDimensionX(); ++x) {
                voxels.push_back(data.get(x, y, z));
            }
        }
    }
    return voxels;
}

TEST(VolumeDataTest, StoresOfAnyBlocksHoldTheSameVoxels) {
    std::mt19937 random(1);
    for (int run = 0; run < 30; ++run) {
        const std::size_t x = 1 + random() % 9;
        const std::size_t y = 1 + random() % 9;
        const std::size_t z = 1 + random() % 17;
        LentVolume lent(x, y, z, random);
        ASSERT_EQ(VoxelsOf(lent.data), lent.voxels);
        EXPECT_EQ(lent.data.get(-1, 0, 0) + lent.data.get(0, lent.data.getDimensionY(), 0) +
                      lent.data.get(0, 0, lent.data.getDimensionZ()) + lent.data.get(0, -1, 0),
                  0);

        const std::size_t at[] = {random() % x, random() % y, random() % z};
        lent.data.set(at[0], at[1], at[2], 7);
        ++lent.data(at[0], at[1], at[2]);
        lent.voxels[(at[2] * y + at[1]) * x + at[0]] = 8;
        ASSERT_EQ(VoxelsOf(lent.data), lent.voxels);

        const float size = lent.data.getVoxelSize();
        const Vector3f corner = lent.data.GetBB1();
        lent.data.doubleSize(); // leaves the lent blocks for a store of its own
        ASSERT_EQ(lent.data.getNumBlocks(), 1U);
        for (std::size_t i = 0; i < lent.voxels.size() * 8; ++i) {
            const std::size_t voxel = ((i / (4 * x * y) / 2) * y + i / (2 * x) % (2 * y) / 2) * x + i % (2 * x) / 2;
            ASSERT_EQ(lent.data.getDataPtr()[i], lent.voxels[voxel]) << i;
        }
        EXPECT_EQ(lent.data.getVoxelSize(), size / 2);
        EXPECT_EQ(lent.data.GetBB1(), corner);

        LentVolume cleared(x, y, z, random);
        cleared.data.clearData();
        EXPECT_EQ(VoxelsOf(cleared.data), Voxels(x * y * z));
    }
}

TEST(VolumeDataTest, TheLongestAxisSpansTheWorldAndVoxelsLieInside) {
    VolumeData data;
    EXPECT_EQ(data.GetBB0(), Vector3f(-1, -1, -1));
    EXPECT_EQ(data.GetBB1(), Vector3f(1, 1, 1));
    data.createData(100, 40, 10);
    EXPECT_EQ(VoxelsOf(data), Voxels(40000));
    EXPECT_EQ(data.GetBB0(), Vector3f(-1, -0.4F, -0.1F));
    EXPECT_EQ(data.GetBB1(), Vector3f(1, 0.4F, 0.1F));
    EXPECT_EQ(data.getVoxelSize(), 1.0F / 100.0F);
    EXPECT_EQ(data.GetInstanceCounter(), 1U);
    data.createData(0, 0, 0);
    EXPECT_EQ(data.GetBB1(), Vector3f(1, 1, 1));
    EXPECT_EQ(data.get(0, 0, 0), 0);

    std::mt19937 random(2);
    for (int run = 0; run < 20; ++run) { // lent memory is not looked at here
        const Vector3i dims(static_cast<int>(1 + random() % 2000), static_cast<int>(1 + random() % 2000),
                            static_cast<int>(1 + random() % 30000));
        data.setExternData({}, {}, static_cast<std::size_t>(dims.x), static_cast<std::size_t>(dims.y),
                           static_cast<std::size_t>(dims.z));
        for (int i = 0; i < 500; ++i) {
            const Vector3i v(static_cast<int>(random()) & 0x7FFFFFFF, static_cast<int>(random()) & 0x7FFFFFFF,
                             static_cast<int>(random()) & 0x7FFFFFFF);
            const Vector3i voxel(v.x % dims.x, v.y % dims.y, v.z % dims.z);
            const Vector3f p = data.VoxelToWorld(voxel);
            ASSERT_EQ(data.WorldToVoxel(p), voxel + Vector3i(1, 1, 1)); // a centre belongs to the next one
            const double longest = std::max({dims.x, dims.y, dims.z});
            ASSERT_NEAR(p.x, (2.0 * voxel.x + 1 - dims.x) / longest, 1e-6);
        }
        EXPECT_EQ(data.WorldToVoxel(data.GetBB0() - Vector3f(1, 1, 1) * data.getVoxelSize()), Vector3i(0, 0, 0));
    }
    const Vector3i wild = data.WorldToVoxel(Vector3f(NAN, INFINITY, -1e30F));
    EXPECT_EQ(wild, Vector3i(0, 2147483647, -2147483647 - 1));
}

TEST(VolumeDataTest, CopiesAndComparisonsKnowNothingOfVoxels) {
    VolumeData data(3, 2, 1);
    const VolumeData copy(data);
    EXPECT_EQ(copy.getDimX() + copy.getNumBlocks(), 0U);
    EXPECT_TRUE(data == copy && data != copy);
    VolumeData target(2, 2, 2);
    target = data;
    EXPECT_EQ(target.GetBB1(), data.GetBB1());
    EXPECT_EQ(target.getDimX(), 2U);
    EXPECT_FALSE(data.Update(static_cast<STORAGE>(1)));
    EXPECT_THROW(VolumeData(SIZE_MAX / 2, 3, 1), std::bad_alloc);
    EXPECT_THROW(data.createData(SIZE_MAX, SIZE_MAX, SIZE_MAX), std::bad_alloc);
    EXPECT_EQ(data.get(0, 0, 0), 0);
}

TEST(VolumeDataTest, MoreVoxelsThan32BitsCount) {
    unsigned char voxels[64 * 9] = {};
    const VolumeData plane(50000, 50000, 3, {voxels}, {0});
    const auto distance = [&](const unsigned char* p) {
        return reinterpret_cast<std::uintptr_t>(p) - reinterpret_cast<std::uintptr_t>(voxels);
    };
    EXPECT_EQ(distance(plane.Slice(2)), 5000000000U);

    // The end of a long needle: all but its last slices are nowhere.
    const std::size_t length = std::size_t{1} << 32U;
    std::generate(std::begin(voxels), std::end(voxels), [i = 0]() mutable { return static_cast<unsigned char>(i++); });
    const VolumeData needle(3, 3, length, {nullptr, voxels}, {0, length - 64});
    EXPECT_EQ(needle.get(2, 2, static_cast<long long>(length) - 1), 575 % 256);
    const bricks::Grid grid = bricks::CutVolume(needle, 8, 8, 32, 2);
    EXPECT_EQ(grid.z.count, (length + 29) / 30);
    Voxels brick(grid.BrickBytes());
    bricks::FillBrick(needle, grid, grid.Count() - 1, brick.data());
    const std::size_t first = (grid.z.count - 1) * 30 - 1;
    EXPECT_EQ(brick[8 + 1], needle.get(0, 0, static_cast<long long>(first)));
    EXPECT_EQ(brick[(length - 1 - first) * 64 + 3 * 8 + 3], 575 % 256);
}

TEST(BrickFillTest, BricksHoldWhatSingleLookUpsGive) {
    std::mt19937 random(3);
    for (int run = 0; run < 200; ++run) {
        const LentVolume lent(1 + random() % 40, 1 + random() % 20, 1 + random() % 20, random);
        const std::size_t border = random() % 4;
        const std::size_t size[] = {border + 1 + random() % 16, border + 1 + random() % 16, border + 1 + random() % 16};
        const bricks::Grid grid = bricks::CutVolume(lent.data, size[0], size[1], size[2], border);
        for (std::size_t i = 0; i < grid.Count(); ++i) {
            Voxels brick(grid.BrickBytes(), 99);
            const bricks::Range range = bricks::FillBrick(lent.data, grid, i, brick.data());
            const auto origin = [](std::size_t index, const bricks::Axis& axis) {
                return static_cast<long long>(index * axis.step) - 1;
            };
            const long long x0 = origin(i % grid.x.count, grid.x);
            const long long y0 = origin(i / grid.x.count % grid.y.count, grid.y);
            const long long z0 = origin(i / grid.x.count / grid.y.count, grid.z);
            for (std::size_t k = 0; k < brick.size(); ++k) {
                const auto at = [k](std::size_t stride, std::size_t length) {
                    return static_cast<long long>(k / stride % length);
                };
                ASSERT_EQ(brick[k], lent.data.get(x0 + at(1, size[0]), y0 + at(size[0], size[1]),
                                                  z0 + at(size[0] * size[1], size[2])))
                    << run << " " << i << " " << k;
            }
            ASSERT_EQ(range.low, *std::min_element(brick.begin(), brick.end()));
            ASSERT_EQ(range.high, *std::max_element(brick.begin(), brick.end()));
        }
    }
}

TEST(BrickFillTest, BricksCoverTheVolumeVoxelByVoxel) {
    const bricks::Axis example = bricks::CutAxis(100, 32, 2, -1.0F, 1.0F);
    EXPECT_EQ(example.count, 4U);
    EXPECT_NEAR(example.Start(4), 1.4, 1e-6);
    for (const std::size_t dimension : {1U, 29U, 30U, 31U, 60U, 61U, 997U}) {
        const bricks::Axis axis = bricks::CutAxis(dimension, 32, 2, -0.5F, 0.5F);
        EXPECT_EQ(axis.count, (dimension + 29) / 30);
        for (std::size_t i = 0; i <= axis.count; ++i) {
            EXPECT_NEAR(axis.Start(i), -0.5 + 30.0 * static_cast<double>(i) / static_cast<double>(dimension), 1e-5)
                << dimension;
        }
    }
    EXPECT_EQ(bricks::CutAxis(0, 32, 2, -1.0F, 1.0F).count, 0U);
}

} // namespace
