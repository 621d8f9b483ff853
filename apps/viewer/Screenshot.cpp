#include "Screenshot.h"

#include <utility>
#include <vector>

#include <QCoreApplication>
#include <QFileInfo>
#include <QImageWriter>
#include <QPainter>
#include <QPointer>
#include <QSaveFile>
#include <QThreadPool>

#include "FrameGrid.h"

namespace KOVA::Quorvex::viewer {

namespace {

QString Write(const QImage& picture, const QString& path) {
    QSaveFile file(path);
    QImageWriter writer(&file, QFileInfo(path).suffix().toLatin1());
    const bool opened = file.open(QIODevice::WriteOnly);
    const bool encoded = opened && writer.write(picture);
    if (encoded && file.commit()) {
        return QCoreApplication::translate("Screenshot", "Saved %1").arg(path);
    }
    return QCoreApplication::translate("Screenshot", "%1 cannot be written: %2")
        .arg(path, opened && !encoded ? writer.errorString() : file.errorString());
}

} // namespace

std::optional<QImage> TakeScreenshot(FrameGrid& frames) {
    const double ratio = frames.devicePixelRatioF();
    QImage picture((QSizeF(frames.size()) * ratio).toSize(), QImage::Format_RGB32);
    picture.fill(frames.palette().color(QPalette::Window));
    QPainter painter(&picture);
    for (int i = 0; i < frames.GetCount(); ++i) {
        FrameWidget& widget = frames.GetFrame(i);
        const int width = widget.Rig().GetWidth();
        const int height = widget.Rig().GetHeight();
        std::vector<unsigned char> pixels;
        widget.PreparePass(true);
        if (!widget.Frame().RenderToPixels(pixels, static_cast<unsigned int>(width),
                                           static_cast<unsigned int>(height))) {
            return std::nullopt;
        }
        const QImage image(pixels.data(), width, height, qsizetype{3} * width, QImage::Format_RGB888);
        painter.drawImage((QPointF(widget.pos()) * ratio).toPoint(), image);
    }
    painter.end();
    return picture;
}

void WritePicture(const QImage& picture, const QString& path, QObject* context,
                  std::function<void(const QString& outcome)> told) {
    QThreadPool::globalInstance()->start([picture, path, guard = QPointer<QObject>(context), told = std::move(told)] {
        QMetaObject::invokeMethod(
            qApp,
            [outcome = Write(picture, path), guard, told] {
                if (guard) {
                    told(outcome);
                }
            },
            Qt::QueuedConnection);
    });
}

} // namespace KOVA::Quorvex::viewer
