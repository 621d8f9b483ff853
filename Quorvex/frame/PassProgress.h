#pragma once

namespace KOVA::Quorvex {

// The fraction of a pass that is done: objectsDone of the scene's objects, and the given fraction of the current one.
// A stereo pass draws every object twice. 0 for a scene without objects; not clamped below.
float PassProgress(float fraction, float objectsDone, unsigned int objects, bool stereo);

// Where the progress line of a window ends, in pixels from the left edge: 0..width.
int ProgressLineEnd(unsigned int width, float progress);

} // namespace KOVA::Quorvex
