#include "About.h"

#include <QCoreApplication>

#include <shared/Capabilities.h>

namespace KOVA::Quorvex::viewer {

namespace {

QString Row(const QString& name, const QString& value) {
    return QStringLiteral("<tr><td>%1</td><td>&nbsp;&nbsp;</td><td>%2</td></tr>")
        .arg(name.toHtmlEscaped(), value.toHtmlEscaped());
}

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
    QString rows = Row(Translated("Version"), QStringLiteral(QUORVEX_VERSION)) +
                   Row(Translated("Qt"), QString::fromLatin1(qVersion())) +
                   Row(Translated("OpenGL vendor"), Text(found.vendor)) +
                   Row(Translated("OpenGL renderer"), Text(found.renderer)) +
                   Row(Translated("OpenGL version"), Text(found.version)) +
                   Row(Translated("Largest texture"), QString::number(found.maxTextureSize));
    for (const Capabilities::Bit& bit : found.bits) {
        rows += Row(Text(bit.name), YesNo(bit.available));
    }
    rows += Row(Translated("text labels"), YesNo(found.textLabels));
    for (const Capabilities::Extension& extension : found.extensions) {
        rows += Row(Text(extension.name), YesNo(extension.available));
    }
    return QStringLiteral("<h3>Quorvex</h3><p>%1</p><table>%2</table>")
        .arg(Translated("Shows measured parts: meshes and volumes."), rows);
}

QString ControlsText() {
    return QStringLiteral("<table>") + Row(Translated("Left button"), Translated("turn; a click selects a part")) +
           Row(Translated("Right or middle button, Shift and left"), Translated("move")) +
           Row(Translated("Wheel"), Translated("zoom to the cursor")) +
           Row(Translated("Arrow keys"), Translated("turn; with Shift, move")) +
           Row(QStringLiteral("+ −"), Translated("zoom")) +
           Row(QStringLiteral("1 … 7"), Translated("front, back, left, right, top, bottom, corner")) +
           Row(QStringLiteral("F"), Translated("fit")) +
           Row(QStringLiteral("P"), Translated("orthogonal or perspective")) +
           Row(QStringLiteral("M"), Translated("measure distances: click two points")) +
           Row(QStringLiteral("L"), Translated("linked cameras")) +
           Row(QStringLiteral("Ctrl+1, 2, 4"), Translated("number of frames")) + QStringLiteral("</table>");
}

} // namespace KOVA::Quorvex::viewer
