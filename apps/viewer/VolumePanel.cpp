#include "VolumePanel.h"

#include <cmath>
#include <exception>

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include <Quorvex/volume/VolumeRenderer.h>

#include "CutControls.h"
#include "SceneModel.h"
#include "TransferEditor.h"
#include "TransferPresets.h"

namespace KOVA::Quorvex::viewer {

namespace {

struct Mode {
    VolumeAttribute::RenderMode mode;
    const char* name;
};

constexpr std::array<Mode, 4> c_modes{{{VolumeAttribute::Shaded, "Lit"},
                                       {VolumeAttribute::Unshaded, "Unlit"},
                                       {VolumeAttribute::MaximumIntensity, "Largest intensity"},
                                       {VolumeAttribute::MinimumIntensity, "Smallest intensity"}}};

constexpr int c_steps = 10; // of the sliders for an intensity
constexpr int c_lastLevel = 255;

QSlider* LevelSlider(const QString& name, const QString& tip) {
    auto* const slider = new QSlider(Qt::Horizontal);
    slider->setRange(0, c_lastLevel * c_steps);
    slider->setPageStep(c_steps * 10);
    slider->setAccessibleName(name);
    slider->setToolTip(tip);
    return slider;
}

} // namespace

VolumePanel::VolumePanel(SceneModel& scene, QWidget* parent)
    : QWidget(parent), m_scene(scene), m_name(new QLabel), m_editor(new TransferEditor(this)), m_preset(new QComboBox),
      m_mode(new QComboBox), m_level(LevelSlider(tr("Level"), tr("Moves the whole transfer function"))),
      m_window(LevelSlider(tr("Window"), tr("Stretches the transfer function about its middle"))),
      m_samples(new QDoubleSpinBox), m_controls(new QWidget) {
    auto* const inner = new QVBoxLayout(m_controls);
    inner->addWidget(m_editor, 1);
    inner->addWidget(MakeLook());
    inner->addWidget(MakeCuts());
    auto* const scroll = new QScrollArea;
    scroll->setWidget(m_controls);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setMinimumWidth(m_controls->minimumSizeHint().width());
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_name);
    layout->addWidget(scroll, 1);

    connect(&m_scene, &SceneModel::PartAdded, this, [this](ScenePart* part) {
        if (auto* const volume = dynamic_cast<VolumePart*>(part)) {
            ShowVolume(volume);
        }
    });
    connect(&m_scene, &SceneModel::PartAboutToBeRemoved, this, &VolumePanel::Forget);
    connect(m_editor, &TransferEditor::Edited, this, [this] {
        m_edited = true;
        ChangeLook([this](VolumePart::Look& look) { look.curve = m_editor->GetCurve(); });
        ShowWindow();
    });
    ShowVolume(nullptr);
}

QWidget* VolumePanel::MakeLook() {
    auto* const group = new QGroupBox(tr("Look"));
    auto* const form = new QFormLayout(group);
    for (const TransferPreset& preset : TransferPresets()) {
        m_preset->addItem(tr(preset.name));
        m_preset->setItemData(m_preset->count() - 1, tr(preset.tip), Qt::ToolTipRole);
    }
    m_preset->setToolTip(tr("Transfer functions made for the histogram"));
    connect(m_preset, &QComboBox::activated, this, &VolumePanel::UsePreset);
    auto* const load = new QPushButton(tr("&File…"));
    load->setToolTip(tr("Takes a table of 256 lines \"r g b a\", each from 0 to 1"));
    connect(load, &QPushButton::clicked, this, &VolumePanel::LoadTable);
    auto* const presets = new QHBoxLayout;
    presets->addWidget(m_preset, 1);
    presets->addWidget(load);
    auto* const label = new QLabel(tr("&Preset"));
    label->setBuddy(m_preset);
    form->addRow(label, presets);

    for (const Mode& mode : c_modes) {
        const bool sums = mode.mode == VolumeAttribute::Shaded || mode.mode == VolumeAttribute::Unshaded;
        if (sums || VolumeRenderer::SupportsIntensityMinMax()) {
            m_mode->addItem(tr(mode.name), static_cast<int>(mode.mode));
        }
    }
    m_mode->setToolTip(tr("How the voxels along a line of sight come together"));
    connect(m_mode, &QComboBox::activated, this, &VolumePanel::TakeMode);
    form->addRow(tr("&Mode"), m_mode);
    form->addRow(tr("&Level"), m_level);
    form->addRow(tr("&Window"), m_window);
    connect(m_level, &QSlider::valueChanged, this, &VolumePanel::TakeWindow);
    connect(m_window, &QSlider::valueChanged, this, &VolumePanel::TakeWindow);

    m_samples->setRange(0.1, 8.0);
    m_samples->setSingleStep(0.25);
    m_samples->setToolTip(tr("Planes for half of a voxel: more look better and take longer"));
    connect(m_samples, &QDoubleSpinBox::valueChanged, this,
            [this](double samples) { ChangeLook([samples](VolumePart::Look& look) { look.samples = samples; }); });
    form->addRow(tr("&Samples"), m_samples);
    return group;
}

