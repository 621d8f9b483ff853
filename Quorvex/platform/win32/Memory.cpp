#include <Quorvex/platform/Memory.h>

namespace KOVA::Quorvex::platform {

// Large pages need a privilege here that ordinary users do not have.
void AdviseLargeBlock(void* /*block*/, std::size_t /*bytes*/) {}

} // namespace KOVA::Quorvex::platform
