#pragma once

#include <map>

#include <QWidget>

#include <Quorvex/core/Colors.h>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace KOVA::Quorvex::viewer {

class SceneModel;
class ScenePart;

// The parts of the scene: which are seen, and how the selected ones look.
class SceneTree : public QWidget {
    Q_OBJECT

public:
    SceneTree(SceneModel& scene, QWidget* parent);

    void Select(ScenePart* part);
    QList<ScenePart*> GetSelected() const; // from top to bottom

signals:
    void SelectionChanged();
    void RemovalRequested();

private:
    void AddRow(ScenePart* part);
    void RemoveRow(ScenePart* part);
    void UpdateRow(ScenePart* part);
    void TakeCheckMark(QTreeWidgetItem* row);
    void ShowProperties();
    template <class Change> void ChangeSelected(Change change);
    void AskForColor();
    void ShowColor(ScenePart* part, const ColorRGBA& color);
    ScenePart* PartOf(const QTreeWidgetItem* row) const;

    SceneModel& m_scene;
    QTreeWidget* m_tree;
    QWidget* m_properties;
    QComboBox* m_mode;
    QPushButton* m_color;
    QCheckBox* m_box;
    QLabel* m_facts;
    std::map<ScenePart*, QTreeWidgetItem*> m_rows;
};

} // namespace KOVA::Quorvex::viewer
