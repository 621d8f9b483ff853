#include <Quorvex/mesh/StlText.h>

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <limits>

#include <fast_float/fast_float.h>

// Numbers as the C library's formatted input takes them, character by character and in bounded memory: a number may be
// as long as the file.

namespace KOVA::Quorvex::stl {

namespace {

constexpr bool IsDigit(int character) {
    return character >= '0' && character <= '9';
}

// Value of a hexadecimal digit, -1 for another character.
constexpr int HexValue(int character) {
    const int lower = LowerCase(character);
    if (IsDigit(lower)) {
        return lower - '0';
    }
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// Larger than the length of any file, which zeros in front or behind may outweigh, and far from overflowing.
constexpr std::int64_t largestExponent = std::int64_t{1} << 56;

// The significant digits of a number: what is beyond the digits kept can only break a tie, and a last 1 stands for it.
class DecimalDigits {
public:
    void Add(int character, bool fraction) {
        if (m_count == 0 && character == '0') {
            m_exponent -= fraction ? 1 : 0;
        } else if (m_count < keptDigits) {
            m_text[m_count++] = static_cast<char>(character);
            m_exponent -= fraction ? 1 : 0;
        } else {
            m_sticky = m_sticky || character != '0';
            m_exponent += fraction ? 0 : 1;
        }
    }

    float Value(std::int64_t exponent) {
        if (m_count == 0) {
            return 0.0F;
        }
        if (m_sticky) {
            m_text[m_count++] = '1';
            --m_exponent;
        }
        // Beyond this the result is 0 or infinity for any number of digits kept.
        constexpr std::int64_t enough = 100000;
        m_text[m_count++] = 'e';
        char* const end =
            std::to_chars(m_text + m_count, m_text + sizeof(m_text), std::clamp(m_exponent + exponent, -enough, enough))
                .ptr;
        float value = 0.0F;
        fast_float::from_chars(m_text, end, value);
        return value;
    }

private:
    // The midpoint between two floats has at most 113 significant digits.
    static constexpr std::size_t keptDigits = 128;
    char m_text[keptDigits + 16];
    std::size_t m_count = 0;
    std::int64_t m_exponent = 0; // of the last digit kept
    bool m_sticky = false;
};

class HexDigits {
public:
    void Add(int character, bool fraction) {
        constexpr unsigned int keptBits = 60;
        if ((m_mantissa >> (keptBits - 4)) == 0) {
            m_mantissa = m_mantissa << 4U | static_cast<std::uint64_t>(HexValue(character));
            m_exponent -= fraction ? 4 : 0;
        } else {
            m_sticky = m_sticky || character != '0';
            m_exponent += fraction ? 0 : 4;
        }
    }

    float Value(std::int64_t exponent) const {
        // Round to odd at 53 bits, exactly; then once to the float. Every midpoint of floats is still told apart.
        std::uint64_t mantissa = m_mantissa;
        std::int64_t shift = m_exponent + exponent;
        bool sticky = m_sticky;
        while ((mantissa >> 53U) != 0) {
            sticky = sticky || (mantissa & 1U) != 0;
            mantissa >>= 1U;
            ++shift;
        }
        mantissa |= sticky ? 1U : 0U;
        constexpr std::int64_t enough = 800; // no double is lost or rounded on the way to a float
        const double value = std::ldexp(static_cast<double>(mantissa),
                                        static_cast<int>(std::clamp<std::int64_t>(shift, -enough, enough)));
        // The first double that rounds to infinity.
        constexpr double beyond = 0x1.ffffffp127;
        return value < beyond ? static_cast<float>(value) : std::numeric_limits<float>::infinity();
    }

private:
    std::uint64_t m_mantissa = 0;
    std::int64_t m_exponent = 0; // of two, of the mantissa's last bit
    bool m_sticky = false;
};

// The rest of a word of which the first character has been taken.
bool ScanLetters(TextCursor& cursor, const char* letters) {
    for (; *letters != '\0'; ++letters) {
        if (LowerCase(cursor.Peek()) != *letters) {
            return false;
        }
        cursor.Advance();
    }
    return true;
}

// An exponent of ten or two behind its letter. One without digits counts as 0.
std::int64_t ScanExponent(TextCursor& cursor) {
    const bool down = cursor.Peek() == '-';
    if (down || cursor.Peek() == '+') {
        cursor.Advance();
    }
    std::int64_t exponent = 0;
    for (; IsDigit(cursor.Peek()); cursor.Advance()) {
        exponent = std::min(exponent * 10 + (cursor.Peek() - '0'), largestExponent);
    }
    return down ? -exponent : exponent;
}

// Digits with at most one point, then the exponent. digits says whether some have been taken already.
template <typename Digits>
bool ScanDigits(TextCursor& cursor, int exponentLetter, bool (*isDigit)(int), bool digits, float& value) {
    Digits number;
    bool fraction = false;
    for (int character = cursor.Peek();; character = cursor.Peek()) {
        if (isDigit(character)) {
            number.Add(character, fraction);
            digits = true;
        } else if (character == '.' && !fraction) {
            fraction = true;
        } else {
            break;
        }
        cursor.Advance();
    }
    if (!digits) {
        return false;
    }
    std::int64_t exponent = 0;
    if (LowerCase(cursor.Peek()) == exponentLetter) {
        cursor.Advance();
        exponent = ScanExponent(cursor);
    }
    value = number.Value(exponent);
    return true;
}

bool ScanHexadecimal(TextCursor& cursor, float& value) {
    const bool point = cursor.Peek() == '.';
    const auto isHexDigit = [](int character) { return HexValue(character) >= 0; };
    if (ScanDigits<HexDigits>(cursor, 'p', isHexDigit, false, value)) {
        return true;
    }
    value = 0.0F; // "0x." is the number 0 and something behind it that has been taken along
    return point;
}

bool ScanUnsigned(TextCursor& cursor, float& value) {
    const int first = LowerCase(cursor.Peek());
    if (first == 'n') {
        value = std::numeric_limits<float>::quiet_NaN();
        return ScanLetters(cursor, "nan");
    }
    if (first == 'i') {
        value = std::numeric_limits<float>::infinity();
        return ScanLetters(cursor, "inf") && (LowerCase(cursor.Peek()) != 'i' || ScanLetters(cursor, "inity"));
    }
    const bool zero = first == '0';
    if (zero) {
        cursor.Advance();
        if (LowerCase(cursor.Peek()) == 'x') {
            cursor.Advance();
            return ScanHexadecimal(cursor, value);
        }
    }
    return ScanDigits<DecimalDigits>(cursor, 'e', IsDigit, zero, value);
}

} // namespace

bool ScanNumber(TextCursor& cursor, float& value) {
    const bool negative = cursor.Peek() == '-';
    if (negative || cursor.Peek() == '+') {
        cursor.Advance();
    }
    if (!ScanUnsigned(cursor, value)) {
        return false;
    }
    value = negative ? -value : value;
    return true;
}

} // namespace KOVA::Quorvex::stl
