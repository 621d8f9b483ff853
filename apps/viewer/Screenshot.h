#pragma once

#include <functional>
#include <optional>

#include <QImage>

class QObject;

namespace KOVA::Quorvex::viewer {

class FrameGrid;

// What all frames show, in full quality and as they are laid out, in the screen's pixels. Nothing when a frame cannot
// be drawn: for now, as something else is to be drawn first (Quorvex::BreakRendering), or at all. See
// EventBridge::WhenStill.
std::optional<QImage> TakeScreenshot(FrameGrid& frames);

// Compresses and writes the picture on a thread of its own, in the format of the file's suffix: the whole file or none.
// told gets a text for people, on the caller's thread, unless the context is gone by then.
void WritePicture(const QImage& picture, const QString& path, QObject* context,
                  std::function<void(const QString& outcome)> told);

} // namespace KOVA::Quorvex::viewer
