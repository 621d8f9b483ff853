#pragma once

#include <QByteArray>
#include <QStringList>

namespace KOVA::Quorvex::viewer {

enum class Theme { System, Light, Dark };

// What is remembered from one start to the next.
struct Settings {
    QByteArray geometry; // of the main window
    QByteArray panels;
    QStringList recentFiles; // the latest first
    QString folder;          // of the last file
    int frames = 1;
    bool linked = false;
    bool orthogonal = false;
    bool axes = true;
    Theme theme = Theme::System;

    static Settings Load();
    void Save() const;

    void Remember(const QString& file);
};

// Brings the program's colours to the theme.
void ApplyTheme(Theme theme);

} // namespace KOVA::Quorvex::viewer
