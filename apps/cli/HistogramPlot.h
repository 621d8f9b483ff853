#pragma once

#include <string>

#include "Canvas.h"
#include "HistogramFacts.h"

namespace KOVA::Quorvex::cli {

// A picture for a report: the counts over the levels, once on a linear and once on a logarithmic scale, with peaks and
// thresholds marked. title stands above it.
Canvas DrawHistogram(const HistogramFacts& facts, const std::string& title);

} // namespace KOVA::Quorvex::cli
