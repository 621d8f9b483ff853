#include <Quorvex/mesh/StlForgiving.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string_view>

#include <Quorvex/mesh/StlFastFacet.h>
#include <Quorvex/mesh/StlText.h>

namespace KOVA::Quorvex::stl {

namespace {

// A word in lower case, followed by white space as FastNumber wants it. Of longer words the beginning: no number that
// means anything and no keyword is as long.
class Word {
public:
    bool Take(TextCursor& cursor);
    std::string_view Text() const { return {m_text.data(), m_length}; }
    float Number() const;

private:
    static constexpr std::size_t longest = 64;
    std::array<char, longest + 1 + TextCursor::slack> m_text{};
    std::size_t m_length = 0;
};

bool Word::Take(TextCursor& cursor) {
    cursor.SkipSpace();
    m_length = 0;
    for (int character = cursor.Peek(); character != TextCursor::endOfFile && !IsSpace(character);
         character = cursor.Peek()) {
        if (m_length < longest) {
            m_text[m_length++] = static_cast<char>(LowerCase(character));
        }
        cursor.Advance();
    }
    m_text[m_length] = ' ';
    std::fill_n(m_text.begin() + static_cast<std::ptrdiff_t>(m_length) + 1, TextCursor::slack, '\0');
    return m_length > 0;
}

// NaN for everything that is no finite decimal number. Writers that ask their locale use a decimal comma.
float Word::Number() const {
    std::array<char, longest + 1 + TextCursor::slack> text = m_text;
    if (Text().find('.') == std::string_view::npos) {
        std::replace(text.begin(), text.end(), ',', '.');
    }
    float value = 0.0F;
    const bool number = FastNumber(text.data(), value) == text.data() + m_length;
    return number ? value : std::numeric_limits<float>::quiet_NaN();
}

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr Vector3f blank(nan, nan, nan);

// Goes through the text once: to count the triangles, or to store them.
class ForgivingReader {
public:
    ForgivingReader(const platform::InputFile& file, std::int64_t start, std::size_t bufferBytes,
                    const Triangles* target)
        : m_cursor(file, start, bufferBytes), m_target(target) {}

    void Read();
    std::uint64_t Count() const { return m_triangles; }
    bool HasNothingButSolids() const { return !m_anything; }

private:
    // What the next numbers are.
    enum class Slot { Nothing, Normal, Corner, LooseCorner };

    bool TakeWholeFacet();
    void TakeWord();
    void TakeNumber();
    void SkipSolidName();
    void Expect(Slot slot);
    void AddCorner(const Vector3f& corner);
    void AddTriangle(const Vector3f& a, const Vector3f& b, const Vector3f& c);
    void EndPolygon();
    void EndFacet();

    TextCursor m_cursor;
    const Triangles* m_target;
    Word m_word;
    std::uint64_t m_triangles = 0;
    bool m_anything = false; // but names of solids

    Slot m_slot = Slot::Nothing;
    int m_numbers = 0; // of the slot
    Vector3f m_vector = blank;

