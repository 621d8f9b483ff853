#include "About.h"

#include <QCoreApplication>

#include <shared/Capabilities.h>

#include "FactTable.h"

namespace KOVA::Quorvex::viewer {

namespace {

QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString Translated(const char* text) {
    return QCoreApplication::translate("About", text);
}

QString YesNo(bool value) {
    return value ? Translated("yes") : Translated("no");
}

} // namespace

QString AboutText() {
    const Capabilities found = DescribeCapabilities();
    std::vector<ScenePart::Fact> facts{{Translated("Version"), QStringLiteral(QUORVEX_VERSION)},
                                       {Translated("Qt"), QString::fromLatin1(qVersion())},
                                       {Translated("OpenGL vendor"), Text(found.vendor)},
                                       {Translated("OpenGL renderer"), Text(found.renderer)},
                                       {Translated("OpenGL version"), Text(found.version)},
                                       {Translated("Largest texture"), QString::number(found.maxTextureSize)}};
    for (const Capabilities::Bit& bit : found.bits) {
        facts.push_back({Text(bit.name), YesNo(bit.available)});
    }
    facts.push_back({Translated("text labels"), YesNo(found.textLabels)});
    for (const Capabilities::Extension& extension : found.extensions) {
        facts.push_back({Text(extension.name), YesNo(extension.available)});
    }
    return QStringLiteral("<h3>Quorvex</h3><p>%1</p>%2")
        .arg(Translated("Shows measured parts: meshes and volumes."), FactTable(facts));
}

QString ControlsText() {
    return FactTable({{Translated("Left button"), Translated("turn; a click selects a part")},
                      {Translated("Right or middle button, Shift and left"), Translated("move")},
                      {Translated("Wheel"), Translated("zoom to the cursor")},
                      {Translated("Arrow keys"), Translated("turn; with Shift, move")},
                      {QStringLiteral("+ −"), Translated("zoom")},
                      {QStringLiteral("1 … 7"), Translated("front, back, left, right, top, bottom, corner")},
                      {QStringLiteral("F"), Translated("fit")},
                      {QStringLiteral("P"), Translated("orthogonal or perspective")},
                      {QStringLiteral("M"), Translated("measure distances: click two points")},
                      {QStringLiteral("L"), Translated("linked cameras")},
                      {QStringLiteral("Ctrl+1, 2, 4"), Translated("number of frames")}});
}

} // namespace KOVA::Quorvex::viewer
