#include <Quorvex/mesh/StlAscii.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <string_view>
#include <vector>

#include <Quorvex/core/Parallel.h>

namespace KOVA::Quorvex::stl {

namespace {

constexpr std::string_view facetWord = "facet";

// The shortest facet that can be read, "facetnormal0 0 0outerloopvertex0 0 0vertex0 0 0vertex0 0 0". More of them than
// the file has room for need no memory to fail.
constexpr std::int64_t shortestFacet = 58;

// A part of the file: the facets whose first character lies in it.
struct Block {
    std::int64_t firstFacet = -1; // offset of its first word "facet"
    std::uint64_t facets = 0;
    std::uint64_t facetsBefore = 0;
    std::int64_t nextFacet = -1; // where reading its facets got to
    Bounds bounds;
};

// Counts the words that begin with "facet" in buffer[1..count]; buffer[0] is the character in front, four characters
// or NUL follow behind.
void CountFacets(const char* buffer, std::size_t count, std::int64_t offset, Block& block) {
    const char* const end = buffer + 1 + count;
    for (const char* at = buffer + 1; at != end; ++at) {
        at = static_cast<const char*>(std::memchr(at, facetWord.front(), static_cast<std::size_t>(end - at)));
        if (at == nullptr) {
            return;
        }
        if (IsSpace(at[-1]) && std::memcmp(at, facetWord.data(), facetWord.size()) == 0) {
            if (block.facets++ == 0) {
                block.firstFacet = offset + (at - (buffer + 1));
            }
        }
    }
}

class AsciiReader {
public:
    AsciiReader(const platform::InputFile& file, std::int64_t start, const AsciiOptions& options, bool solids)
        : m_file(file), m_start(start), m_options(options), m_solids(solids) {}

    // First count and allocate, then fill in one of two ways; false when the facets cannot be read that way.
    Triangles Allocate();
    bool FillInBlocks(const Triangles& target);
    bool FillInSequence(const Triangles& target) const;

private:
    bool Count();
    bool CountBlock(std::size_t index);
    bool FillBlock(Block& block, const Triangles& target) const;
    bool IsContiguous() const;
    void SkipGap(TextCursor& cursor) const;

