#include "ScenePart.h"

#include <utility>

#include <QFileInfo>

namespace KOVA::Quorvex::viewer {

ScenePart::ScenePart(std::string path) : m_path(std::move(path)) {}

QString ScenePart::GetName() const {
    return QFileInfo(QString::fromLocal8Bit(m_path)).fileName();
}

} // namespace KOVA::Quorvex::viewer
