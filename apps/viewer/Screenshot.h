#pragma once

#include <QImage>

namespace KOVA::Quorvex::viewer {

class FrameGrid;

// What all frames show, in full quality and as they are laid out, in the screen's pixels. Outside passes only. A frame
// that cannot be drawn is left black.
QImage TakeScreenshot(FrameGrid& frames);

} // namespace KOVA::Quorvex::viewer
