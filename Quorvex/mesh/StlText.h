#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include <Quorvex/core/Vectors.h>
#include <Quorvex/platform/File.h>

// Reading ASCII STL: a bounded window on the file, and the scanners that take facets out of it.

namespace KOVA::Quorvex::stl {

// White space of the C locale, whatever locale the program has chosen.
constexpr bool IsSpace(int character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

constexpr int LowerCase(int character) {
    return character >= 'A' && character <= 'Z' ? character + ('a' - 'A') : character;
}

// Walks through a file from an offset on, with a buffer of bounded size.
class TextCursor {
public:
    static constexpr int endOfFile = -1;

    TextCursor(const platform::InputFile& file, std::int64_t offset, std::size_t bufferBytes);

    // The character at the cursor, endOfFile at the end. Advance only after a character.
    int Peek() { return m_position != m_end || Prefetch(1) ? static_cast<unsigned char>(*m_position) : endOfFile; }
    void Advance() { ++m_position; }
    void SkipSpace();

    std::int64_t Offset() const { return m_bufferOffset + (m_position - m_buffer.get()); }

    // Makes count characters available at Position, or as many as the file and the buffer have. True when there is one.
    bool Prefetch(std::size_t count);

    // Direct access: behind the characters that are available there are at least `slack` NUL characters to read.
    static constexpr std::size_t slack = 64;
    static constexpr std::size_t smallestBuffer = 16;
    const char* Position() const { return m_position; }
    std::string_view Available() const { return {m_position, static_cast<std::size_t>(m_end - m_position)}; }
    void SetPosition(const char* position) { m_position = position; }

private:
    const platform::InputFile& m_file;
    std::size_t m_capacity;
    std::unique_ptr<char[]> m_buffer;
    std::int64_t m_bufferOffset; // of the buffer's first character in the file
    const char* m_position;
    const char* m_end;
};

struct Facet {
    Vector3f normal;
    Vector3f corners[3];
};

// Takes one facet in the way of the C library's formatted input, with the format "facet normal %f %f %f outer loop
// vertex %f %f %f vertex %f %f %f vertex %f %f %f endloop endfacet" behind any white space. True when all its numbers
// are there. The cursor is left where the match ends or fails.
bool ScanFacet(TextCursor& cursor, Facet& facet);

// Takes a line that begins with the word "solid" or "endsolid", in any case, and has no word in it that begins with
// "facet", which may be one. False for any other text, of which some may have been taken.
bool SkipSolidLine(TextCursor& cursor);

// Takes a decimal or hexadecimal number, infinity or NaN as a %f of the C library would, in the C locale: as many
// characters as can belong to a number, without white space in front. False when they are none.
bool ScanNumber(TextCursor& cursor, float& value);

} // namespace KOVA::Quorvex::stl
