#pragma once

#include <string>
#include <string_view>

namespace KOVA::Quorvex::platform {

// The characters of a UTF-8 text. Bytes that are none (stray, cut off, overlong, surrogates, beyond U+10FFFF) become
// U+FFFD, one for each byte.
std::u32string DecodeUtf8(std::string_view text);

} // namespace KOVA::Quorvex::platform
