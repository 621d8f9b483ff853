// The panels beside the frames: transfer functions, looks, cuts, colours, keys and dialogs.

#include <cmath>
#include <fstream>
#include <set>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <Quorvex/volume/VolumeWriter.h>

#include <viewer/CutControls.h>
#include <viewer/Dialogs.h>
#include <viewer/QtColor.h>
#include <viewer/SceneTree.h>
#include <viewer/TransferEditor.h>
#include <viewer/VolumePanel.h>

#include "ViewerHost.h"

namespace KOVA::Quorvex::viewer {

namespace {

constexpr QSize c_size{720, 640}; // little of it is frames

bool Same(const TransferCurve& a, const TransferCurve& b) {
    const auto same = [](const TransferCurve::Point& p, const TransferCurve::Point& q) {
        return p.intensity == q.intensity && p.color.r == q.color.r && p.color.g == q.color.g &&
               p.color.b == q.color.b && p.color.a == q.color.a;
    };
    return std::equal(a.GetPoints().begin(), a.GetPoints().end(), b.GetPoints().begin(), b.GetPoints().end(), same);
}

void Move(QWidget* widget, QPoint to, Qt::MouseButtons buttons = Qt::LeftButton) {
    QMouseEvent move(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, buttons, {});
    QApplication::sendEvent(widget, &move);
}

// A control by what it is called for those who cannot see it.
template <class Control> Control* Named(const QWidget& among, const QString& name) {
    for (auto* control : among.findChildren<Control*>()) {
        if (control->accessibleName() == name) {
            return control;
        }
    }
    ADD_FAILURE() << "there is no " << name.toStdString();
    return nullptr;
}

template <class Widget> Widget* Labelled(const QWidget& among, const QString& text) {
    for (auto* label : among.findChildren<QLabel*>()) {
        if (label->text().remove(QLatin1Char('&')) == text) {
            return qobject_cast<Widget*>(label->buddy());
        }
    }
    return nullptr;
}

class PanelTest : public testing::Test {
protected:
    PanelTest() { m_host.Window().resize(c_size); }

    // The voxels have a ramp along x; without, they are all alike.
    QString WriteVolume(const char* name, std::size_t x, std::size_t y, std::size_t z, bool ramp = true) {
        VolumeData data(x, y, z);
        for (std::size_t k = 0; k < z; ++k) {
            for (std::size_t i = 0; i < x * y; ++i) {
                data.Slice(k)[i] = static_cast<unsigned char>(ramp ? 250 * (i % x) / x : 90);
            }
        }
        QString path = m_folder.filePath(QString::fromLatin1(name));
        EXPECT_TRUE(VolumeWriter::WriteREK(path.toStdString().c_str(), data));
        return path;
    }

    VolumePanel& Panel() { return m_host.Window().GetVolumePanel(); }
    SceneTree& Tree() { return m_host.Window().GetSceneTree(); }
    SceneModel& Scene() { return m_host.Window().GetScene(); }
    ScenePart* Part(std::size_t index) { return Scene().GetParts()[index].get(); }
    const VolumePart::Look& Look(std::size_t index) { return dynamic_cast<VolumePart*>(Part(index))->GetLook(); }
    template <class Dialog> Dialog* Opened() { return m_host.Window().findChild<Dialog*>(); }

    void Remove(ScenePart* part) {
        m_host.Bridge().WhenIdle(&m_host.Window(), [this, part] { Scene().Remove(part); });
        EXPECT_TRUE(m_host.Settle());
    }

    void Type(const QString& control, const char* text) {
        auto* const box = Named<QDoubleSpinBox>(Panel(), control);
        box->setFocus();
        box->selectAll();
        QTest::keyClicks(box, QString::fromLatin1(text));
        QTest::keyClick(box, Qt::Key_Return);
    }

    QTemporaryDir m_folder;
    ViewerHost m_host;
};

class TransferEditorTest : public testing::Test {
protected:
    TransferEditorTest() {
        m_editor.resize(280, 180);
        m_editor.SetCurve(TransferCurve(
            {{20.0, {1.0F, 0.0F, 0.0F, 0.1F}}, {120.0, {0.0F, 1.0F, 0.0F, 0.5F}}, {200.0, {0.0F, 0.0F, 1.0F, 0.9F}}}));
        m_editor.show();
    }

