#include "SceneTree.h"

#include <array>
#include <memory>
#include <vector>

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTextDocument>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "Dialogs.h"
#include "FactTable.h"
#include "MeshPart.h"
#include "PanelInput.h"
#include "QtColor.h"
#include "SceneModel.h"

namespace KOVA::Quorvex::viewer {

namespace {

struct Mode {
    MeshAttribute::RenderMode mode;
    const char* name;
};

constexpr std::array<Mode, 6> c_modes{{{MeshAttribute::RENDER_SURFACE, "Surface"},
                                       {MeshAttribute::RENDER_SURFACE_WIREFRAME, "Surface and edges"},
                                       {MeshAttribute::RENDER_WIREFRAME, "Edges"},
                                       {MeshAttribute::RENDER_HIDDEN_LINE, "Visible edges"},
                                       {MeshAttribute::RENDER_XRAY, "X-ray"},
                                       {MeshAttribute::RENDER_POINTS, "Points"}}};

constexpr int c_iconSize = 16;

QIcon ColorIcon(const ColorRGBA& color) {
    QPixmap pixmap(c_iconSize, c_iconSize);
    pixmap.fill(ToQColor(color));
    return {pixmap};
}

} // namespace

SceneTree::SceneTree(SceneModel& scene, QWidget* parent)
    : QWidget(parent), m_scene(scene), m_tree(new QTreeWidget(this)), m_properties(new QWidget(this)),
      m_mode(new QComboBox), m_color(new QPushButton(tr("Choose…"))), m_box(new QCheckBox(tr("Show"))),
      m_facts(new QLabel) {
    m_tree->setHeaderHidden(true);
    m_tree->setRootIsDecorated(false);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree->setAccessibleName(tr("Parts of the scene"));
    m_tree->setToolTip(tr("The check mark shows a part or hides it; Delete removes the selected ones"));
    for (const Mode& mode : c_modes) {
        m_mode->addItem(tr(mode.name), static_cast<int>(mode.mode));
    }
    m_mode->setToolTip(tr("How meshes are drawn"));
    m_color->setToolTip(tr("Colour of the selected meshes"));
    m_box->setToolTip(tr("Marks the corners of the part's box"));
    // Selected by mouse, it could be dragged: Qt runs a loop for that.
    m_facts->setTextInteractionFlags(Qt::TextSelectableByKeyboard);
    m_facts->setFocusPolicy(Qt::StrongFocus);

    auto* const form = new QFormLayout(m_properties);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(tr("&Display"), m_mode);
    form->addRow(tr("C&olour"), m_color);
    form->addRow(tr("Bounding &box"), m_box);
    form->addRow(m_facts);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_tree, 1);
    layout->addWidget(m_properties);
    new PanelInput(this); // its own child

    connect(&m_scene, &SceneModel::PartAdded, this, &SceneTree::AddRow);
    connect(&m_scene, &SceneModel::PartAboutToBeRemoved, this, &SceneTree::RemoveRow);
    connect(&m_scene, &SceneModel::PartChanged, this, &SceneTree::UpdateRow);
    connect(m_tree, &QTreeWidget::itemChanged, this, &SceneTree::TakeCheckMark);
    connect(m_tree, &QTreeWidget::itemSelectionChanged, this, [this] {
        ShowProperties();
        emit SelectionChanged();
    });
    connect(m_mode, &QComboBox::activated, this, [this] {
        const auto mode = static_cast<MeshAttribute::RenderMode>(m_mode->currentData().toInt());
        ChangeSelected([mode](ScenePart* part) {
            if (auto* const mesh = dynamic_cast<MeshPart*>(part)) {
                mesh->Attribute().SetRenderMode(mode);
            }
        });
    });
    connect(m_color, &QPushButton::clicked, this, &SceneTree::AskForColor);
    connect(m_box, &QCheckBox::clicked, this, [this](bool show) {
        ChangeSelected([show](ScenePart* part) {
            if (show) {
                part->Attribute().ShowBoundingBox();
            } else {
                part->Attribute().HideBoundingBox();
            }
        });
    });
    auto* const remove = new QShortcut(QKeySequence::Delete, m_tree);
    remove->setContext(Qt::WidgetShortcut);
    connect(remove, &QShortcut::activated, this, &SceneTree::RemovalRequested);
    ShowProperties();
}

void SceneTree::AddRow(ScenePart* part) {
    auto* const row = new QTreeWidgetItem;
    row->setText(0, part->GetName());
    row->setToolTip(0, Qt::convertFromPlainText(QString::fromLocal8Bit(part->GetPath())));
    row->setFlags(row->flags() | Qt::ItemIsUserCheckable);
    m_rows[part] = row;
    UpdateRow(part);
    m_tree->addTopLevelItem(row);
    m_tree->setCurrentItem(row);
}

