#include "SceneTree.h"

#include <array>

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "MeshPart.h"
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

QColor ToQColor(const ColorRGBA& color) {
    return QColor::fromRgbF(color.r, color.g, color.b);
}

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
    m_facts->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* const form = new QFormLayout(m_properties);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(tr("&Display"), m_mode);
    form->addRow(tr("&Colour"), m_color);
    form->addRow(tr("Bounding &box"), m_box);
    form->addRow(m_facts);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_tree, 1);
    layout->addWidget(m_properties);

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
    ShowProperties();
}

void SceneTree::AddRow(ScenePart* part) {
    auto* const row = new QTreeWidgetItem;
    row->setText(0, part->GetName());
    row->setToolTip(0, QString::fromLocal8Bit(part->GetPath()));
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
    row->setIcon(0, dynamic_cast<MeshPart*>(part) != nullptr ? ColorIcon(part->Attribute().GetColor())
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
    for (const QTreeWidgetItem* row : m_tree->selectedItems()) {
        if (ScenePart* const part = PartOf(row)) {
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
    QString rows;
    for (const ScenePart::Fact& fact : parts.front()->Describe()) {
        rows += QStringLiteral("<tr><td>%1</td><td>&nbsp;&nbsp;</td><td>%2</td></tr>")
                    .arg(fact.name.toHtmlEscaped(), fact.value.toHtmlEscaped());
    }
    m_facts->setText(QStringLiteral("<table>%1</table>").arg(rows));
}

template <class Change> void SceneTree::ChangeSelected(Change change) {
    for (ScenePart* part : GetSelected()) {
        change(part);
        m_scene.Apply(part);
    }
    ShowProperties();
}

// Without an event loop of its own: this may be inside a pass.
void SceneTree::AskForColor() {
    const QList<ScenePart*> parts = GetSelected();
    if (parts.isEmpty()) {
        return;
    }
    auto* const dialog = new QColorDialog(ToQColor(parts.front()->Attribute().GetColor()), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    connect(dialog, &QColorDialog::currentColorChanged, this, [this](const QColor& color) {
        ChangeSelected([&color](ScenePart* part) {
            if (dynamic_cast<MeshPart*>(part) != nullptr) {
                part->Attribute().SetColor({color.redF(), color.greenF(), color.blueF()});
            }
        });
    });
    dialog->open();
}

void SceneTree::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete) {
        emit RemovalRequested();
    } else {
        QWidget::keyPressEvent(event);
    }
}

} // namespace KOVA::Quorvex::viewer