    Vector3f m_normal = blank;
    std::uint64_t m_polygonStart = 0; // the first triangle of the polygon being read
    std::uint64_t m_corners = 0;
    Vector3f m_firstCorner = blank;
    Vector3f m_lastCorner = blank;
    bool m_damaged = false;
};

void ForgivingReader::Read() {
    m_cursor.SkipSpace();
    while (m_cursor.Peek() != TextCursor::endOfFile) {
        if (!TakeWholeFacet()) {
            m_word.Take(m_cursor);
            TakeWord();
        }
        m_cursor.SkipSpace();
    }
    EndFacet();
}

// Facets that are as they should be need not be looked at word by word.
bool ForgivingReader::TakeWholeFacet() {
    if (m_cursor.Peek() != 'f') {
        return false;
    }
    constexpr std::size_t facetRoom = 1024;
    m_cursor.Prefetch(facetRoom);
    Facet facet;
    const char* const end = FastFacet(m_cursor.Position(), facet);
    if (end == nullptr) {
        return false;
    }
    m_cursor.SetPosition(end);
    EndFacet();
    m_anything = true;
    m_normal = facet.normal;
    for (const Vector3f& corner : facet.corners) {
        AddCorner(corner);
    }
    EndFacet();
    return true;
}

void ForgivingReader::TakeWord() {
    const std::string_view word = m_word.Text();
    const bool solid = word == "solid" || word == "endsolid";
    m_anything = m_anything || !solid;
    if (solid) {
        EndFacet();
        SkipSolidName();
    } else if (word == "facet") {
        EndFacet();
        Expect(Slot::Normal);
    } else if (word == "normal") {
        Expect(Slot::Normal);
    } else if (word == "outer" || word == "loop") {
        EndPolygon();
        Expect(Slot::LooseCorner);
    } else if (word == "vertex") {
        Expect(Slot::Corner);
    } else if (word == "endloop") {
        EndPolygon();
    } else if (word == "endfacet") {
        EndFacet();
    } else {
        TakeNumber();
    }
}

void ForgivingReader::TakeNumber() {
    if (m_slot == Slot::Nothing) {
        return;
    }
    const float number = m_word.Number();
    if (m_slot == Slot::LooseCorner && !(number == number)) {
        return; // no keyword says that there should be a number
    }
    static_cast<float*>(m_vector)[m_numbers] = number;
    if (++m_numbers < 3) {
        return;
    }
    m_numbers = 0;
    if (m_slot == Slot::Normal) {
        m_normal = m_vector;
        m_slot = Slot::LooseCorner;
    } else {
        AddCorner(m_vector);
        m_slot = m_slot == Slot::Corner ? Slot::Nothing : Slot::LooseCorner;
    }
}

// A name goes to the end of the line, unless the facets begin there.
void ForgivingReader::SkipSolidName() {
    bool facet = false;
    for (;;) {
        int character = m_cursor.Peek();
        while (character == ' ' || character == '\t') {
            m_cursor.Advance();
            character = m_cursor.Peek();
        }
        if (character == TextCursor::endOfFile || IsSpace(character)) {
            return;
        }
        m_word.Take(m_cursor);
        if (facet && m_word.Text() == "normal") {
            Expect(Slot::Normal);
            m_anything = true;
            return;
        }
        facet = m_word.Text() == "facet";
    }
}

// Numbers that the slot before is still short of are missing.
void ForgivingReader::Expect(Slot slot) {
    const bool corner = m_slot == Slot::Corner || (m_slot == Slot::LooseCorner && m_numbers > 0);
    m_damaged = m_damaged || corner;
    m_slot = slot;
    m_numbers = 0;
}

void ForgivingReader::AddCorner(const Vector3f& corner) {
    m_damaged = m_damaged || !IsFinite(corner);
    if (m_corners == 0) {
        m_firstCorner = corner;
    } else if (m_corners > 1 && !m_damaged) {
        AddTriangle(m_firstCorner, m_lastCorner, corner);
    }
    m_lastCorner = corner;
    ++m_corners;
}

void ForgivingReader::AddTriangle(const Vector3f& a, const Vector3f& b, const Vector3f& c) {
    const std::uint64_t index = m_triangles++;
    // A polygon that turns out to be damaged is taken back, so that for a while there may be more than were counted.
    if (m_target == nullptr || index >= m_target->Count()) {
        return;
    }
    Vector3f* const vertices = m_target->vertices + index * 3;
    vertices[0] = a;
    vertices[1] = b;
    vertices[2] = c;
    const Vector3f normal = IsBlankNormal(m_normal) ? TriangleNormal(a, b, c) : m_normal;
    std::fill_n(m_target->normals + index * 3, 3, normal);
}

void ForgivingReader::EndPolygon() {
    Expect(Slot::Nothing);
    if (m_damaged) {
        m_triangles = m_polygonStart;
    }
    m_polygonStart = m_triangles;
    m_corners = 0;
    m_damaged = false;
}

void ForgivingReader::EndFacet() {
    EndPolygon();
    m_normal = blank;
}

} // namespace

Triangles ReadForgivingly(const platform::InputFile& file, std::int64_t textStart, std::size_t bufferBytes) {
    ForgivingReader counter(file, textStart, bufferBytes, nullptr);
    counter.Read();
    if (counter.Count() == 0 && !counter.HasNothingButSolids()) {
        return {};
    }
    Triangles triangles = AllocateTriangles(counter.Count());
    if (!triangles) {
        return {};
    }
    ForgivingReader reader(file, textStart, bufferBytes, &triangles);
    reader.Read();
    if (reader.Count() != triangles.Count()) {
        return {}; // somebody else is writing the file
    }
    triangles.SetBounds(MeasureBounds(triangles));
    return triangles;
}

} // namespace KOVA::Quorvex::stl
