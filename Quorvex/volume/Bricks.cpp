// What VolumeData does with OpenGL.

#include <algorithm>
#include <cassert>
#include <cmath>
#include <initializer_list>
#include <new>
#include <vector>

#include <Quorvex/core/EntryPoints.h>
#include <Quorvex/core/Facade.h>
#include <Quorvex/core/GlThread.h>
#include <Quorvex/platform/Gl.h>
#include <Quorvex/view/View.h>
#include <Quorvex/volume/BrickFill.h>
#include <Quorvex/volume/VolumeData.h>

namespace KOVA::Quorvex {

void (*VolumeData::glTexImage3DEXT)(unsigned int, int, unsigned int, int, int, int, int, unsigned int, unsigned int,
                                    const void*) = nullptr;

namespace {

constexpr std::size_t BRICK_SIZE = 32;
constexpr std::size_t BRICK_BORDER = 2;

// The second context, on the main device context, for as long as this lives; then the main one.
class LoadingContext {
public:
    LoadingContext()
        : m_current(platform::MakeCurrent(Quorvex::s_hDeviceContext, Quorvex::s_hRenderContextMultiThread)) {}
    LoadingContext(const LoadingContext&) = delete;
    LoadingContext& operator=(const LoadingContext&) = delete;
    ~LoadingContext() { platform::MakeCurrent(Quorvex::s_hDeviceContext, Quorvex::s_hRenderContext); }

