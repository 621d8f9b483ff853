#pragma once

#include <stdexcept>

#include "Programs.h"

namespace KOVA::Quorvex::apps {

// What the user asked for could not be done. The text is the one line that goes to standard error, without the name of
// the program in front; the exit code is 1.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace KOVA::Quorvex::apps
