#pragma once

#include <Quorvex/mesh/StlText.h>

// The short way through facets as programs write them.

namespace KOVA::Quorvex::stl {

// Takes a facet that has white space between all words and numbers and only finite decimal numbers, with the same
// result as ScanFacet has, and returns where it ends. Null for any other text, which may still be a facet. text ends
// with TextCursor::slack NUL characters.
const char* FastFacet(const char* text, Facet& facet);

// Takes one finite decimal number that is followed by white space; null for anything else. Same terms. The value is
// the float nearest to the number, as the C library rounds it.
const char* FastNumber(const char* text, float& value);

} // namespace KOVA::Quorvex::stl
