#include "ScenePart.h"

#include <utility>

#include <QFileInfo>

namespace KOVA::Quorvex::viewer {

ScenePart::ScenePart(std::string path) : m_path(std::move(path)) {}

QString ScenePart::GetName() const {
    return QFileInfo(QString::fromLocal8Bit(m_path)).fileName();
}

Vector3d ScenePart::InScene(const Vector3d& pointOfFile) const {
    const SceneUnit unit = GetUnit();
    return (pointOfFile - Vector3d(unit.middle)) * (1.0 / unit.unit);
}

Vector3d ScenePart::InFile(const Vector3d& pointOfScene) const {
    const SceneUnit unit = GetUnit();
    return pointOfScene * unit.unit + Vector3d(unit.middle);
}

} // namespace KOVA::Quorvex::viewer
