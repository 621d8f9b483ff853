#include <Quorvex/volume/VolumeData.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include <Quorvex/platform/Memory.h>

namespace KOVA::Quorvex {

namespace {

std::size_t Product(std::size_t a, std::size_t b) {
    if (b != 0 && a > std::numeric_limits<std::size_t>::max() / b) {
        throw std::bad_array_new_length();
    }
    return a * b;
}

using Block = std::unique_ptr<unsigned char[]>;

Block Allocate(std::size_t x, std::size_t y, std::size_t z) {
    const std::size_t bytes = Product(Product(x, y), z);
    Block block(new unsigned char[bytes]); // not filled
    platform::AdviseLargeBlock(block.get(), bytes);
    return block;
}

// Writes every byte of a row twice.
void DoubleRow(const unsigned char* source, std::size_t count, unsigned char* target) {
    for (std::size_t i = 0; i < count; ++i) {
        target[2 * i] = source[i];
        target[2 * i + 1] = source[i];
    }
}

} // namespace

VolumeData::VolumeData() {
    SetDimensions(0, 0, 0);
}

VolumeData::VolumeData(std::size_t x, std::size_t y, std::size_t z) {
    TakeStore(Allocate(x, y, z).release(), x, y, z);
}

VolumeData::VolumeData(std::size_t x, std::size_t y, std::size_t z, std::vector<unsigned char*> blocks,
                       std::vector<std::size_t> starts)
    : m_slices(std::move(blocks)), m_sliceStart(std::move(starts)) {
    SetDimensions(x, y, z);
}

// NOLINTNEXTLINE(bugprone-copy-constructor-init): nothing of the source is copied
VolumeData::VolumeData(const VolumeData& /*other*/) : VolumeData() {}

VolumeData& VolumeData::operator=(const VolumeData& other) {
    if (this != &other) {
        if (GetInstanceCounter() > 1) {
            CopyGeometry(other);
        } else {
            RenderObjectData::operator=(other);
        }
    }
    return *this;
}

VolumeData::~VolumeData() {
    destroyBricks();
    if (GetInstanceCounter() == 1) {
        FreeStore();
    }
    DecInstanceCounter();
}

void VolumeData::createData(std::size_t x, std::size_t y, std::size_t z) {
    FreeStore(); // first: there may not be room for both
    TakeStore(Allocate(x, y, z).release(), x, y, z);
    clearData();
}

void VolumeData::setExternData(std::vector<unsigned char*> blocks, std::vector<std::size_t> starts, std::size_t x,
                               std::size_t y, std::size_t z) {
    FreeStore();
    m_slices = std::move(blocks);
    m_sliceStart = std::move(starts);
    SetDimensions(x, y, z);
}

void VolumeData::clearData() {
    for (std::size_t i = 0; i < m_slices.size(); ++i) {
        const std::size_t end = i + 1 < m_slices.size() ? m_sliceStart[i + 1] : m_dimZ;
        if (end > m_sliceStart[i] && m_sliceSize > 0) {
            std::memset(m_slices[i], 0, (end - m_sliceStart[i]) * m_sliceSize);
        }
    }
}

void VolumeData::doubleSize() {
    const std::size_t width = Product(m_dimX, 2);
    const std::size_t height = Product(m_dimY, 2);
    const std::size_t depth = Product(m_dimZ, 2);
    Block doubled = Allocate(width, height, depth);
    unsigned char* target = doubled.get();
    for (std::size_t z = 0; z < m_dimZ && m_sliceSize > 0; ++z) {
        const unsigned char* source = Slice(z);
        unsigned char* const slice = target;
        for (std::size_t y = 0; y < m_dimY; ++y, source += m_dimX, target += 2 * width) {
            DoubleRow(source, m_dimX, target);
            std::memcpy(target + width, target, width);
        }
        std::memcpy(target, slice, width * height);
        target += width * height;
    }
    FreeStore();
    TakeStore(doubled.release(), width, height, depth);
}

std::size_t VolumeData::BlockBelow(std::size_t z) const {
    const auto above = std::upper_bound(m_sliceStart.begin(), m_sliceStart.end(), z);
    return above == m_sliceStart.begin() ? 0 : static_cast<std::size_t>(above - m_sliceStart.begin()) - 1;
}

void VolumeData::SetDimensions(std::size_t x, std::size_t y, std::size_t z) {
    m_dimX = x;
    m_dimY = y;
    m_dimZ = z;
    m_sliceSize = x * y;
    const std::size_t largest = std::max({x, y, z});
    Vector3f corner(1.0F, 1.0F, 1.0F);
    m_voxelSize = 1.0F;
    if (largest > 0) {
        const auto m = static_cast<float>(largest);
        corner = Vector3f(static_cast<float>(x) / m, static_cast<float>(y) / m, static_cast<float>(z) / m);
        m_voxelSize = 1.0F / m;
    }
    SetBB0(-corner);
    SetBB1(corner);
}

// Makes the allocated block the only one.
void VolumeData::TakeStore(unsigned char* block, std::size_t x, std::size_t y, std::size_t z) {
    Block owner(block);
    m_slices.assign(1, block);
    m_sliceStart.assign(1, 0);
    (void)owner.release();
    m_bOwnData = true;
    SetDimensions(x, y, z);
}

// Leaves the object without voxels.
void VolumeData::FreeStore() {
    if (m_bOwnData) {
        for (unsigned char* block : m_slices) {
            delete[] block;
        }
    }
    m_bOwnData = false;
    m_slices.clear();
    m_sliceStart.clear();
    SetDimensions(0, 0, 0);
}

} // namespace KOVA::Quorvex
