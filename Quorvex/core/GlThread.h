#pragma once

namespace KOVA::Quorvex {

// All GL work happens on the thread that called Quorvex::Init. Debug builds assert it at the places that touch GL;
// before Init every thread passes.
void SetGlThread();
bool IsGlThread();

} // namespace KOVA::Quorvex
