#include "Dialogs.h"

#include <algorithm>
#include <utility>

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QEvent>
#include <QLineEdit>
#include <QMouseEvent>

namespace KOVA::Quorvex::viewer {

namespace {

// Colours can be dragged where they can be dropped.
class NoColorDrags : public QObject {
public:
    explicit NoColorDrags(QColorDialog* dialog) : QObject(dialog) {
        for (auto* widget : dialog->findChildren<QWidget*>()) {
            if (widget->acceptDrops() && qobject_cast<QLineEdit*>(widget) == nullptr) {
                widget->installEventFilter(this);
            }
        }
    }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        return event->type() == QEvent::MouseMove && dynamic_cast<QMouseEvent&>(*event).buttons() != Qt::NoButton;
    }
};

} // namespace

void OpenDialog(QDialog* dialog) {
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

QMessageBox* OpenBox(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
                     QMessageBox::StandardButtons buttons) {
    auto* const box = new QMessageBox(icon, title, text, buttons, parent);
    box->setTextFormat(Qt::PlainText);
    OpenDialog(box);
    return box;
}

FileDialog::FileDialog(QWidget* parent, const QString& title, const QString& folder, const QString& filter,
                       FileMode mode)
    : QFileDialog(parent, title, folder, filter) {
    setOption(DontUseNativeDialog);
    setOption(DontConfirmOverwrite);
    setOption(ReadOnly);
    setFileMode(mode);
    setAcceptMode(mode == AnyFile ? AcceptSave : AcceptOpen);
    for (auto* view : findChildren<QAbstractItemView*>()) {
        view->setContextMenuPolicy(Qt::NoContextMenu);
        view->setDragDropMode(QAbstractItemView::NoDragDrop);
    }
}

// Asks what Qt would have asked in a loop of its own.
void FileDialog::accept() {
    const QStringList files = selectedFiles();
    if (acceptMode() == AcceptOpen) {
        const auto missing =
            std::find_if(files.begin(), files.end(), [](const QString& file) { return !QFileInfo::exists(file); });
        if (missing != files.end()) {
            OpenBox(this, QMessageBox::Warning, windowTitle(), tr("There is no file %1").arg(*missing));
            return;
        }
    } else if (!files.isEmpty() && QFileInfo(files.front()).isFile()) {
        auto* const question = OpenBox(this, QMessageBox::Question, windowTitle(), tr("Replace %1?").arg(files.front()),
                                       QMessageBox::Yes | QMessageBox::No);
        question->setDefaultButton(QMessageBox::No);
        connect(question, &QDialog::finished, this, [this](int answer) {
            if (answer == QMessageBox::Yes) {
                QFileDialog::accept();
            }
        });
        return;
    }
    QFileDialog::accept();
}

QColorDialog* OpenColorDialog(QWidget* parent, const QColor& color, std::function<void(const QColor&)> chosen,
                              std::function<void()> rejected) {
    auto* const dialog = new QColorDialog(color, parent);
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    for (auto* box : dialog->findChildren<QAbstractSpinBox*>()) {
        box->setContextMenuPolicy(Qt::NoContextMenu);
    }
    new NoColorDrags(dialog); // the dialog's
    QObject::connect(dialog, &QColorDialog::currentColorChanged, parent, std::move(chosen));
    QObject::connect(dialog, &QDialog::rejected, parent, std::move(rejected));
    OpenDialog(dialog);
    return dialog;
}

} // namespace KOVA::Quorvex::viewer
