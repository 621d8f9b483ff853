#include <Quorvex/platform/Memory.h>

#include <cstdint>

#include <sys/mman.h>
#include <unistd.h>

namespace KOVA::Quorvex::platform {

void AdviseLargeBlock(void* block, std::size_t bytes) {
    // Below this there is hardly a whole large page inside, and the advice would only cut the heap into mappings.
    constexpr std::size_t worthwhile = std::size_t{4} << 20;
    if (block == nullptr || bytes < worthwhile) {
        return;
    }
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto start = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t first = (start + page - 1) / page * page;
    const std::uintptr_t end = (start + bytes) / page * page;
    // Failure leaves small pages, which work as well.
    (void)madvise(static_cast<char*>(block) + (first - start), end - first, MADV_HUGEPAGE);
}

} // namespace KOVA::Quorvex::platform
