#include <Quorvex/mesh/StlFastFacet.h>

#include <bit>
#include <cstdint>
#include <cstring>

#include <fast_float/fast_float.h>

namespace KOVA::Quorvex::stl {

namespace {

static_assert(std::endian::native == std::endian::little, "eight digits are taken as one little-endian number");

// Where a number ends depends on its digits, and the next one begins there: a processor that computes each end would
// wait at every step. So the lengths that programs usually write are asked for first; it then guesses them right and
// runs ahead.

constexpr unsigned int chunkDigits = 8;

constexpr std::uint64_t integerPowers[chunkDigits + 1] = {1,      10,      100,      1000,     10000,
                                                          100000, 1000000, 10000000, 100000000};

struct DigitChunk {
    unsigned int count;
    std::uint64_t value;
};

// Value of eight digits 0..9, the first one in the lowest byte: pairs, then fours, then eight.
std::uint64_t JoinDigits(std::uint64_t digits) {
    constexpr std::uint64_t pairs = 0x000000FF000000FFU;
    constexpr std::uint64_t evenWeights = 100U + (std::uint64_t{1000000U} << 32U);
    constexpr std::uint64_t oddWeights = 1U + (std::uint64_t{10000U} << 32U);
    digits = digits * 10U + (digits >> 8U);
    return ((digits & pairs) * evenWeights + ((digits >> 16U) & pairs) * oddWeights) >> 32U;
}

// The digits at text, eight at most, all at once.
DigitChunk TakeDigits(const char* text) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, text, sizeof(bytes));
    bytes ^= 0x3030303030303030U; // digits become 0..9, everything else more
    const std::uint64_t others = (bytes | (bytes + 0x7676767676767676U)) & 0x8080808080808080U;
    if ((others & 0x0080808080808080U) == 0x0080000000000000U) {
        return {6, JoinDigits(bytes << 16U)}; // as by default
    }
    const unsigned int count = static_cast<unsigned int>(std::countr_zero(others)) / 8U; // right up to the first other
    return {count, count == 0 ? 0 : JoinDigits(bytes << (64U - 8U * count))};
}

unsigned int DigitValue(char character) {
    return static_cast<unsigned int>(static_cast<unsigned char>(character)) - static_cast<unsigned int>('0');
}

// In front of a decimal point.
DigitChunk TakeWhole(const char* text) {
    const unsigned int digit = DigitValue(text[0]);
    return digit < 10U && text[1] == '.' ? DigitChunk{1, digit} : TakeDigits(text);
}

DigitChunk TakeExponent(const char* text) {
    const unsigned int tens = DigitValue(text[0]);
    const unsigned int ones = DigitValue(text[1]);
    return tens < 10U && ones < 10U && IsSpace(text[2]) ? DigitChunk{2, tens * 10U + ones} : TakeDigits(text);
}

// All powers of ten that a double holds exactly.
constexpr int largestPower = 22;
constexpr double powers[largestPower + 1] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                             1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// The float nearest to mantissa * 10^exponent, when one double operation suffices to know it.
bool RoundToFloat(std::uint64_t mantissa, int exponent, float& value) {
    if (mantissa == 0) {
        value = 0.0F;
        return true;
    }
    constexpr unsigned int doubleDigits = 53;
    if ((mantissa >> doubleDigits) != 0 || exponent < -largestPower || exponent > largestPower) {
        return false;
    }
    const auto whole = static_cast<double>(mantissa);
    const double nearest = exponent < 0 ? whole / powers[-exponent] : whole * powers[exponent];
    // It is in the range of normal floats, and the double nearest to the number, so both lie on the same side of every
    // midpoint between two floats: rounding twice only goes wrong when the double is such a midpoint itself.
    constexpr std::uint64_t below = (std::uint64_t{1} << 29U) - 1; // bits that a float lacks
    constexpr std::uint64_t midpoint = std::uint64_t{1} << 28U;
    if ((std::bit_cast<std::uint64_t>(nearest) & below) == midpoint) {
        return false;
    }
    value = static_cast<float>(nearest);
    return true;
}

float WithSign(float value, bool negative) {
    return std::bit_cast<float>(std::bit_cast<std::uint32_t>(value) ^ static_cast<std::uint32_t>(negative) << 31U);
}

