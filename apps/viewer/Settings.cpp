#include "Settings.h"

#include <QApplication>
#include <QFileInfo>
#include <QPalette>
#include <QSettings>
#include <QStyle>
#include <QStyleFactory>

namespace KOVA::Quorvex::viewer {

namespace {

constexpr int c_recentFiles = 10;

// The one that the desktop gave the program.
QPalette& SystemPalette() {
    static QPalette palette = QApplication::palette();
    return palette;
}

QPalette MadeOf(const QColor& window, const QColor& base, const QColor& text, const QColor& button,
                const QColor& highlight) {
    QPalette palette(button, window);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
    }
    QColor faint = text;
    faint.setAlphaF(0.45F);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::ToolTipBase, button);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, highlight);
    return palette;
}

} // namespace

Settings Settings::Load() {
    const QSettings store;
    Settings settings;
    settings.geometry = store.value(QStringLiteral("geometry")).toByteArray();
    settings.panels = store.value(QStringLiteral("panels")).toByteArray();
    settings.recentFiles = store.value(QStringLiteral("recentFiles")).toStringList().mid(0, c_recentFiles);
    settings.folder = store.value(QStringLiteral("folder")).toString();
    settings.frames = store.value(QStringLiteral("frames"), settings.frames).toInt();
    settings.frames = settings.frames == 2 || settings.frames == 4 ? settings.frames : 1;
    settings.linked = store.value(QStringLiteral("linked"), settings.linked).toBool();
    settings.orthogonal = store.value(QStringLiteral("orthogonal"), settings.orthogonal).toBool();
    settings.axes = store.value(QStringLiteral("axes"), settings.axes).toBool();
    const int theme = store.value(QStringLiteral("theme"), 0).toInt();
    settings.theme = theme == 1 ? Theme::Light : theme == 2 ? Theme::Dark : Theme::System;
    return settings;
}

void Settings::Save() const {
    QSettings store;
    store.setValue(QStringLiteral("geometry"), geometry);
    store.setValue(QStringLiteral("panels"), panels);
    store.setValue(QStringLiteral("recentFiles"), recentFiles);
    store.setValue(QStringLiteral("folder"), folder);
    store.setValue(QStringLiteral("frames"), frames);
    store.setValue(QStringLiteral("linked"), linked);
    store.setValue(QStringLiteral("orthogonal"), orthogonal);
    store.setValue(QStringLiteral("axes"), axes);
    store.setValue(QStringLiteral("theme"), static_cast<int>(theme));
}

void Settings::Remember(const QString& file) {
    const QFileInfo info(file);
    recentFiles.removeAll(info.absoluteFilePath());
    recentFiles.prepend(info.absoluteFilePath());
    recentFiles = recentFiles.mid(0, c_recentFiles);
    folder = info.absolutePath();
}

void ApplyTheme(Theme theme) {
    const QPalette system = SystemPalette(); // before it is replaced for the first time
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    switch (theme) {
    case Theme::System:
        QApplication::setPalette(system);
        break;
    case Theme::Light:
        QApplication::setPalette(
            MadeOf(QColor(240, 240, 242), Qt::white, QColor(25, 27, 30), QColor(228, 229, 232), QColor(30, 110, 200)));
        break;
    case Theme::Dark:
        QApplication::setPalette(MadeOf(QColor(43, 45, 49), QColor(30, 32, 35), QColor(222, 224, 228),
                                        QColor(60, 63, 68), QColor(60, 135, 220)));
        break;
    }
}

} // namespace KOVA::Quorvex::viewer
