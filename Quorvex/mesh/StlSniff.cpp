#include <Quorvex/mesh/StlSniff.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <Quorvex/mesh/StlBinary.h>
#include <Quorvex/mesh/StlText.h>

namespace KOVA::Quorvex::stl {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool IsControl(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < ' ' && !IsSpace(code);
}

// The next word of text in lower case, taken off its front.
std::string TakeWord(std::string_view& text) {
    const auto isSpace = [](char character) { return IsSpace(static_cast<unsigned char>(character)); };
    const auto* const begin = std::find_if_not(text.begin(), text.end(), isSpace);
    const auto* const end = std::find_if(begin, text.end(), isSpace);
    std::string word(begin, end);
    std::transform(word.begin(), word.end(), word.begin(),
                   [](char character) { return static_cast<char>(LowerCase(character)); });
    text.remove_prefix(static_cast<std::size_t>(end - text.begin()));
    return word;
}

// True when words stand there that only ASCII STL has. One line of a header may say much, but hardly these.
bool HasFacetWords(std::string_view text) {
    std::string previous;
    while (!text.empty()) {
        std::string word = TakeWord(text);
        if ((previous == "facet" && word == "normal") || (previous == "outer" && word == "loop")) {
            return true;
        }
        previous = std::move(word);
    }
    return false;
}

bool IsText(std::string_view start) {
    const std::string_view text = start.substr(0, start.find('\0'));
    if (HasFacetWords(text)) {
        return true;
    }
    std::string_view rest = start;
    return TakeWord(rest).compare(0, 5, "solid") == 0 && std::none_of(start.begin(), start.end(), IsControl);
}

bool IsPlausibleCoordinate(float value) {
    constexpr float least = 1e-30F;
    constexpr float most = 1e15F;
    const float size = std::fabs(value);
    return value == 0.0F || (size > least && size < most);
}

// A unit normal or none, and corners of a size that parts have.
bool IsPlausibleRecord(const char* record) {
    Vector3f values[4];
    std::memcpy(values, record, sizeof(values));
    const float length = values[0].Length();
    constexpr float deviation = 0.1F;
    if (length != 0.0F && !(std::fabs(length - 1.0F) < deviation)) {
        return false;
    }
    bool zero = true;
    for (int i = 1; i < 4; ++i) {
        for (const float value : {values[i].x, values[i].y, values[i].z}) {
            zero = zero && value == 0.0F;
            if (!IsPlausibleCoordinate(value)) {
                return false;
            }
        }
    }
    return !zero;
}

// Whether there are triangles where a binary file has them: most of the first records make sense.
bool HasPlausibleRecords(const platform::InputFile& file) {
    constexpr std::int64_t sample = 256;
    const auto count = static_cast<std::size_t>(std::min(sample, RecordCapacity(file.Size())));
    std::vector<char> records(count * recordBytes);
    const std::size_t got = file.ReadAt(prefixBytes, records.data(), records.size());
    // Letters and digits make coordinates of a likely size, too.
    const auto isBinary = [](char character) {
        return IsControl(character) || static_cast<unsigned char>(character) > 126;
    };
    if (count == 0 || got + attributeBytes < records.size() || std::none_of(records.begin(), records.end(), isBinary)) {
        return false;
    }
    std::size_t plausible = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (IsPlausibleRecord(records.data() + i * recordBytes)) {
            ++plausible;
        }
    }
    return plausible * 4 >= count * 3;
}

// Number of triangles of a binary file of which the length does not fit the count; -1 when it is none.
std::int64_t TrianglesInSpiteOfLength(const platform::InputFile& file, std::int64_t announced) {
    const std::int64_t capacity = RecordCapacity(file.Size());
    const auto used = static_cast<std::int64_t>(prefixBytes) + announced * static_cast<std::int64_t>(recordBytes);
    const bool fits = announced <= capacity;
    if (fits && (announced > 0 || capacity == 0) && file.Size() - used <= used) {
        return announced; // nearly all of the file, and something behind
    }
    if (!HasPlausibleRecords(file)) {
        return -1;
    }
    return fits && announced > 0 ? announced : capacity; // 0 when the count was never filled in
}

bool FitsExactly(std::int64_t fileBytes, std::int64_t triangles) {
    const auto whole = static_cast<std::int64_t>(prefixBytes) + triangles * static_cast<std::int64_t>(recordBytes);
    return fileBytes == whole || (triangles > 0 && fileBytes == whole - static_cast<std::int64_t>(attributeBytes));
}

} // namespace

Contents Sniff(const platform::InputFile& file) {
    const std::int64_t announced = file.Size() > 0 ? AnnouncedTriangles(file) : -1;
    if (announced >= 0 && FitsExactly(file.Size(), announced)) {
        return {Contents::Kind::Binary, 0, announced};
    }
    constexpr std::size_t window = std::size_t{1} << 16;
    TextCursor cursor(file, 0, window);
    cursor.Prefetch(window);
    const bool marked = std::memcmp(cursor.Position(), byteOrderMark.data(), byteOrderMark.size()) == 0;
    const std::size_t textStart = marked ? byteOrderMark.size() : 0;
    cursor.SetPosition(cursor.Position() + textStart);
    cursor.SkipSpace();
    cursor.Prefetch(window);
    if (IsText(cursor.Available())) {
        return {Contents::Kind::Text, static_cast<std::int64_t>(textStart), 0};
    }
    const std::int64_t triangles = announced >= 0 ? TrianglesInSpiteOfLength(file, announced) : -1;
    return triangles >= 0 ? Contents{Contents::Kind::Binary, 0, triangles} : Contents();
}

} // namespace KOVA::Quorvex::stl