const char* SkipDigits(const char* text) {
    while (*text >= '0' && *text <= '9') {
        ++text;
    }
    return text;
}

// Where the number at text (without its sign) ends; null when it is none or no white space follows.
const char* EndOfNumber(const char* text) {
    const char* end = SkipDigits(text);
    std::ptrdiff_t digits = end - text;
    if (*end == '.') {
        const char* const fraction = end + 1;
        end = SkipDigits(fraction);
        digits += end - fraction;
    }
    if (digits > 0 && (*end == 'e' || *end == 'E')) {
        ++end;
        end += *end == '-' || *end == '+' ? 1 : 0;
        const char* const exponent = end;
        end = SkipDigits(exponent);
        digits = end - exponent;
    }
    return digits > 0 && IsSpace(*end) ? end : nullptr;
}

const char* AnyNumber(const char* text, bool negative, float& value) {
    const char* const end = EndOfNumber(text);
    if (end == nullptr || fast_float::from_chars(text, end, value).ptr != end) {
        return nullptr;
    }
    value = WithSign(value, negative);
    return end;
}

const char* SkipSpaces(const char* text) {
    while (IsSpace(*text)) {
        ++text;
    }
    return text;
}

// Behind the word and the white space that must follow it.
template <std::size_t Size> const char* TakeWord(const char* text, const char (&word)[Size]) {
    constexpr std::size_t length = Size - 1;
    return std::memcmp(text, word, length) == 0 && IsSpace(text[length]) ? SkipSpaces(text + length + 1) : nullptr;
}

const char* TakeVector(const char* text, Vector3f& vector) {
    text = FastNumber(text, vector.x);
    text = text != nullptr ? FastNumber(SkipSpaces(text), vector.y) : nullptr;
    text = text != nullptr ? FastNumber(SkipSpaces(text), vector.z) : nullptr;
    return text != nullptr ? SkipSpaces(text) : nullptr;
}

} // namespace

const char* FastNumber(const char* text, float& value) {
    const bool negative = *text == '-'; // a coin toss, so without a branch
    text += static_cast<int>(negative) | static_cast<int>(*text == '+');

    const DigitChunk whole = TakeWhole(text);
    const char* end = text + whole.count;
    std::uint64_t mantissa = whole.value;
    unsigned int digits = whole.count;
    int exponent = 0;
    if (*end == '.') {
        const DigitChunk fraction = TakeDigits(++end);
        end += fraction.count;
        mantissa = mantissa * integerPowers[fraction.count] + fraction.value;
        digits += fraction.count;
        exponent = -static_cast<int>(fraction.count);
    }
    if (digits > 0 && (*end == 'e' || *end == 'E')) {
        ++end;
        const int sign = *end == '-' ? -1 : 1;
        end += *end == '-' || *end == '+' ? 1 : 0;
        const DigitChunk power = TakeExponent(end);
        end += power.count;
        digits = power.count;
        exponent += sign * static_cast<int>(power.value);
    }
    // Chunks that were full may have cut a longer number: it goes on with a digit then.
    if (digits == 0 || !IsSpace(*end) || !RoundToFloat(mantissa, exponent, value)) {
        return AnyNumber(text, negative, value);
    }
    value = WithSign(value, negative);
    return end;
}

const char* FastFacet(const char* text, Facet& facet) {
    text = TakeWord(SkipSpaces(text), "facet");
    text = text != nullptr ? TakeWord(text, "normal") : nullptr;
    text = text != nullptr ? TakeVector(text, facet.normal) : nullptr;
    text = text != nullptr ? TakeWord(text, "outer") : nullptr;
    text = text != nullptr ? TakeWord(text, "loop") : nullptr;
    for (Vector3f& corner : facet.corners) {
        text = text != nullptr ? TakeWord(text, "vertex") : nullptr;
        text = text != nullptr ? TakeVector(text, corner) : nullptr;
    }
    text = text != nullptr ? TakeWord(text, "endloop") : nullptr;
    constexpr std::size_t lastWord = 8;
    return text != nullptr && std::memcmp(text, "endfacet", lastWord) == 0 ? text + lastWord : nullptr;
}

} // namespace KOVA::Quorvex::stl