    const TransferCurve::Point& Point(std::size_t index) { return m_editor.GetCurve().GetPoints()[index]; }
    QPoint Place(std::size_t index) { return m_editor.PlaceOf(Point(index)).toPoint(); }
    void Press(int key) { QTest::keyClick(&m_editor, static_cast<Qt::Key>(key)); }

    void Move(QPoint to, Qt::MouseButtons buttons) { viewer::Move(&m_editor, to, buttons); }

    TransferEditor m_editor{nullptr};
};

TEST_F(TransferEditorTest, IsEditedByKeys) {
    QSignalSpy colors(&m_editor, &TransferEditor::ColorWanted);
    Press(Qt::Key_Right); // nothing is selected
    Press(Qt::Key_Return);
    EXPECT_EQ(Point(0).intensity, 20.0);
    Press(Qt::Key_PageDown);
    Press(Qt::Key_PageDown);
    Press(Qt::Key_Right);
    Press(Qt::Key_Up);
    EXPECT_EQ(Point(1).intensity, 121.0);
    EXPECT_NEAR(std::cbrt(Point(1).color.a), std::cbrt(0.5) + 0.02, 1e-6);
    Press(Qt::Key_Left);
    Press(Qt::Key_Down);
    EXPECT_EQ(Point(1).intensity, 120.0);
    EXPECT_NEAR(Point(1).color.a, 0.5, 1e-6);
    Press(Qt::Key_Return);
    ASSERT_EQ(colors.size(), 1);
    EXPECT_EQ(colors[0][0].toInt(), 1);
    Press(Qt::Key_Insert); // it is selected, half-way to the next
    ASSERT_EQ(m_editor.GetCurve().GetPoints().size(), 4U);
    EXPECT_EQ(Point(2).intensity, 160.0);
    Press(Qt::Key_Left);
    EXPECT_EQ(Point(2).intensity, 159.0);
    Press(Qt::Key_Delete);
    Press(Qt::Key_PageUp); // from nothing to the last one, and from the first to that
    Press(Qt::Key_Right);
    EXPECT_EQ(Point(2).intensity, 201.0);
    Press(Qt::Key_PageDown);
    Press(Qt::Key_PageUp);
    for (int i = 0; i < 100; ++i) {
        Press(Qt::Key_Right);
    }
    EXPECT_EQ(Point(2).intensity, 255.0);
    for (int i = 0; i < 4; ++i) {
        Press(Qt::Key_PageDown);
        Press(Qt::Key_Delete);
    }
    EXPECT_EQ(m_editor.GetCurve().GetPoints().size(), 2U);
}

TEST_F(TransferEditorTest, DragsEndWithThePointTheCurveAndTheButton) {
    const auto drag = [this](const std::function<void()>& meanwhile, Qt::MouseButtons later) {
        QTest::mousePress(&m_editor, Qt::LeftButton, {}, Place(1));
        Move(Place(1) + QPoint(4, 0), Qt::LeftButton);
        EXPECT_GT(Point(1).intensity, 121.0);
        meanwhile();
        const TransferCurve before = m_editor.GetCurve();
        Move(Place(1) + QPoint(9, 5), later);
        EXPECT_TRUE(Same(m_editor.GetCurve(), before));
        QTest::mouseRelease(&m_editor, Qt::LeftButton, {}, {1, 1});
    };
    const TransferCurve curve = m_editor.GetCurve();
    drag([this] { Press(Qt::Key_Delete); }, Qt::LeftButton);
    m_editor.SetCurve(curve);
    drag([this] { m_editor.SetCurve(TransferCurve()); }, Qt::LeftButton);
    m_editor.SetCurve(curve);
    drag([&] { m_editor.SetCurve(curve); }, Qt::LeftButton); // another's, that looks the same
    drag([] {}, Qt::NoButton);                               // the release went elsewhere
    m_editor.SetCurve(curve);
    drag([this] { QTest::mousePress(&m_editor, Qt::RightButton, {}, Place(1)); }, Qt::LeftButton | Qt::RightButton);
    m_editor.SetCurve(curve);
    QTest::mousePress(&m_editor, Qt::LeftButton, {}, Place(1)); // another button's release does not end it
    QTest::mouseRelease(&m_editor, Qt::MiddleButton, {}, Place(1));
    Move(Place(1) + QPoint(4, 0), Qt::LeftButton);
    EXPECT_GT(Point(1).intensity, 121.0);
}

TEST_F(PanelTest, VolumesKeepTheirLooks) {
    ASSERT_TRUE(m_host.Open({WriteVolume("a.rek", 24, 20, 16), WriteVolume("b.rek", 12, 10, 9)}));
    ScenePart* const a = Part(0);
    ScenePart* const b = Part(1);
    auto* const preset = Labelled<QComboBox>(Panel(), QStringLiteral("Preset"));
    auto* const mode = Labelled<QComboBox>(Panel(), QStringLiteral("Mode"));
    ASSERT_TRUE(preset != nullptr && mode != nullptr);
    Tree().Select(a);
    ASSERT_EQ(Panel().GetVolume(), a);
    TransferEditor& editor = Panel().GetEditor();
    QTest::keyClick(&editor, Qt::Key_PageDown);
    QTest::keyClick(&editor, Qt::Key_Right);
    const TransferCurve edited = Look(0).curve;
    EXPECT_TRUE(Same(edited, editor.GetCurve()) && Look(0).edited);
    EXPECT_EQ(preset->currentIndex(), -1);

    Tree().Select(b);
    ASSERT_EQ(Panel().GetVolume(), b);
    EXPECT_EQ(preset->currentIndex(), 0);
    QTest::keyClick(&editor, Qt::Key_Right); // what was selected is the other's
    EXPECT_EQ(preset->currentIndex(), 0);
    Panel().UsePreset(3);
    const TransferCurve temperature = Look(1).curve;
    Tree().Select(a);
    EXPECT_EQ(preset->currentIndex(), -1);
    QTest::keyClick(mode, Qt::Key_Down);
    EXPECT_EQ(Look(0).mode, VolumeAttribute::Unshaded);
    EXPECT_TRUE(Same(Look(0).curve, edited));
    Tree().Select(b);
    EXPECT_EQ(preset->currentIndex(), 3);
    EXPECT_TRUE(Same(editor.GetCurve(), temperature));
    QTest::keyClick(mode, Qt::Key_Down); // not edited: it follows
    EXPECT_FALSE(Same(editor.GetCurve(), temperature));
    EXPECT_EQ(preset->currentIndex(), -1);

    // Of several, the first one is shown, and stays.
    auto* const rows = Tree().findChild<QTreeWidget*>();
    rows->selectAll();
    EXPECT_EQ(Panel().GetVolume(), a);
    rows->topLevelItem(1)->setSelected(false);
    rows->topLevelItem(1)->setSelected(true);
    EXPECT_EQ(Panel().GetVolume(), a);
    Tree().Select(nullptr);
    EXPECT_EQ(Panel().GetVolume(), a);
    Remove(a);
    EXPECT_EQ(Panel().GetVolume(), b);
}

TEST_F(PanelTest, ColorsAreThoseOfThePartsThatTheDialogWasOpenedFor) {
    ASSERT_TRUE(m_host.Open({c_flange, c_flange, WriteVolume("a.rek", 24, 20, 16), WriteVolume("b.rek", 12, 10, 9)}));
    const auto color = [this](std::size_t index) { return ToQColor(Part(index)->Attribute().GetColor()); };
    const QColor first = color(0);
    const QColor second = color(1);
    auto* const choose = Labelled<QPushButton>(Tree(), QStringLiteral("Colour"));
    ASSERT_NE(choose, nullptr);
    Tree().Select(Part(0));
    QTest::mouseClick(choose, Qt::LeftButton);
    auto* dialog = Opened<QColorDialog>();
    ASSERT_NE(dialog, nullptr);
    int wells = 0; // from which colours can be dragged, in a loop of Qt's
    for (auto* well : dialog->findChildren<QWidget*>()) {
        if (well->acceptDrops() && qobject_cast<QLineEdit*>(well) == nullptr && well->isVisible()) {
            ++wells;
            QTest::mousePress(well, Qt::LeftButton, {}, {8, 8});
            Move(well, {30, 8});
            QTest::mouseRelease(well, Qt::LeftButton, {}, {8, 8});
        }
    }
    EXPECT_GT(wells, 0);
    dialog->setCurrentColor(Qt::red);
    EXPECT_EQ(color(0), QColor(Qt::red));
    Tree().Select(Part(1));
    dialog->setCurrentColor(Qt::green);
    EXPECT_EQ(color(0), QColor(Qt::green));
    QTest::keyClick(dialog, Qt::Key_Escape);
    EXPECT_EQ(color(0).rgb(), first.rgb());
    EXPECT_EQ(color(1).rgb(), second.rgb());
    ASSERT_TRUE(ViewerHost::WaitUntil([&] { return Opened<QColorDialog>() == nullptr; }));
    QTest::mouseClick(choose, Qt::LeftButton); // this one is accepted
    Opened<QColorDialog>()->setCurrentColor(Qt::blue);
    Opened<QColorDialog>()->accept();
    EXPECT_EQ(color(1), QColor(Qt::blue));
    ASSERT_TRUE(ViewerHost::WaitUntil([&] { return Opened<QColorDialog>() == nullptr; }));
    QTest::mouseClick(choose, Qt::LeftButton); // and the mesh of this one goes
    Remove(Part(1));
    EXPECT_EQ(Opened<QColorDialog>(), nullptr);

    // Points of transfer functions.
    ScenePart* const a = Part(1);
    Tree().Select(a);
    const TransferCurve before = Look(1).curve;
    const TransferCurve others = Look(2).curve;
    TransferEditor& editor = Panel().GetEditor();
    QTest::mouseDClick(&editor, Qt::LeftButton, {}, editor.PlaceOf(before.GetPoints()[0]).toPoint());
    dialog = Opened<QColorDialog>();
    ASSERT_NE(dialog, nullptr);
    dialog->setCurrentColor(Qt::red);
    EXPECT_EQ(ToQColor(Look(1).curve.GetPoints()[0].color), QColor(Qt::red));
    EXPECT_TRUE(Same(editor.GetCurve(), Look(1).curve) && Look(1).edited);
    Tree().Select(Part(2));
    dialog->setCurrentColor(Qt::green);
    EXPECT_EQ(ToQColor(Look(1).curve.GetPoints()[0].color), QColor(Qt::green));
    EXPECT_TRUE(Same(Look(2).curve, others) && Same(editor.GetCurve(), others));
    dialog->reject();
    EXPECT_TRUE(Same(Look(1).curve, before) && !Look(1).edited);
    EXPECT_EQ(Look(1).preset, 0);
    ASSERT_TRUE(ViewerHost::WaitUntil([&] { return Opened<QColorDialog>() == nullptr; }));
    Tree().Select(a);
    QTest::keyClick(&editor, Qt::Key_PageDown);
    QTest::keyClick(&editor, Qt::Key_Return);
    ASSERT_NE(Opened<QColorDialog>(), nullptr);
    Remove(a);
    EXPECT_EQ(Opened<QColorDialog>(), nullptr);
}

TEST_F(PanelTest, CutsAndLevelsAreTypedAndStepVoxelByVoxel) {
    ASSERT_TRUE(m_host.Open({WriteVolume("long.rek", 700, 6, 1)}));
    ViewerHost::Keep(ViewerHost::Picture(m_host.Window()), "panel.png");
    const auto cut = [this](std::size_t axis) { return Look(0).cuts[axis]; };
    Type(QStringLiteral("x from"), "333");
    EXPECT_EQ(cut(0).low, 333.0 / 700.0);
    EXPECT_EQ(Named<QSlider>(Panel(), QStringLiteral("x from"))->value(), 333);
    auto* const to = Named<QSlider>(Panel(), QStringLiteral("x to"));
    EXPECT_EQ(to->value(), 699);
    QTest::keyClick(to, Qt::Key_Left);
    EXPECT_EQ(cut(0).high, 699.0 / 700.0);
    EXPECT_EQ(Named<QDoubleSpinBox>(Panel(), QStringLiteral("x to"))->value(), 698.0);
    Type(QStringLiteral("x to"), "100"); // pushes the other; a voxel is left
    EXPECT_EQ(cut(0).low, 100.0 / 700.0);
    EXPECT_EQ(cut(0).high, 101.0 / 700.0);
    QTest::keyClick(to, Qt::Key_End);
    EXPECT_EQ(cut(0).high, 1.0);

    QTest::mouseClick(Named<QAbstractButton>(Panel(), QStringLiteral("Show the x slice")), Qt::LeftButton, {}, {8, 8});
    EXPECT_TRUE(cut(0).showSlice);
    EXPECT_EQ(cut(0).slice, 350.5 / 700.0);
    QTest::keyClick(Named<QSlider>(Panel(), QStringLiteral("x slice")), Qt::Key_Right);
    EXPECT_EQ(cut(0).slice, 351.5 / 700.0);
    Type(QStringLiteral("x to"), "351"); // now the outermost: on the cut
    EXPECT_EQ(cut(0).slice, 352.0 / 700.0);
    for (const VolumePart::AxisCut& shown : {cut(0), VolumePart::AxisCut{7.0 / 700.0, 1.0, true, 7.0 / 700.0}}) {
        CutControls controls(QStringLiteral("x"), nullptr);
        controls.Show(shown, 700);
        EXPECT_EQ(controls.GetCut().slice, shown.slice);
    }

    // One voxel thick.
    Type(QStringLiteral("z from"), "5");
    EXPECT_TRUE(cut(2).low == 0.0 && cut(2).high == 1.0 && cut(2).slice == 0.5);

    Type(QStringLiteral("Level"), "120.5");
    Type(QStringLiteral("Window"), "60");
    EXPECT_NEAR(Look(0).curve.GetLevel(), 120.5, 1e-9);
    EXPECT_NEAR(Look(0).curve.GetWindow(), 60.0, 1e-9);
    QTest::keyClick(Named<QSlider>(Panel(), QStringLiteral("Level")), Qt::Key_Right);
    EXPECT_NEAR(Look(0).curve.GetLevel(), 120.6, 1e-9);
    EXPECT_NEAR(Look(0).curve.GetWindow(), 60.0, 1e-9);

    // All alike, they are a solid block for every preset of a surface.
    ASSERT_TRUE(m_host.Open({WriteVolume("alike.rek", 9, 9, 9, false)}));
    Remove(Part(0));
    QTest::keyClick(&m_host.Frame(), Qt::Key_A);
    for (const int preset : {0, 2, 3}) {
        Panel().UsePreset(preset);
        ASSERT_TRUE(m_host.Settle());
        EXPECT_GT(ViewerHost::CountForeground(ViewerHost::Picture(m_host.Frame())), 2000) << preset;
    }
    Type(QStringLiteral("Window"), "0");
    EXPECT_TRUE(std::isfinite(Look(0).curve.GetLevel()) && Look(0).curve.GetWindow() >= 0.0);
    // Half of a number, and no volume any more.
    auto* const box = Named<QDoubleSpinBox>(Panel(), QStringLiteral("Level"));
    box->setFocus();
    QTest::keyClicks(box, QStringLiteral("1"));
    Remove(Part(0));
    EXPECT_EQ(Panel().GetVolume(), nullptr);
    EXPECT_FALSE(box->isEnabled());
    EXPECT_EQ(ViewerHost::GlErrors(), 0);
}

TEST_F(PanelTest, TheWheelScrollsUnlessAControlHasTheFocus) {
    ASSERT_TRUE(m_host.Open({WriteVolume("a.rek", 24, 20, 16)}));
    m_host.Window().resize(c_size.width(), 420);
    ASSERT_TRUE(m_host.Settle());
    QScrollBar* const bar = Panel().findChild<QScrollArea*>()->verticalScrollBar();
    ASSERT_GT(bar->maximum(), 100);
    const auto turn = [](QWidget* widget) {
        const QPoint place = widget->rect().center();
        QWheelEvent wheel(place, widget->mapToGlobal(place), {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&wheel); // as the server's, which go on to parents and may bring the focus
        QApplication::instance()->notify(widget, &wheel);
    };
    m_host.Frame().setFocus();
    auto* const mode = Labelled<QComboBox>(Panel(), QStringLiteral("Mode"));
    auto* const samples = Labelled<QDoubleSpinBox>(Panel(), QStringLiteral("Samples"));
    auto* const slider = Named<QSlider>(Panel(), QStringLiteral("Level"));
    ASSERT_TRUE(mode != nullptr && samples != nullptr);
    const int level = slider->value();
    for (QWidget* control : std::initializer_list<QWidget*>{mode, samples, slider}) {
        const int before = bar->value();
        turn(control);
        EXPECT_GT(bar->value(), before);
        bar->setValue(0);
        EXPECT_FALSE(control->hasFocus());
    }
    EXPECT_EQ(Look(0).mode, VolumeAttribute::Shaded);
    EXPECT_EQ(Look(0).samples, 1.0);
    EXPECT_EQ(slider->value(), level);
    for (QWidget* control : std::initializer_list<QWidget*>{mode, samples, slider}) {
        control->setFocus();
        const int before = bar->value();
        turn(control);
        EXPECT_EQ(bar->value(), before);
    }
    EXPECT_EQ(Look(0).mode, VolumeAttribute::Unshaded);
    EXPECT_EQ(Look(0).samples, 0.75);
    EXPECT_LT(slider->value(), level);
}

TEST_F(PanelTest, ListsKeepWhatIsTypedFramesTheShortcuts) {
    ASSERT_TRUE(m_host.Open({c_flange, WriteVolume("first.rek", 12, 10, 9)}));
    auto* const rows = Tree().findChild<QTreeWidget*>();
    auto* const mode = Labelled<QComboBox>(Panel(), QStringLiteral("Mode"));
    int fits = 0;
    for (auto* action : m_host.Window().findChildren<QAction*>()) {
        if (action->shortcut() == QKeySequence(Qt::Key_F)) {
            QObject::connect(action, &QAction::triggered, rows, [&] { ++fits; });
        }
    }
    QTest::keyClick(&m_host.Frame(), Qt::Key_F);
    QTest::keyClick(&m_host.Frame(), Qt::Key_L);
    EXPECT_EQ(fits, 1);
    EXPECT_TRUE(m_host.Window().GetFrames().IsLinked());

    Tree().Select(nullptr);
    rows->setFocus();
    rows->setCurrentItem(rows->topLevelItem(1));
    QTest::keyClick(rows, Qt::Key_F, Qt::NoModifier);
    EXPECT_EQ(rows->currentItem(), rows->topLevelItem(0)); // flange.stl
    mode->setFocus();
    QTest::keyClicks(mode, QStringLiteral("un"));
    EXPECT_EQ(Look(1).mode, VolumeAttribute::Unshaded);
    QTest::keyClick(mode, Qt::Key_L);
    mode->showPopup();
    QTest::keyClick(mode->view(), Qt::Key_L);
    mode->hidePopup();
    auto* const box = Named<QDoubleSpinBox>(Panel(), QStringLiteral("Level"));
    box->setFocus();
    QTest::keyClicks(box, QStringLiteral("fl"));
    EXPECT_EQ(fits, 1);
    EXPECT_TRUE(m_host.Window().GetFrames().IsLinked());
    QTest::keyClick(rows, Qt::Key_O, Qt::ControlModifier); // not a letter that is typed
    EXPECT_NE(Opened<FileDialog>(), nullptr);
    Opened<FileDialog>()->close();

    // The facts are copied by keys.
    Tree().Select(Part(0));
    for (auto* label : Tree().findChildren<QLabel*>()) {
        if (label->textInteractionFlags() == Qt::TextSelectableByKeyboard) {
            label->setFocus();
            QTest::keyClick(label, Qt::Key_A, Qt::ControlModifier);
            QTest::keyClick(label, Qt::Key_C, Qt::ControlModifier);
        }
    }
    EXPECT_TRUE(QApplication::clipboard()->text().contains(QStringLiteral("Triangles")));

    // Delete is the tree's own.
    auto* const choose = Labelled<QPushButton>(Tree(), QStringLiteral("Colour"));
    choose->setFocus();
    QTest::keyClick(choose, Qt::Key_Delete);
    ASSERT_TRUE(m_host.Settle());
    EXPECT_EQ(Scene().GetParts().size(), 2U);
    rows->setFocus();
    QTest::keyClick(rows, Qt::Key_Delete);
    ASSERT_TRUE(m_host.Settle());
    EXPECT_EQ(Scene().GetParts().size(), 1U);
}

void ExpectDifferent(const QStringList& texts, const QString& where) {
    std::set<QString> keys;
    for (const QString& text : texts) {
        const QKeySequence key = QKeySequence::mnemonic(text);
        EXPECT_TRUE(key.isEmpty() || keys.insert(key.toString()).second)
            << where.toStdString() << ": " << texts.join(QLatin1Char(',')).toStdString();
    }
}

TEST_F(PanelTest, MnemonicsAreUnique) {
    const QWidget& window = m_host.Window();
    QStringList texts;
    for (const QAction* action : m_host.Window().menuBar()->actions()) {
        texts.append(action->text());
    }
    for (const auto* label : window.findChildren<QLabel*>()) {
        texts.append(label->buddy() != nullptr ? label->text() : QString());
    }
    for (const auto* button : window.findChildren<QAbstractButton*>()) {
        texts.append(button->text());
    }
    EXPECT_GT(texts.size(), 15);
    ExpectDifferent(texts, QStringLiteral("window"));
    for (const auto* menu : window.findChildren<QMenu*>()) {
        QStringList entries;
        for (const QAction* action : menu->actions()) {
            entries.append(action->text());
        }
        ExpectDifferent(entries, menu->title());
    }
}

TEST_F(PanelTest, NamesOfFilesAreShownAsTheyAre) {
    const char* const name = "a&b <i>c<i>.rek";
    ASSERT_TRUE(m_host.Open({WriteVolume(name, 9, 9, 9)}));
    for (const auto* label : Panel().findChildren<QLabel*>()) {
        EXPECT_TRUE(!label->text().contains(QLatin1String(name)) || label->textFormat() == Qt::PlainText);
    }
    const QString tip = Tree().findChild<QTreeWidget*>()->topLevelItem(0)->toolTip(0);
    EXPECT_TRUE(tip.contains(QStringLiteral("a&amp;b")) && tip.contains(QStringLiteral("&lt;i&gt;")))
        << tip.toStdString();
    const QList<QAction*> actions = m_host.Window().findChildren<QAction*>();
    EXPECT_TRUE(std::any_of(actions.begin(), actions.end(), [](const QAction* action) {
        return action->text().endsWith(QStringLiteral("a&&b <i>c<i>.rek"));
    }));
}

// Where Qt would run a loop of its own, these calls would not come back.
TEST_F(PanelTest, FileDialogsAskWithoutLoops) {
    const QString existing = m_folder.filePath(QStringLiteral("there.png"));
    std::ofstream(existing.toStdString()) << "picture";
    const auto dialogFor = [this](FileDialog::FileMode mode, QStringList& chosen) {
        auto* const dialog = new FileDialog(&m_host.Window(), QStringLiteral("Files"), m_folder.path(), {}, mode);
        QObject::connect(dialog, &FileDialog::filesSelected, dialog, [&](const QStringList& files) { chosen = files; });
        OpenDialog(dialog);
        return dialog;
    };
    const auto enter = [](FileDialog* dialog, const char* name) {
        auto* const edit = dialog->findChild<QLineEdit*>();
        edit->setText(QString::fromLatin1(name));
        QTest::keyClick(edit, Qt::Key_Return);
        return dialog->findChild<QMessageBox*>();
    };
    const auto answer = [](QMessageBox* box, QMessageBox::StandardButton button) {
        QTest::mouseClick(box->button(button), Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    QStringList saved;
    FileDialog* const save = dialogFor(FileDialog::AnyFile, saved);
    for (const auto* view : save->findChildren<QAbstractItemView*>()) {
        EXPECT_TRUE(view->contextMenuPolicy() == Qt::NoContextMenu && !view->dragEnabled());
    }
    QMessageBox* box = enter(save, "there.png");
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->text().contains(QStringLiteral("there.png")));
    answer(box, QMessageBox::No);
    EXPECT_TRUE(save->isVisible() && saved.isEmpty());
    box = enter(save, "there.png");
    ASSERT_NE(box, nullptr);
    answer(box, QMessageBox::Yes);
    EXPECT_EQ(saved, QStringList{existing});
    ASSERT_TRUE(ViewerHost::WaitUntil([&] { return Opened<FileDialog>() == nullptr; }));
    FileDialog* const other = dialogFor(FileDialog::AnyFile, saved);
    EXPECT_EQ(enter(other, "new.png"), nullptr);
    EXPECT_EQ(saved, QStringList{m_folder.filePath(QStringLiteral("new.png"))});

    QStringList opened;
    FileDialog* const open = dialogFor(FileDialog::ExistingFiles, opened);
    box = enter(open, "missing.png");
    ASSERT_NE(box, nullptr);
    answer(box, QMessageBox::Ok);
    EXPECT_TRUE(open->isVisible() && opened.isEmpty());
    EXPECT_EQ(enter(open, "there.png"), nullptr);
    EXPECT_EQ(opened, QStringList{existing});
    EXPECT_TRUE(QFile::exists(existing));
}

} // namespace

} // namespace KOVA::Quorvex::viewer
