#pragma once

#include <string>

// Peak memory is measured in a fresh process of this program, where nothing else is in use or was freed: it reads the
// file that an environment variable names, if any, prints its peak memory in KiB and ends. False when that is not
// wanted.
bool ReadInFreshProcess();

// How much more memory, in MiB, a process needs at its peak that reads the STL or REK file than one that reads none.
double PeakMemory(const std::string& path);
