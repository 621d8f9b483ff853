#pragma once

// Peak memory is measured in a fresh process of this program, where nothing else is in use or was freed: it reads the
// file that QUORVEX_BENCH_READ names, if any, prints its peak memory in KiB and ends. False when that is not wanted.
bool ReadInFreshProcess();
