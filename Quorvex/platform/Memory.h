#pragma once

#include <cstddef>

// Seam: what the operating system can do for large blocks of memory.

namespace KOVA::Quorvex::platform {

// Tells the system that a freshly allocated block will be filled as a whole, so that it may back it with large pages:
// taking the page faults of fresh memory costs more than filling it. A hint; the block need not be aligned.
void AdviseLargeBlock(void* block, std::size_t bytes);

} // namespace KOVA::Quorvex::platform
