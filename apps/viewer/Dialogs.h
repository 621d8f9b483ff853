#pragma once

#include <functional>

#include <QColorDialog>
#include <QFileDialog>
#include <QMessageBox>

// Dialogs are opened, never run: what opens them may be inside a pass. Qt's own run loops for questions, context menus
// and drags of theirs; these do not. They delete themselves when they are closed.

namespace KOVA::Quorvex::viewer {

void OpenDialog(QDialog* dialog);

// The text is plain.
QMessageBox* OpenBox(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
                     QMessageBox::StandardButtons buttons = QMessageBox::Ok);

// Asks for files that exist, or for one to write; filesSelected tells. Nothing is renamed or deleted with it.
class FileDialog : public QFileDialog {
    Q_OBJECT

public:
    FileDialog(QWidget* parent, const QString& title, const QString& folder, const QString& filter, FileMode mode);

protected:
    void accept() override;
};

// Every choice is told at once; when the dialog is rejected, that is.
QColorDialog* OpenColorDialog(QWidget* parent, const QColor& color, std::function<void(const QColor&)> chosen,
                              std::function<void()> rejected);

} // namespace KOVA::Quorvex::viewer
