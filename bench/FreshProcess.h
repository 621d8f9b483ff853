#pragma once

#include <string>

// Peak memory is measured in a fresh process of this program, where nothing else is in use or was freed: it reads the
// file, or triangulates the spheres, that an environment variable names, if any, prints its peak memory in KiB and
// ends. False when that is not wanted.
bool ReadInFreshProcess();

// How much more memory, in MiB, a process needs at its peak that does so than one that does nothing.
double PeakMemory(const std::string& name);