    const platform::InputFile& m_file;
    std::int64_t m_start;
    AsciiOptions m_options;
    bool m_solids; // other solids may begin between facets
    std::vector<Block> m_blocks;
    std::uint64_t m_facets = 0;
};

// False when the file is not as long any more as it was.
bool AsciiReader::CountBlock(std::size_t index) {
    const std::int64_t first = m_start + static_cast<std::int64_t>(index * m_options.blockBytes);
    const std::int64_t end = std::min(first + static_cast<std::int64_t>(m_options.blockBytes), m_file.Size());
    const std::unique_ptr<char[]> buffer(new char[m_options.bufferBytes + facetWord.size()]);
    for (std::int64_t offset = first; offset < end;) {
        const auto count = static_cast<std::size_t>(
            std::min<std::int64_t>(end - offset, static_cast<std::int64_t>(m_options.bufferBytes)));
        // With one character in front, which says whether a word begins, and the rest of a word that begins last.
        const std::size_t front = offset > 0 ? 1 : 0;
        const std::size_t wanted = front + count + facetWord.size() - 1;
        const std::size_t got =
            m_file.ReadAt(offset - static_cast<std::int64_t>(front), buffer.get() + 1 - front, wanted);
        if (got < front + count) {
            return false;
        }
        std::memset(buffer.get() + 1 - front + got, 0, wanted - got);
        if (offset == m_start) {
            buffer[0] = ' ';
        }
        CountFacets(buffer.get(), count, offset, m_blocks[index]);
        offset += static_cast<std::int64_t>(count);
    }
    return true;
}

bool AsciiReader::Count() {
    m_file.WillBeRead(2); // here and for the facets
    constexpr std::size_t mostBlocks = 65536;
    const auto bytes = static_cast<std::uint64_t>(std::max<std::int64_t>(m_file.Size() - m_start, 0));
    m_options.blockBytes = std::max(m_options.blockBytes, static_cast<std::size_t>(bytes / mostBlocks));
    m_blocks.assign((bytes + m_options.blockBytes - 1) / m_options.blockBytes, Block());
    std::atomic<bool> complete = true;
    ParallelFor(m_blocks.size(), [&](std::size_t index) {
        if (!CountBlock(index)) {
            complete = false;
        }
    });
    for (Block& block : m_blocks) {
        block.facetsBefore = m_facets;
        m_facets += block.facets;
    }
    return complete;
}

Triangles AsciiReader::Allocate() {
    if (!Count()) {
        return {};
    }
    const auto room = static_cast<std::uint64_t>((m_file.Size() - m_start) / shortestFacet + 1);
    return m_facets <= room ? AllocateTriangles(m_facets) : Triangles();
}

// What may stand between two facets.
void AsciiReader::SkipGap(TextCursor& cursor) const {
    cursor.SkipSpace();
    while (m_solids && SkipSolidLine(cursor)) {
        cursor.SkipSpace();
    }
}

void Store(const Facet& facet, std::uint64_t index, const Triangles& target, Bounds& bounds) {
    Vector3f* const normals = target.normals + index * 3;
    Vector3f* const vertices = target.vertices + index * 3;
    for (int corner = 0; corner < 3; ++corner) {
        normals[corner] = facet.normal;
        vertices[corner] = facet.corners[corner];
        bounds.Add(facet.corners[corner]);
    }
}

// For readers of the wild: false when the facet has to be left out.
bool Repair(Facet& facet) {
    if (!IsFinite(facet.corners[0]) || !IsFinite(facet.corners[1]) || !IsFinite(facet.corners[2])) {
        return false;
    }
    if (IsBlankNormal(facet.normal)) {
        facet.normal = TriangleNormal(facet.corners[0], facet.corners[1], facet.corners[2]);
    }
    return true;
}

// False when there are not as many facets from the block's first one on.
bool AsciiReader::FillBlock(Block& block, const Triangles& target) const {
    if (block.facets == 0) {
        return true;
    }
    TextCursor cursor(m_file, block.firstFacet, m_options.bufferBytes);
    Facet facet;
    Bounds bounds;
    for (std::uint64_t i = 0; i < block.facets; ++i) {
        if (!ScanFacet(cursor, facet) || (m_solids && !Repair(facet))) {
            return false;
        }
        Store(facet, block.facetsBefore + i, target, bounds);
        SkipGap(cursor);
    }
    block.nextFacet = cursor.Offset();
    block.bounds = bounds;
    return true;
}

// Whether the blocks have read what reading from front to back would have: the first facet stands where that begins,
// and every block got to where the next one started. With several solids, the last ones end with the file; with one,
// what follows is not looked at.
bool AsciiReader::IsContiguous() const {
    TextCursor cursor(m_file, m_start, m_options.bufferBytes);
    SkipGap(cursor);
    std::int64_t reached = cursor.Offset();
    for (const Block& block : m_blocks) {
        if (block.facets > 0) {
            if (block.firstFacet != reached) {
                return false;
            }
            reached = block.nextFacet;
        }
    }
    return !m_solids || reached == m_file.Size();
}

bool AsciiReader::FillInBlocks(const Triangles& target) {
    std::atomic<bool> regular = true;
    ParallelFor(m_blocks.size(), [&](std::size_t index) {
        if (regular && !FillBlock(m_blocks[index], target)) {
            regular = false;
        }
    });
    if (!regular || !IsContiguous()) {
        return false;
    }
    Bounds bounds;
    for (const Block& block : m_blocks) {
        bounds.Add(block.bounds);
    }
    target.SetBounds(bounds);
    return true;
}

bool AsciiReader::FillInSequence(const Triangles& target) const {
    TextCursor cursor(m_file, m_start, m_options.bufferBytes);
    Facet facet;
    Bounds bounds;
    for (std::uint64_t i = 0; i < m_facets; ++i) {
        if (!ScanFacet(cursor, facet)) {
            return false;
        }
        Store(facet, i, target, bounds);
    }
    target.SetBounds(bounds);
    return true;
}

} // namespace

std::int64_t EndOfFirstLine(const platform::InputFile& file) {
    constexpr std::size_t longest = 511;
    char line[longest];
    const std::size_t count = file.Size() > 0 ? file.ReadAt(0, line, longest) : 0;
    if (count == 0) {
        return -1;
    }
    const auto* const newline = static_cast<const char*>(std::memchr(line, '\n', count));
    return newline != nullptr ? newline - line + 1 : static_cast<std::int64_t>(count);
}

Triangles ReadAsciiTriangles(const platform::InputFile& file, const AsciiOptions& options) {
    const std::int64_t start = EndOfFirstLine(file);
    if (start < 0) {
        return {};
    }
    AsciiReader reader(file, start, options, false);
    Triangles triangles = reader.Allocate();
    const bool filled = triangles && (reader.FillInBlocks(triangles) || reader.FillInSequence(triangles));
    return filled ? std::move(triangles) : Triangles();
}

Triangles ReadAsciiTrianglesSequentially(const platform::InputFile& file, const AsciiOptions& options) {
    const std::int64_t start = EndOfFirstLine(file);
    if (start < 0) {
        return {};
    }
    AsciiReader reader(file, start, options, false);
    Triangles triangles = reader.Allocate();
    return triangles && reader.FillInSequence(triangles) ? std::move(triangles) : Triangles();
}

Triangles ReadRegularSolids(const platform::InputFile& file, std::int64_t offset, const AsciiOptions& options) {
    AsciiReader reader(file, offset, options, true);
    Triangles triangles = reader.Allocate();
    return triangles && reader.FillInBlocks(triangles) ? std::move(triangles) : Triangles();
}

} // namespace KOVA::Quorvex::stl
