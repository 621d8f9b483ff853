#pragma once

#include <string_view>

// How the driver's strings are read, without a driver.

namespace KOVA::Quorvex {

// True when name, which has no blank and is not empty, is a whole token of the blank-separated list.
bool IsExtensionToken(std::string_view extensions, std::string_view name);

// True when every blank-separated name is a token. No names at all are true; a run of blanks contains an empty name,
// which matches an empty token only.
bool AreExtensionTokens(std::string_view extensions, std::string_view names);

// The major number of a version string such as "4.5 (Compatibility Profile)"; 0 when the string does not begin with
// a number.
int MajorVersion(const char* version);

} // namespace KOVA::Quorvex
