#pragma once

// The programs use what they share as if it were their own.

namespace KOVA::Quorvex {

namespace apps {}

namespace cli {
using namespace apps;
}

namespace viewer {
using namespace apps;
}

} // namespace KOVA::Quorvex
