#include <Quorvex/mesh/StlText.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include <Quorvex/mesh/StlFastFacet.h>

namespace KOVA::Quorvex::stl {

TextCursor::TextCursor(const platform::InputFile& file, std::int64_t offset, std::size_t bufferBytes)
    : m_file(file), m_capacity(std::max(bufferBytes, smallestBuffer)), m_buffer(new char[m_capacity + slack]),
      m_bufferOffset(offset), m_position(m_buffer.get()), m_end(m_buffer.get()) {
    std::memset(m_buffer.get(), 0, slack);
}

bool TextCursor::Prefetch(std::size_t count) {
    const auto available = static_cast<std::size_t>(m_end - m_position);
    if (available >= std::min(count, m_capacity)) {
        return available > 0;
    }
    const std::int64_t next = Offset() + static_cast<std::int64_t>(available);
    const std::int64_t left = std::max<std::int64_t>(m_file.Size() - next, 0);
    if (left == 0) {
        return available > 0;
    }
    m_bufferOffset = Offset();
    std::memmove(m_buffer.get(), m_position, available);
    const auto wanted =
        static_cast<std::size_t>(std::min<std::int64_t>(left, static_cast<std::int64_t>(m_capacity - available)));
    const std::size_t got = m_file.ReadAt(next, m_buffer.get() + available, wanted);
    m_position = m_buffer.get();
    m_end = m_buffer.get() + available + got;
    std::memset(m_buffer.get() + available + got, 0, slack);
    return m_position != m_end;
}

void TextCursor::SkipSpace() {
    while (IsSpace(Peek())) {
        Advance();
    }
}

namespace {

// In any case, and as a word of its own.
bool BeginsWithWord(const char* text, std::string_view word) {
    for (const char character : word) {
        if (LowerCase(*text++) != character) {
            return false;
        }
    }
    return IsSpace(*text) || *text == '\0';
}

bool ScanWord(TextCursor& cursor, std::string_view word) {
    cursor.SkipSpace();
    for (const char character : word) {
        if (cursor.Peek() != character) {
            return false;
        }
        cursor.Advance();
    }
    return true;
}

bool ScanVector(TextCursor& cursor, Vector3f& vector) {
    for (float* const component : {&vector.x, &vector.y, &vector.z}) {
        cursor.SkipSpace();
        if (!ScanNumber(cursor, *component)) {
            return false;
        }
    }
    return true;
}

bool ScanVertex(TextCursor& cursor, Vector3f& vertex) {
    return ScanWord(cursor, "vertex") && ScanVector(cursor, vertex);
}

bool ScanAnyFacet(TextCursor& cursor, Facet& facet) {
    const bool numbers = ScanWord(cursor, "facet") && ScanWord(cursor, "normal") && ScanVector(cursor, facet.normal) &&
                         ScanWord(cursor, "outer") && ScanWord(cursor, "loop") &&
                         ScanVertex(cursor, facet.corners[0]) && ScanVertex(cursor, facet.corners[1]) &&
                         ScanVertex(cursor, facet.corners[2]);
    // The last words may be missing; as much of them as is there is taken.
    if (numbers && ScanWord(cursor, "endloop")) {
        ScanWord(cursor, "endfacet");
    }
    return numbers;
}

} // namespace

bool ScanFacet(TextCursor& cursor, Facet& facet) {
    // More than a facet as programs write them: nearly all are taken in memory, without looking for the buffer's end.
    constexpr std::size_t facetRoom = 1024;
    cursor.Prefetch(facetRoom);
    const char* const end = FastFacet(cursor.Position(), facet);
    if (end != nullptr) {
        cursor.SetPosition(end);
        return true;
    }
    return ScanAnyFacet(cursor, facet);
}

bool SkipSolidLine(TextCursor& cursor) {
    cursor.Prefetch(TextCursor::smallestBuffer);
    if (!BeginsWithWord(cursor.Position(), "solid") && !BeginsWithWord(cursor.Position(), "endsolid")) {
        return false;
    }
    constexpr std::string_view facet = "facet";
    std::size_t matched = 0; // letters of the current word; all of them and more when it is another one
    for (int character = cursor.Peek(); character != '\n' && character != '\r'; character = cursor.Peek()) {
        if (character == TextCursor::endOfFile) {
            break;
        }
        if (IsSpace(character)) {
            matched = 0;
        } else if (matched < facet.size() && LowerCase(character) == facet[matched]) {
            ++matched;
        } else {
            matched = facet.size() + 1;
        }
        if (matched == facet.size()) {
            return false;
        }
        cursor.Advance();
    }
    return true;
}

} // namespace KOVA::Quorvex::stl
