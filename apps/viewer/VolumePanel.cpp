#include "VolumePanel.h"

#include <exception>

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <Quorvex/volume/VolumeRenderer.h>

#include "CutControls.h"
#include "Dialogs.h"
#include "PanelInput.h"
#include "QtColor.h"
#include "SceneModel.h"
#include "TransferEditor.h"
#include "TransferPresets.h"
#include "ValueSlider.h"

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

constexpr int c_levelDecimals = 1;
constexpr int c_noPreset = -1;

} // namespace

VolumePanel::VolumePanel(SceneModel& scene, QWidget* parent)
    : QWidget(parent), m_scene(scene), m_name(new QLabel), m_editor(new TransferEditor(this)), m_preset(new QComboBox),
      m_mode(new QComboBox),
      m_level(new ValueSlider(tr("Level"), tr("Moves the whole transfer function"), c_levelDecimals)),
      m_window(new ValueSlider(tr("Window"), tr("Stretches the transfer function about its middle"), c_levelDecimals)),
      m_samples(new QDoubleSpinBox), m_controls(new QWidget) {
    auto* const inner = new QVBoxLayout(m_controls);
    inner->setContentsMargins(0, 0, 0, 0); // the layout around it has some
    inner->addWidget(m_editor, 1);
    inner->addWidget(MakeLook());
    inner->addWidget(MakeCuts());
    auto* const scroll = new QScrollArea;
    scroll->setWidget(m_controls);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setMinimumWidth(m_controls->minimumSizeHint().width() + scroll->verticalScrollBar()->sizeHint().width());
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_name);
    layout->addWidget(scroll, 1);
    m_name->setTextFormat(Qt::PlainText);
    new PanelInput(this); // its own child

    connect(&m_scene, &SceneModel::PartAdded, this, [this](ScenePart* part) {
        if (auto* const volume = dynamic_cast<VolumePart*>(part)) {
            ShowVolume(volume);
        }
    });
    connect(&m_scene, &SceneModel::PartAboutToBeRemoved, this, &VolumePanel::Forget);
    connect(m_editor, &TransferEditor::Edited, this, [this] { TakeCurve(m_volume, m_editor->GetCurve()); });
    connect(m_editor, &TransferEditor::ColorWanted, this, &VolumePanel::AskForColor);
    ShowVolume(nullptr);
}

QWidget* VolumePanel::MakeLook() {
    auto* const group = new QGroupBox(tr("Look"));
    auto* const form = new QFormLayout(group);
    MakePresets(form);
    for (const Mode& mode : c_modes) {
        const bool sums = mode.mode == VolumeAttribute::Shaded || mode.mode == VolumeAttribute::Unshaded;
        if (sums || VolumeRenderer::SupportsIntensityMinMax()) {
            m_mode->addItem(tr(mode.name), static_cast<int>(mode.mode));
        }
    }
    m_mode->setToolTip(tr("How the voxels along a line of sight come together"));
    connect(m_mode, &QComboBox::activated, this, &VolumePanel::TakeMode);
    form->addRow(tr("Mod&e"), m_mode);
    form->addRow(tr("&Level"), m_level);
    form->addRow(tr("&Window"), m_window);
    m_level->SetRange(0.0, TransferCurve::lastIntensity);
    m_window->SetRange(0.0, TransferCurve::lastIntensity);
    connect(m_level, &ValueSlider::Changed, this,
            [this](double level) { TakeWindow(level, m_editor->GetCurve().GetWindow()); });
    connect(m_window, &ValueSlider::Changed, this,
            [this](double window) { TakeWindow(m_editor->GetCurve().GetLevel(), window); });

    m_samples->setKeyboardTracking(false);
    m_samples->setRange(0.1, 8.0);
    m_samples->setSingleStep(0.25);
    m_samples->setToolTip(tr("Planes for half of a voxel: more look better and take longer"));
    connect(m_samples, &QDoubleSpinBox::valueChanged, this, [this](double samples) {
        ChangeLook(m_volume, [samples](VolumePart::Look& look) { look.samples = samples; });
    });
    form->addRow(tr("&Samples"), m_samples);
    return group;
}

void VolumePanel::MakePresets(QFormLayout* form) {
    for (const TransferPreset& preset : TransferPresets()) {
        m_preset->addItem(tr(preset.name));
        m_preset->setItemData(m_preset->count() - 1, tr(preset.tip), Qt::ToolTipRole);
    }
    m_preset->setPlaceholderText(tr("Own"));
    m_preset->setToolTip(tr("Transfer functions made for the histogram"));
    connect(m_preset, &QComboBox::activated, this, &VolumePanel::UsePreset);
    auto* const load = new QPushButton(tr("F&ile…"));
    load->setToolTip(tr("Takes a table of 256 lines \"r g b a\", each from 0 to 1"));
    connect(load, &QPushButton::clicked, this, &VolumePanel::AskForTable);
    auto* const presets = new QHBoxLayout;
    presets->addWidget(m_preset, 1);
    presets->addWidget(load);
    auto* const label = new QLabel(tr("&Preset"));
    label->setBuddy(m_preset);
    form->addRow(label, presets);
}

