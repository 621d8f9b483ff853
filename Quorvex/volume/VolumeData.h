#pragma once

#include <cstddef>
#include <vector>

#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>
#include <Quorvex/scene/RenderObjectData.h>
#include <Quorvex/scene/Storage.h>
#include <Quorvex/volume/Brick.h>

namespace KOVA::Quorvex {

class Mesh;
class View;

namespace bricks {
struct Grid;
}

// Voxels of one byte, and the bricks that they were cut into for drawing.
//
// Store: x x y x z voxels in slice blocks. A block is one or more consecutive z slices, x fastest, then y, then z; the
// list of starts gives the z of each block's first slice, ascending from 0. Blocks that the object allocated (always
// one) are its own. Lent blocks stay the host's, who keeps them alive while they are used here and frees them.
//
// Place: with m the largest of the three dimensions, the volume spans -x/m ... x/m along the world's x axis (likewise y
// and z), so that the longest axis runs from -1 to 1. Without voxels that is the cube from -1 to 1.
//
// Changing voxels does not change bricks: call Update. What makes, sorts, draws or destroys bricks, the destructor
// included, belongs on the thread of Quorvex::Init; without bricks any thread that has the object to itself may.
class QUORVEX_API VolumeData : public RenderObjectData {
public:
    VolumeData();
    VolumeData(std::size_t x, std::size_t y, std::size_t z); // the voxels are not initialised
    VolumeData(std::size_t x, std::size_t y, std::size_t z, std::vector<unsigned char*> blocks,
               std::vector<std::size_t> starts); // lent

    // Voxels are shared through Volume, never copied: a copy is empty, and an assignment takes over the box, centre and
    // radius alone. The counter of data that objects share is kept.
    VolumeData(const VolumeData& other);
    VolumeData& operator=(const VolumeData& other);

    // Destroys the bricks, and frees the voxels unless objects still count on this data or they are lent.
    ~VolumeData() override;

    // Content is not compared: both are true for any two volumes.
    bool operator==(const VolumeData& /*other*/) const { return true; }
    bool operator!=(const VolumeData& /*other*/) const { return true; }

    // Replace the store: by a new one of zeros, by lent blocks. Both throw std::bad_alloc; the object is empty then.
    void createData(std::size_t x, std::size_t y, std::size_t z);
    void setExternData(std::vector<unsigned char*> blocks, std::vector<std::size_t> starts, std::size_t x,
                       std::size_t y, std::size_t z);

    // Zeros every voxel, in lent blocks too.
    void clearData();

    // Makes every voxel 2 x 2 x 2, in a new store of its own. Throws std::bad_alloc; the object is unchanged then.
    void doubleSize();

    // Unchecked.
    unsigned char& operator()(std::size_t x, std::size_t y, std::size_t z) { return Slice(z)[y * m_dimX + x]; }
    void set(std::size_t x, std::size_t y, std::size_t z, unsigned char v) { Slice(z)[y * m_dimX + x] = v; }

    // 0 outside the volume.
    unsigned char get(long long x, long long y, long long z) const {
        return IsInside(x, m_dimX) && IsInside(y, m_dimY) && IsInside(z, m_dimZ)
                   ? Slice(static_cast<std::size_t>(
                         z))[static_cast<std::size_t>(y) * m_dimX + static_cast<std::size_t>(x)]
                   : static_cast<unsigned char>(0);
    }

    // One whole slice, y rows of x bytes; z is not checked.
    unsigned char* Slice(std::size_t z) {
        const std::size_t block = BlockOf(z);
        return m_slices[block] + (z - m_sliceStart[block]) * m_sliceSize;
    }
    const unsigned char* Slice(std::size_t z) const {
        const std::size_t block = BlockOf(z);
        return m_slices[block] + (z - m_sliceStart[block]) * m_sliceSize;
    }

    std::size_t getDimX() const { return m_dimX; }
    std::size_t getDimY() const { return m_dimY; }
    std::size_t getDimZ() const { return m_dimZ; }
    long long getDimensionX() const { return static_cast<long long>(m_dimX); }
    long long getDimensionY() const { return static_cast<long long>(m_dimY); }
    long long getDimensionZ() const { return static_cast<long long>(m_dimZ); }

    // The first block; null when there is none. All voxels of data that owns them.
    unsigned char* getDataPtr() const { return m_slices.empty() ? nullptr : m_slices.front(); }
    std::size_t getNumBlocks() const { return m_slices.size(); }

    // Half the width of a voxel in world coordinates: 1 / m.
    float getVoxelSize() const { return m_voxelSize; }

    // The width of a voxel in the texture coordinates of the bricks that Update makes: 1 / 32.
    static float getVoxelSizeTex() { return 0.03125F; }

    // Cuts the volume into bricks of 32^3 voxels that overlap by two. False, and nothing done, for a storage other than
    // STORAGE_VBO. This and what else makes bricks throws std::bad_alloc when there is no room for them, on the
    // graphics card either; no brick of that call is left then.
    bool Update(STORAGE storage);
    std::size_t CountBricksOfUpdate() const; // how many that are; needs no context