void SceneTree::RemoveRow(ScenePart* part) {
    const auto found = m_rows.find(part);
    if (found != m_rows.end()) {
        QTreeWidgetItem* const row = found->second;
        m_rows.erase(found);
        delete row;
        ShowProperties();
    }
}

void SceneTree::UpdateRow(ScenePart* part) {
    const QSignalBlocker blocker(m_tree);
    QTreeWidgetItem* const row = m_rows.at(part);
    row->setCheckState(0, part->Attribute().IsVisible() ? Qt::Checked : Qt::Unchecked);
    row->setIcon(0, part->HasColor() ? ColorIcon(part->Attribute().GetColor())
                                     : QIcon::fromTheme(QStringLiteral("view-grid")));
    m_tree->viewport()->update();
}

void SceneTree::TakeCheckMark(QTreeWidgetItem* row) {
    ScenePart* const part = PartOf(row);
    const bool show = row->checkState(0) == Qt::Checked;
    if (part == nullptr || show == part->Attribute().IsVisible()) {
        return;
    }
    if (show) {
        part->Attribute().Show();
    } else {
        part->Attribute().Hide();
    }
    m_scene.Apply(part);
}

ScenePart* SceneTree::PartOf(const QTreeWidgetItem* row) const {
    for (const auto& [part, own] : m_rows) {
        if (own == row) {
            return part;
        }
    }
    return nullptr;
}

QList<ScenePart*> SceneTree::GetSelected() const {
    QList<ScenePart*> parts;
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* const row = m_tree->topLevelItem(i);
        if (ScenePart* const part = row->isSelected() ? PartOf(row) : nullptr) {
            parts.append(part);
        }
    }
    return parts;
}

void SceneTree::Select(ScenePart* part) {
    const auto found = m_rows.find(part);
    m_tree->clearSelection();
    if (found != m_rows.end()) {
        m_tree->setCurrentItem(found->second);
    }
}

void SceneTree::ShowProperties() {
    const QList<ScenePart*> parts = GetSelected();
    m_properties->setVisible(!parts.isEmpty());
    if (parts.isEmpty()) {
        return;
    }
    auto* const mesh = dynamic_cast<MeshPart*>(parts.front());
    m_mode->setEnabled(mesh != nullptr);
    m_color->setEnabled(mesh != nullptr);
    if (mesh != nullptr) {
        m_mode->setCurrentIndex(m_mode->findData(static_cast<int>(mesh->Attribute().GetRenderMode())));
        m_color->setIcon(ColorIcon(mesh->Attribute().GetColor()));
    }
    m_box->setChecked(parts.front()->Attribute().BoundingBoxIsVisible());
    m_facts->setText(FactTable(parts.front()->Describe()));
}

template <class Change> void SceneTree::ChangeSelected(Change change) {
    for (ScenePart* part : GetSelected()) {
        change(part);
        m_scene.Apply(part);
    }
    ShowProperties();
}

void SceneTree::ShowColor(ScenePart* part, const ColorRGBA& color) {
    part->Attribute().SetColor(color);
    m_scene.Apply(part);
}

// For the parts that are selected now, as long as they are there.
void SceneTree::AskForColor() {
    struct Colored {
        ScenePart* part;
        ColorRGBA before;
    };
    const auto meshes = std::make_shared<std::vector<Colored>>();
    for (ScenePart* part : GetSelected()) {
        if (part->HasColor()) {
            meshes->push_back({part, part->Attribute().GetColor()});
        }
    }
    if (meshes->empty()) {
        return;
    }
    auto* const dialog = OpenColorDialog(
        this, ToQColor(meshes->front().before),
        [this, meshes](const QColor& color) {
            for (const Colored& mesh : *meshes) {
                ShowColor(mesh.part, FromQColor(color));
            }
            ShowProperties();
        },
        [this, meshes] {
            for (const Colored& mesh : *meshes) {
                ShowColor(mesh.part, mesh.before);
            }
            ShowProperties();
        });
    connect(&m_scene, &SceneModel::PartAboutToBeRemoved, dialog, [meshes, dialog](const ScenePart* part) {
        const auto gone = [part](const Colored& mesh) { return mesh.part == part; };
        if (std::erase_if(*meshes, gone) > 0 && meshes->empty()) {
            dialog->reject();
        }
    });
}

} // namespace KOVA::Quorvex::viewer