QWidget* VolumePanel::MakeCuts() {
    auto* const group = new QGroupBox(tr("Cuts and slices, in voxels"));
    auto* const layout = new QVBoxLayout(group);
    const QString names[] = {tr("x"), tr("y"), tr("z")};
    for (std::size_t axis = 0; axis < m_cuts.size(); ++axis) {
        auto* const controls = new CutControls(names[axis], group);
        layout->addWidget(controls);
        m_cuts[axis] = controls;
        connect(controls, &CutControls::Changed, this, [this, axis] {
            ChangeLook(m_volume, [this, axis](VolumePart::Look& look) { look.cuts[axis] = m_cuts[axis]->GetCut(); });
        });
    }
    return group;
}

void VolumePanel::Show(const QList<ScenePart*>& selection) {
    for (ScenePart* part : selection) {
        if (auto* const volume = dynamic_cast<VolumePart*>(part)) {
            if (volume != m_volume) {
                ShowVolume(volume);
            }
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
    m_controls->setEnabled(volume != nullptr);
    m_name->setText(volume != nullptr ? volume->GetName() : tr("No volume is open"));
    m_editor->Select(std::nullopt);
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
        m_cuts[axis]->Show(look.cuts[axis], m_volume->CountVoxels(axis));
    }
    ShowOrigin();
}

void VolumePanel::ShowOrigin() {
    const VolumePart::Look& look = m_volume->GetLook();
    m_preset->setCurrentIndex(look.preset);
    m_level->SetValue(look.curve.GetLevel());
    m_window->SetValue(look.curve.GetWindow());
}

template <class Change> void VolumePanel::ChangeLook(VolumePart* volume, Change change) {
    if (volume == nullptr) {
        return;
    }
    VolumePart::Look look = volume->GetLook();
    change(look);
    const bool sameMode = look.mode == volume->GetLook().mode;
    volume->SetLook(look);
    if (sameMode) {
        m_scene.Refresh();
    } else {
        m_scene.Apply(volume); // the background suits the mode
    }
}

void VolumePanel::UsePreset(int index) {
    if (m_volume == nullptr) {
        return;
    }
    const TransferPreset& preset = TransferPresets()[static_cast<std::size_t>(index)];
    ChangeLook(m_volume, [&](VolumePart::Look& look) {
        look.mode = preset.mode;
        look.curve = preset.make(*m_volume);
        look.preset = index;
        look.edited = false;
    });
    ShowLook();
}

// What was not edited follows the mode: the same table does not suit all of them.
void VolumePanel::TakeMode() {
    const auto mode = static_cast<VolumeAttribute::RenderMode>(m_mode->currentData().toInt());
    ChangeLook(m_volume, [&](VolumePart::Look& look) {
        if (!look.edited && mode != look.mode) {
            look.curve = TransferCurve::FromTable(m_volume->DefaultTable(mode));
            look.preset = c_noPreset;
        }
        look.mode = mode;
    });
    ShowLook();
}

// What was typed comes, too, when the controls lose the focus because there is no volume any more.
void VolumePanel::TakeCurve(VolumePart* volume, const TransferCurve& curve) {
    if (volume == nullptr) {
        return;
    }
    ChangeLook(volume, [&curve](VolumePart::Look& look) {
        look.curve = curve;
        look.preset = c_noPreset;
        look.edited = true;
    });
    if (volume == m_volume) {
        ShowOrigin();
    }
}

void VolumePanel::TakeWindow(double level, double window) {
    TransferCurve curve = m_editor->GetCurve();
    curve.SetWindow(level, window);
    m_editor->SetCurve(curve);
    TakeCurve(m_volume, curve);
}

// What it was opened for may be removed before it is answered.
void VolumePanel::RejectWithout(const VolumePart* volume, QDialog* dialog) {
    connect(&m_scene, &SceneModel::PartAboutToBeRemoved, dialog, [volume, dialog](const ScenePart* part) {
        if (part == volume) {
            dialog->reject();
        }
    });
}

void VolumePanel::AskForTable() {
    auto* const dialog = new FileDialog(this, tr("Transfer function"), {}, {}, FileDialog::ExistingFile);
    connect(dialog, &FileDialog::fileSelected, this,
            [this, volume = m_volume](const QString& file) { LoadTable(volume, file); });
    RejectWithout(m_volume, dialog);
    OpenDialog(dialog);
}

void VolumePanel::LoadTable(VolumePart* volume, const QString& file) {
    try {
        TakeCurve(volume, TransferCurve::FromTable(ReadTransferFunction(QFile::encodeName(file).toStdString())));
        ShowLook();
    } catch (const std::exception& error) {
        OpenBox(this, QMessageBox::Warning, tr("Transfer function"), QString::fromLocal8Bit(error.what()));
    }
}

void VolumePanel::AskForColor(std::size_t point) {
    VolumePart* const volume = m_volume;
    const VolumePart::Look before = volume->GetLook();
    const auto show = [this, volume](const VolumePart::Look& look) {
        ChangeLook(volume, [&look](VolumePart::Look& changed) {
            changed.curve = look.curve;
            changed.preset = look.preset;
            changed.edited = look.edited;
        });
        if (volume == m_volume) {
            m_editor->SetCurve(look.curve);
            ShowOrigin();
        }
    };
    auto* const dialog = OpenColorDialog(
        this, ToQColor(before.curve.GetPoints()[point].color),
        [before, point, show](const QColor& color) {
            VolumePart::Look look = before;
            look.curve.SetColor(point, FromQColor(color));
            look.preset = c_noPreset;
            look.edited = true;
            show(look);
        },
        [before, show] { show(before); });
    RejectWithout(volume, dialog);
}

} // namespace KOVA::Quorvex::viewer