    explicit operator bool() const { return m_current; }

private:
    bool m_current;
};

// Rows follow each other without gaps while this lives, whatever the host set in the context that it is offered.
class PackedRows {
public:
    PackedRows() {
        glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        for (const GLenum zero :
             std::initializer_list<GLenum>{GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_ROWS, GL_UNPACK_SKIP_PIXELS,
                                           GL_UNPACK_IMAGE_HEIGHT, GL_UNPACK_SKIP_IMAGES}) {
            glPixelStorei(zero, 0);
        }
    }
    PackedRows(const PackedRows&) = delete;
    PackedRows& operator=(const PackedRows&) = delete;
    ~PackedRows() { glPopClientAttrib(); }
};

void UploadBrick(unsigned int texture, const bricks::Grid& grid, const unsigned char* voxels) {
    glBindTexture(GL_TEXTURE_3D, texture);
    for (const GLenum wrap : std::initializer_list<GLenum>{GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T, GL_TEXTURE_WRAP_R}) {
        glTexParameteri(GL_TEXTURE_3D, wrap, GL_CLAMP);
    }
    glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    VolumeData::glTexImage3DEXT(GL_TEXTURE_3D, 0, GL_LUMINANCE, static_cast<int>(grid.sizeX),
                                static_cast<int>(grid.sizeY), static_cast<int>(grid.sizeZ), 0, GL_LUMINANCE,
                                GL_UNSIGNED_BYTE, voxels);
}

// Forgets the current context's errors.
bool RanOutOfMemory() {
    bool outOfMemory = false;
    for (GLenum error = glGetError(); error != GL_NO_ERROR; error = glGetError()) {
        outOfMemory = outOfMemory || error == GL_OUT_OF_MEMORY;
    }
    return outOfMemory;
}

bool CanMakeBricks(const VolumeData& source) {
    return VolumeData::glTexImage3DEXT != nullptr && source.getNumBlocks() > 0;
}

bricks::Grid CutForUpdate(const VolumeData& volume) {
    return bricks::CutVolume(volume, BRICK_SIZE, BRICK_SIZE, BRICK_SIZE, BRICK_BORDER);
}

Brick MakeBrick(const bricks::Grid& grid, std::size_t i, unsigned int texture, const bricks::Range& range) {
    const std::size_t x = i % grid.x.count;
    const std::size_t y = i / grid.x.count % grid.y.count;
    const std::size_t z = i / grid.x.count / grid.y.count;
    return {Vector3f(grid.x.Start(x), grid.y.Start(y), grid.z.Start(z)),
            Vector3f(grid.x.Start(x + 1), grid.y.Start(y + 1), grid.z.Start(z + 1)), texture, range.low, range.high};
}

} // namespace

bool VolumeData::InitExtensions() {
    if (!Quorvex::CheckGLExtension("GL_EXT_texture3D")) {
        return false;
    }
    LoadEntryPoint(glTexImage3DEXT, "glTexImage3DEXT");
    return glTexImage3DEXT != nullptr;
}

bool VolumeData::Update(STORAGE storage) {
    if (storage != STORAGE_VBO) {
        return false;
    }
    destroyBricks();
    UpdateBricks(CountBricksOfUpdate());
    return true;
}

std::size_t VolumeData::UpdateBricks(std::size_t count) {
    if (!CanMakeBricks(*this)) {
        return 0;
    }
    const bricks::Grid grid = CutForUpdate(*this);
    const std::size_t total = grid.Count();
    const std::size_t first = std::min(m_bricks.size(), total);
    if (count == 0 || first == total) {
        return total - first;
    }
    return AppendBricks(*this, grid, first, std::min(count, total - first)) ? total - m_bricks.size() : 0;
}

std::size_t VolumeData::CountBricksOfUpdate() const {
    return CutForUpdate(*this).Count();
}

bool VolumeData::createBricksOfSize(const VolumeData* source, int sx, int sy, int sz, int border) {
    if (!CanMakeBricks(*source) || border < 0 || std::min({sx, sy, sz}) <= border) {
        return true;
    }
    const bricks::Grid grid = bricks::CutVolume(*source, static_cast<std::size_t>(sx), static_cast<std::size_t>(sy),
                                                static_cast<std::size_t>(sz), static_cast<std::size_t>(border));
    AppendBricks(*source, grid, 0, grid.Count());
    return true;
}

// Makes bricks number first ... first + count - 1 of the grid, and takes over its texture mapping. False when the
// loading context cannot be used; there are no more bricks then than before.
bool VolumeData::AppendBricks(const VolumeData& source, const bricks::Grid& grid, std::size_t first,
                              std::size_t count) {
    assert(IsGlThread());
    // One brick at a time: it is still in the cache when the driver takes it.
    std::vector<unsigned char> staging(grid.BrickBytes());
    std::vector<unsigned int> textures(count);
    m_bricks.reserve(m_bricks.size() + grid.Count() - first);

    const LoadingContext context;
    if (!context) {
        return false;
    }
    const PackedRows packed;
    const std::size_t before = m_bricks.size();
    glGenTextures(static_cast<int>(count), textures.data());
    for (std::size_t i = 0; i < count; ++i) {
        const bricks::Range range = bricks::FillBrick(source, grid, first + i, staging.data());
        UploadBrick(textures[i], grid, staging.data());
        m_bricks.push_back(MakeBrick(grid, first + i, textures[i], range));
    }
    if (RanOutOfMemory()) {
        glDeleteTextures(static_cast<int>(count), textures.data());
        m_bricks.resize(before);
        throw std::bad_alloc();
    }
    if (count > 0) {
        setTextureDimensions(m_bricks.back(), static_cast<unsigned int>(grid.sizeX),
                             static_cast<unsigned int>(grid.sizeY), static_cast<unsigned int>(grid.sizeZ),
                             static_cast<unsigned int>(grid.border));
    }
    return true;
}

void VolumeData::destroyBricks() {
    std::vector<unsigned int> textures;
    textures.reserve(m_bricks.size());
    for (const Brick& brick : m_bricks) {
        if (brick.m_textureID != 0) {
            textures.push_back(brick.m_textureID);
        }
    }
    if (!textures.empty()) {
        assert(IsGlThread());
        glDeleteTextures(static_cast<int>(textures.size()), textures.data());
    }
    m_bricks.clear();
}

void VolumeData::sortBricks(const View* view) {
    for (Brick& brick : m_bricks) {
        brick.UpdateDistance(view);
        if (std::isnan(brick.m_distance)) {
            brick.m_distance = 0.0; // a view that looks nowhere; sorting needs numbers
        }
    }
    std::sort(m_bricks.begin(), m_bricks.end());
}

void VolumeData::setTextureDimensions(const Brick& brick, unsigned int tx, unsigned int ty, unsigned int tz,
                                      unsigned int border) {
    const auto map = [border](unsigned int size, float low, float high, float& scale, float& offset) {
        const double s = (static_cast<double>(size) - static_cast<double>(border)) / static_cast<double>(size);
        scale = static_cast<float>(s / static_cast<double>(high - low));
        offset = static_cast<float>((0.5 - s / 2.0) / static_cast<double>(scale));
    };
    map(tx, brick.m_bb0.x, brick.m_bb1.x, m_texScale.x, m_texOffset.x);
    map(ty, brick.m_bb0.y, brick.m_bb1.y, m_texScale.y, m_texOffset.y);
    map(tz, brick.m_bb0.z, brick.m_bb1.z, m_texScale.z, m_texOffset.z);
}

void VolumeData::drawBrickBoxes() const {
    for (int i = 0; i < getNumBricks(); ++i) {
        drawBrickBoxes(i);
    }
}

void VolumeData::drawBrickBoxes(int i) const {
    const Brick& brick = m_bricks[static_cast<std::size_t>(i)];
    const Vector3f corners[] = {brick.m_bb0, brick.m_bb1};
    // The corners of the six faces in turn; bit 0 is x, bit 1 is y, bit 2 is z.
    constexpr int faces[6][4] = {{0, 1, 3, 2}, {4, 5, 7, 6}, {0, 2, 6, 4}, {1, 3, 7, 5}, {0, 1, 5, 4}, {2, 3, 7, 6}};
    const auto vertex = [&corners](int corner) {
        glVertex3f(corners[corner & 1].x, corners[corner >> 1 & 1].y, corners[corner >> 2].z);
    };
    glColor3f(1.0F, 0.0F, 0.0F);
    glBegin(GL_LINES);
    for (const auto& face : faces) {
        for (int k = 0; k < 4; ++k) {
            vertex(face[k]);
            vertex(face[(k + 1) % 4]);
        }
    }
    glEnd();
}

} // namespace KOVA::Quorvex
