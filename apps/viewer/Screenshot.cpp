#include "Screenshot.h"

#include <vector>

#include <QPainter>

#include "FrameGrid.h"

namespace KOVA::Quorvex::viewer {

QImage TakeScreenshot(FrameGrid& frames) {
    const double ratio = frames.devicePixelRatioF();
    QImage picture((QSizeF(frames.size()) * ratio).toSize(), QImage::Format_RGB32);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    for (int i = 0; i < frames.GetCount(); ++i) {
        FrameWidget& widget = frames.GetFrame(i);
        const int width = widget.Rig().GetWidth();
        const int height = widget.Rig().GetHeight();
        std::vector<unsigned char> pixels;
        widget.PreparePass(true);
        if (widget.Frame().RenderToPixels(pixels, static_cast<unsigned int>(width),
                                          static_cast<unsigned int>(height))) {
            const QImage image(pixels.data(), width, height, qsizetype{3} * width, QImage::Format_RGB888);
            painter.drawImage((QPointF(widget.pos()) * ratio).toPoint(), image);
        }
    }
    return picture;
}

} // namespace KOVA::Quorvex::viewer
