#pragma once

#include <string>

#include "Canvas.h"
#include "HistogramFacts.h"

namespace KOVA::Quorvex::cli {

// A picture for a report: the counts over the levels, once on a linear and once on a logarithmic scale, with peaks and
// thresholds marked. title stands above it.
// width: of the picture, in pixels; its height is about three quarters of that.
Canvas DrawHistogram(const HistogramFacts& facts, const std::string& title, unsigned int width);

} // namespace KOVA::Quorvex::cli