QWidget* VolumePanel::MakeCuts() {
    auto* const group = new QGroupBox(tr("Cut away from, to"));
    auto* const layout = new QVBoxLayout(group);
    const QString names[] = {tr("x"), tr("y"), tr("z")};
    for (std::size_t axis = 0; axis < m_cuts.size(); ++axis) {
        auto* const controls = new CutControls(names[axis], group);
        layout->addWidget(controls);
        m_cuts[axis] = controls;
        connect(controls, &CutControls::Changed, this, [this, axis] {
            ChangeLook([this, axis](VolumePart::Look& look) { look.cuts[axis] = m_cuts[axis]->GetCut(); });
        });
    }
    return group;
}

void VolumePanel::Show(const QList<ScenePart*>& selection) {
    for (ScenePart* part : selection) {
        if (auto* const volume = dynamic_cast<VolumePart*>(part); volume != nullptr && volume != m_volume) {
            ShowVolume(volume);
            return;
        }
    }
}

void VolumePanel::Forget(ScenePart* part) {
    if (part != m_volume) {
        return;
    }
    VolumePart* other = nullptr;
    for (VolumePart* volume : m_scene.GetVolumes()) {
        other = volume != part ? volume : other;
    }
    ShowVolume(other);
}

void VolumePanel::ShowVolume(VolumePart* volume) {
    m_volume = volume;
    m_edited = false;
    m_controls->setEnabled(volume != nullptr);
    m_name->setText(volume != nullptr ? volume->GetName() : tr("No volume is open"));
    if (volume != nullptr) {
        m_editor->SetHistogram(volume->GetSummary().histogram);
        ShowLook();
    }
}

void VolumePanel::ShowLook() {
    const VolumePart::Look& look = m_volume->GetLook();
    m_editor->SetCurve(look.curve);
    m_mode->setCurrentIndex(m_mode->findData(static_cast<int>(look.mode)));
    const QSignalBlocker blocker(m_samples);
    m_samples->setValue(look.samples);
    for (std::size_t axis = 0; axis < m_cuts.size(); ++axis) {
        m_cuts[axis]->Show(look.cuts[axis]);
    }
    ShowWindow();
}

void VolumePanel::ShowWindow() {
    const QSignalBlocker noLevel(m_level);
    const QSignalBlocker noWindow(m_window);
    const TransferCurve& curve = m_editor->GetCurve();
    m_level->setValue(static_cast<int>(std::lround(curve.GetLevel() * c_steps)));
    m_window->setValue(static_cast<int>(std::lround(curve.GetWindow() * c_steps)));
}

template <class Change> void VolumePanel::ChangeLook(Change change) {
    if (m_volume == nullptr) {
        return;
    }
    VolumePart::Look look = m_volume->GetLook();
    change(look);
    const bool sameMode = look.mode == m_volume->GetLook().mode;
    m_volume->SetLook(look);
    if (sameMode) {
        m_scene.Refresh();
    } else {
        m_scene.Apply(m_volume); // the background suits the mode
    }
}

void VolumePanel::UsePreset(int index) {
    if (m_volume == nullptr) {
        return;
    }
    const TransferPreset& preset = TransferPresets()[static_cast<std::size_t>(index)];
    m_edited = false;
    m_preset->setCurrentIndex(index);
    ChangeLook([&](VolumePart::Look& look) {
        look.mode = preset.mode;
        look.curve = preset.make(*m_volume);
    });
    ShowLook();
}

// What was not edited follows the mode: the same table does not suit all of them.
void VolumePanel::TakeMode() {
    const auto mode = static_cast<VolumeAttribute::RenderMode>(m_mode->currentData().toInt());
    ChangeLook([&](VolumePart::Look& look) {
        look.mode = mode;
        if (!m_edited) {
            look.curve = TransferCurve::FromTable(m_volume->DefaultTable(mode));
        }
    });
    ShowLook();
}

void VolumePanel::TakeWindow() {
    TransferCurve curve = m_editor->GetCurve();
    curve.SetWindow(static_cast<double>(m_level->value()) / c_steps, static_cast<double>(m_window->value()) / c_steps);
    m_editor->SetCurve(curve);
    m_edited = true;
    ChangeLook([&curve](VolumePart::Look& look) { look.curve = curve; });
}

void VolumePanel::LoadTable() {
    auto* const dialog = new QFileDialog(this, tr("Transfer function"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& file) {
        try {
            m_editor->SetCurve(TransferCurve::FromTable(ReadTransferFunction(QFile::encodeName(file).toStdString())));
            emit m_editor->Edited();
        } catch (const std::exception& error) {
            auto* const box = new QMessageBox(QMessageBox::Warning, tr("Transfer function"),
                                              QString::fromLocal8Bit(error.what()), QMessageBox::Ok, this);
            box->setAttribute(Qt::WA_DeleteOnClose);
            box->open();
        }
    });
    dialog->open();
}

} // namespace KOVA::Quorvex::viewer