    // The same in pieces, for hosts that have other things to do in between (a brick takes about a tenth of a
    // millisecond): makes up to count of the bricks that are missing, in the order of createBricksOfSize, and returns
    // how many are missing still. Bricks that are there count as made: begin without any, see destroyBricks, and do not
    // change the voxels in between. Whoever draws meanwhile sees the bricks there are. 0, too, when no bricks can be
    // made.
    std::size_t UpdateBricks(std::size_t count);

    // Fills this object's list with bricks of sx * sy * sz voxels, of which neighbours share border, cut out of source
    // (this object, normally), and sets the texture mapping. Bricks come in the order x fastest, then y, then z, and
    // are appended to those there are. Voxels outside the volume are 0. Textures are made with the second context
    // current on the main device context; afterwards the main context is current there. Nothing is made while the
    // library cannot make 3D textures or when sizes are not larger than the border. Always true.
    bool createBricksOfSize(const VolumeData* source, int sx, int sy, int sz, int border);
    void destroyBricks(); // needs a current context when there are any

    int getNumBricks() const { return static_cast<int>(m_bricks.size()); }
    Brick& GetBrick(unsigned int i) { return m_bricks[i]; }
    const Brick& GetBrick(unsigned int i) const { return m_bricks[i]; }

    // Back to front as the view sees them; bricks at equal distance come in any order.
    void sortBricks(const View* view);

    // The texture coordinate of the world point p inside a brick is (p - brick's minimum corner + GetTex2) * GetTex1,
    // per axis. One mapping for all bricks.
    Vector3f GetTex1() const { return m_texScale; }
    Vector3f GetTex2() const { return m_texOffset; }
    void setTextureDimensions(const Brick& brick, unsigned int tx, unsigned int ty, unsigned int tz,
                              unsigned int border);

    // Outlines in red, as they stand in the modelview, all or one.
    void drawBrickBoxes() const;
    void drawBrickBoxes(int i) const;

    // The centre of a voxel. Components count as unsigned.
    Vector3f VoxelToWorld(const Vector3i& v) const;

    // Not the inverse: half a voxel is added before the fraction is cut off, so that a voxel's centre gives the voxel
    // that follows along every axis. Points up to one voxel below the box give 0. What no int can hold gives the
    // nearest int that there is, NaN gives 0.
    Vector3i WorldToVoxel(const Vector3f& p) const;

    // The lunkers, voids that an analysis marked with voxels of 255, as surfaces: a new mesh with the triangles of one
    // group of such voxels after the other (Lunkers.h tells of the groups as well). A group hangs together by faces,
    // edges or corners, and all other voxels are its background, whatever their value. Surfaces pass half-way between
    // the voxels, closed but for the volume's border, where they stay open; triangles are counter-clockwise as seen
    // from the background, so that normals point away from the voxels. Coordinates are those of the voxels: voxel
    // (x, y, z) has its centre at (x, y, z). Corners are not shared: triangle k is vertices and indices 3k, 3k + 1,
    // 3k + 2, and order and values depend on the voxels alone. Without lunkers the mesh is empty.
    //
    // Any thread may call it while nobody writes to the voxels; it uses all cores. Throws the text (const char*)
    // "KOVA::Quorvex::Volume_Data::TriangulizeLunker" unless the store is a single block, std::overflow_error when a
    // dimension exceeds 32 bits, and std::bad_alloc, also when a mesh cannot count the vertices.
    Mesh TriangulateLunker() const;

    // Looks up the entry point for 3D textures; false when the driver has none. Needs a current context.
    static bool InitExtensions();

    static void (*glTexImage3DEXT)(unsigned int target, int level, unsigned int internalFormat, int width, int height,
                                   int depth, int border, unsigned int format, unsigned int type, const void* pixels);

private:
    friend class Volume;

    static bool IsInside(long long i, std::size_t dimension) {
        return i >= 0 && static_cast<unsigned long long>(i) < dimension;
    }

    // The last block that starts at z or below.
    std::size_t BlockOf(std::size_t z) const {
        const std::size_t last = m_sliceStart.size() - 1;
        return z >= m_sliceStart[last] ? last : BlockBelow(z);
    }
    std::size_t BlockBelow(std::size_t z) const;

    bool AppendBricks(const VolumeData& source, const bricks::Grid& grid, std::size_t first, std::size_t count);
    void SetDimensions(std::size_t x, std::size_t y, std::size_t z);
    void TakeStore(unsigned char* block, std::size_t x, std::size_t y, std::size_t z);
    void FreeStore();

    Vector3f m_texScale{1.0F, 1.0F, 1.0F};  // texture coordinates per world unit
    Vector3f m_texOffset{0.0F, 0.0F, 0.0F}; // world units
    std::size_t m_dimX = 0;
    std::size_t m_dimY = 0;
    std::size_t m_dimZ = 0;
    std::size_t m_sliceSize = 0;
    float m_voxelSize = 1.0F;
    bool m_bOwnData = false;
    std::vector<unsigned char*> m_slices;
    std::vector<std::size_t> m_sliceStart;
    std::vector<Brick> m_bricks;
    bool m_madeByVolume = false; // a volume made this data for itself; volumes never delete it
};

} // namespace KOVA::Quorvex
