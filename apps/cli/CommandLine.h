#pragma once

namespace KOVA::Quorvex::cli {

// The whole program: reads the command line, does what it says and returns the exit code: 0 done, 1 failed with one
// line on standard error, 2 wrong usage, also told in one line.
int RunTool(int argc, const char* const* argv);

} // namespace KOVA::Quorvex::cli
