#include "FactTable.h"

namespace KOVA::Quorvex::viewer {

QString FactTable(const std::vector<ScenePart::Fact>& facts) {
    QString rows;
    for (const ScenePart::Fact& fact : facts) {
        rows += QStringLiteral("<tr><td>%1</td><td>&nbsp;&nbsp;</td><td>%2</td></tr>")
                    .arg(fact.name.toHtmlEscaped(), fact.value.toHtmlEscaped());
    }
    return QStringLiteral("<table>%1</table>").arg(rows);
}

} // namespace KOVA::Quorvex::viewer
