#include <cmath>
#include <fstream>

#include <QApplication>
#include <QDockWidget>
#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QTest>

#include <gtest/gtest.h>

#include <Quorvex/volume/VolumeBuilder.h>
#include <Quorvex/volume/VolumeWriter.h>

#include <viewer/MeshPart.h>
#include <viewer/SceneTree.h>
#include <viewer/TransferEditor.h>
#include <viewer/VolumePanel.h>

#include "ViewerHost.h"

namespace KOVA::Quorvex::viewer {

namespace {

// Where a point of the first part's file is seen in the frame, in the widget's coordinates (Qt's pixels).
QPoint PlaceOf(ViewerHost& host, FrameWidget& frame, const Vector3d& point) {
    const auto pixel = frame.Rig().PixelOf(host.Window().GetScene().GetParts().front()->InScene(point));
    EXPECT_TRUE(pixel.has_value());
    const double ratio = frame.devicePixelRatioF();
    return {static_cast<int>(std::floor(pixel->x / ratio)), static_cast<int>(std::floor(pixel->y / ratio))};
}

void Drag(QWidget& widget, Qt::MouseButton button, QPoint from, QPoint to) {
    QTest::mousePress(&widget, button, {}, from);
    QTest::mouseMove(&widget, (from + to) / 2);
    QTest::mouseMove(&widget, to);
    QTest::mouseRelease(&widget, button, {}, to);
}

// Also run with two pixels of the screen for one of Qt's.
TEST(ViewerTest, MeshIsOpenedTurnedAndMeasured) {
    ViewerHost host;
    if (host.Window().devicePixelRatioF() > 1.0) { // to be on the screen as a whole
        for (auto* dock : host.Window().findChildren<QDockWidget*>()) {
            dock->hide();
        }
        host.Window().resize(500, 450);
    }
    ASSERT_TRUE(host.Open({c_flange}));
    FrameWidget& frame = host.Frame();
    const QImage corner = ViewerHost::Picture(frame);
    ViewerHost::Keep(ViewerHost::Picture(host.Window()), "mesh.png");
    const double area = corner.width() * corner.height();
    EXPECT_GT(ViewerHost::CountForeground(corner), 0.15 * area);
    EXPECT_LT(ViewerHost::CountForeground(corner), 0.6 * area);

    // The rim is a circle of radius 60 that lies at a height of 0 to 10; the view of a corner is a perspective one.
    QTest::keyClick(&frame, Qt::Key_M);
    for (const double x : {-55.0, 55.0}) {
        QTest::mouseClick(&frame, Qt::LeftButton, {}, PlaceOf(host, frame, {x, 10.0, 0.0}));
    }
    const auto& distances = host.Window().GetFrames().GetMeasurements().GetDistances();
    ASSERT_EQ(distances.size(), 1U);
    EXPECT_NEAR(distances.front().label.toDouble(), 110.0, 0.6);
    ASSERT_TRUE(host.Settle());
    const QImage measured = ViewerHost::Picture(frame);
    ViewerHost::Keep(measured, "measured.png");
    EXPECT_GT(ViewerHost::CountDifferent(corner, measured), 100); // the line with its label

    // Seen from above the part is a ring: its area and that of its holes are known.
    QTest::keyClick(&frame, Qt::Key_M);
    QTest::keyClick(&host.Window(), Qt::Key_M, Qt::ControlModifier);
    QTest::keyClick(&frame, Qt::Key_A);
    QTest::keyClick(&frame, Qt::Key_P);
    QTest::keyClick(&frame, Qt::Key_5);
    ASSERT_TRUE(host.Settle());
    const QImage top = ViewerHost::Picture(frame);
    ViewerHost::Keep(top, "top.png");
    const double pixel = 120.0 * 1.05 / std::min(top.width(), top.height());
    const double ring = 3.14159 * (60.0 * 60.0 - 17.0 * 17.0 - 6 * 4.5 * 4.5) / (pixel * pixel);
    EXPECT_NEAR(ViewerHost::CountForeground(top), ring, 0.02 * ring);

    // Turned by the mouse, moved and zoomed so that the place under the cursor stays.
    Drag(frame, Qt::LeftButton, {200, 200}, {320, 260});
    EXPECT_LT(frame.Rig().GetView().getZVector().y, 0.98F);
    const Vector3d hub(17.0, 35.5, 0.0);
    const QPoint before = PlaceOf(host, frame, hub);
    EXPECT_EQ(top.width(), std::lround(frame.width() * frame.devicePixelRatioF()));
    Drag(frame, Qt::RightButton, {200, 200}, {230, 180});
    EXPECT_LE((PlaceOf(host, frame, hub) - before - QPoint(30, -20)).manhattanLength(), 2);
    const QPoint pivot(frame.width() / 2, frame.height() / 2);
    QWheelEvent wheel(pivot, frame.mapToGlobal(pivot), {}, {0, 240}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    const QPoint aside = PlaceOf(host, frame, hub) - pivot;
    QApplication::sendEvent(&frame, &wheel);
    const QPoint enlarged = PlaceOf(host, frame, hub) - pivot;
    EXPECT_LE((enlarged - aside * 1.44).manhattanLength(), 4);
    ASSERT_TRUE(host.Settle());
    EXPECT_GT(ViewerHost::CountDifferent(top, ViewerHost::Picture(frame)), 0.1 * area);
    EXPECT_EQ(ViewerHost::GlErrors(), 0);
}

TEST(ViewerTest, ClickSelectsTheMeshAndDisplayModesShow) {
    ViewerHost host;
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(c_flange), QUrl::fromLocalFile(c_casting)});
    QDragEnterEvent enter(QPoint(300, 300), Qt::CopyAction, &files, Qt::LeftButton, {});
    QApplication::sendEvent(&host.Window(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(300, 300), Qt::CopyAction, &files, Qt::LeftButton, {});
    QApplication::sendEvent(&host.Window(), &drop);
    ASSERT_TRUE(host.Settle());
    SceneModel& scene = host.Window().GetScene();
    ASSERT_EQ(scene.GetParts().size(), 2U);
    ScenePart* const volume = scene.GetParts().back().get();
    volume->Attribute().Hide();
    scene.Apply(volume);
    ASSERT_TRUE(host.Settle());
    ScenePart* const flange = scene.GetParts().front().get();
    host.Window().GetSceneTree().Select(volume);
    QTest::mouseClick(&host.Frame(), Qt::LeftButton, {}, PlaceOf(host, host.Frame(), {52.0, 10.0, 10.0}));
    EXPECT_EQ(host.Window().GetSceneTree().GetSelected(), QList<ScenePart*>{flange});

    host.Bridge().WhenIdle(&host.Window(), [&] { scene.Remove(volume); });
    ASSERT_TRUE(host.Settle());
    QImage last = ViewerHost::Picture(host.Frame());
    for (const auto mode :
         {MeshAttribute::RENDER_WIREFRAME, MeshAttribute::RENDER_SURFACE_WIREFRAME, MeshAttribute::RENDER_HIDDEN_LINE,
          MeshAttribute::RENDER_POINTS, MeshAttribute::RENDER_XRAY, MeshAttribute::RENDER_SURFACE}) {
        dynamic_cast<MeshPart&>(*flange).Attribute().SetRenderMode(mode);
        scene.Apply(flange);
        ASSERT_TRUE(host.Settle());
        const QImage picture = ViewerHost::Picture(host.Frame());
        ViewerHost::Keep(picture, ("mode" + std::to_string(mode) + ".png").c_str());
        EXPECT_GT(ViewerHost::CountDifferent(last, picture), 500) << mode;
        EXPECT_GT(ViewerHost::CountForeground(picture), 500) << mode;
        last = picture;
    }
    EXPECT_EQ(ViewerHost::GlErrors(), 0);
}

TEST(ViewerTest, TransferFunctionIsEditedByMouse) {
    ViewerHost host;
    ASSERT_TRUE(host.Open({c_casting}));
    VolumePanel& panel = host.Window().GetVolumePanel();
    TransferEditor& editor = panel.GetEditor();
    const QImage solid = ViewerHost::Picture(host.Frame());
    ViewerHost::Keep(ViewerHost::Picture(host.Window()), "volume.png");
    EXPECT_GT(ViewerHost::CountForeground(solid), 0.08 * solid.width() * solid.height());

    // The points go to the floor one by one, and with the last one the part goes.
    const std::size_t count = editor.GetCurve().GetPoints().size();
    for (std::size_t i = 0; i < count; ++i) {
        const QPoint from = editor.PlaceOf(editor.GetCurve().GetPoints()[i]).toPoint();
        Drag(editor, Qt::LeftButton, from, {from.x(), editor.height()});
    }
    QTest::keyClick(&host.Frame(), Qt::Key_A);
    ASSERT_TRUE(host.Settle());
    const QImage empty = ViewerHost::Picture(host.Frame());
    ViewerHost::Keep(empty, "empty.png");
    EXPECT_EQ(ViewerHost::CountForeground(empty), 0);

    // A new point brings back what has its intensities; the right button takes it away.
    const QPoint place = editor.PlaceOf({135.0, {0.0F, 0.0F, 0.0F, 0.5F}}).toPoint();
    QTest::mouseDClick(&editor, Qt::LeftButton, {}, place);
    QTest::mouseRelease(&editor, Qt::LeftButton, {}, place);
    EXPECT_EQ(editor.GetCurve().GetPoints().size(), count + 1);
    ASSERT_TRUE(host.Settle());
    EXPECT_GT(ViewerHost::CountForeground(ViewerHost::Picture(host.Frame())), 1000);
    QTest::mouseClick(&editor, Qt::RightButton, {}, place);
    EXPECT_EQ(editor.GetCurve().GetPoints().size(), count);

    for (const int preset : {1, 2, 3, 4}) {
        panel.UsePreset(preset);
        ASSERT_TRUE(host.Settle());
        const QImage picture = ViewerHost::Picture(host.Frame());
        ViewerHost::Keep(picture, ("preset" + std::to_string(preset) + ".png").c_str());
        EXPECT_GT(ViewerHost::CountForeground(picture), 1000) << preset;
    }

    // Half of it is cut away, with a slice on the cut.
    panel.UsePreset(0);
    VolumePart::Look look = panel.GetVolume()->GetLook();
    look.cuts[0] = {0.0, 0.5, true, 0.5};
    panel.GetVolume()->SetLook(look);
    host.Window().GetScene().Refresh();
    ASSERT_TRUE(host.Settle());
    const QImage cut = ViewerHost::Picture(host.Frame());
    ViewerHost::Keep(cut, "cut.png");
    EXPECT_GT(ViewerHost::CountDifferent(cut, solid), 0.02 * cut.width() * cut.height());
    EXPECT_EQ(ViewerHost::GlErrors(), 0);
}

TEST(ViewerTest, FramesAreSplitAndLinked) {
    ViewerHost host;
    ASSERT_TRUE(host.Open({c_flange}));
    FrameGrid& frames = host.Window().GetFrames();
    QTest::keyClick(&host.Window(), Qt::Key_4, Qt::ControlModifier);
    ASSERT_TRUE(ViewerHost::WaitUntil([&] { return frames.GetCount() == 4; }));
    ASSERT_TRUE(host.Settle());
    ViewerHost::Keep(ViewerHost::Picture(host.Window()), "four.png");
    for (int i = 0; i < 4; ++i) {
        EXPECT_GT(ViewerHost::CountForeground(ViewerHost::Picture(host.Frame(i))), 2000) << i;
    }
    EXPECT_FLOAT_EQ(host.Frame(2).Rig().GetView().getZVector().y, 1.0F); // from above

    // The saved picture is what the screen shows.
    QTemporaryDir folder;
    const QString saved = folder.filePath(QStringLiteral("saved.png"));
    host.Window().SaveScreenshot(saved);
    ASSERT_TRUE(ViewerHost::WaitUntil([&] { return QFile::exists(saved); }));
    ASSERT_TRUE(host.Settle());
    QImage picture(saved);
    const QImage shown =
        ViewerHost::Picture(host.Window()).copy({frames.mapTo(&host.Window(), QPoint()), frames.size()});
    ASSERT_EQ(picture.size(), shown.size());
    for (int i = 0; i < 4; ++i) { // there is nothing of the window's in it
        const QRect place = host.Frame(i).geometry();
        const QImage own = picture.copy(place).convertToFormat(QImage::Format_RGB32);
        EXPECT_LT(ViewerHost::CountDifferent(own, shown.copy(place), 24), place.width() * place.height() / 1000);
    }

    const auto follows = [&](int i) {
        const Vector3f a = host.Frame(0).Rig().GetView().getZVector();
        const Vector3f b = host.Frame(i).Rig().GetView().getZVector();
        return (a - b).Length() < 1e-4F;
    };
    EXPECT_FALSE(follows(1));
    frames.SetLinked(true);
    Drag(host.Frame(0), Qt::LeftButton, {100, 100}, {160, 120});
    EXPECT_TRUE(follows(1) && follows(2) && follows(3));
    frames.SetCount(1);
    ASSERT_TRUE(ViewerHost::WaitUntil([&] { return frames.GetCount() == 1; }));
    ASSERT_TRUE(host.Settle());
    EXPECT_GT(ViewerHost::CountForeground(ViewerHost::Picture(host.Frame())), 2000);
    EXPECT_EQ(ViewerHost::GlErrors(), 0);
}

TEST(ViewerTest, BadFilesAndCancelledLoadingLeaveTheScene) {
    ViewerHost host;
    ASSERT_TRUE(host.Open({c_flange}));
    QTemporaryDir folder;
    const QString bad = folder.filePath(QStringLiteral("bad.rek"));
    std::ofstream(bad.toStdString(), std::ios::binary) << "no volume";
    ASSERT_TRUE(host.Open({bad, folder.filePath(QStringLiteral("missing.stl"))}));
    auto* const box = host.Window().findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->text().contains(QStringLiteral("too short")) &&
                box->text().contains(QStringLiteral("missing.stl")))
        << box->text().toStdString();
    box->close();

    // Many failures do not make the box higher than the screen.
    QStringList missing;
    for (int i = 0; i < 30; ++i) {
        missing.append(folder.filePath(QStringLiteral("missing%1.stl").arg(i)));
    }
    ASSERT_TRUE(host.Open(missing));
    auto* const many = host.Window().findChild<QMessageBox*>();
    ASSERT_NE(many, nullptr);
    EXPECT_LT(many->text().count(QLatin1Char('\n')), 10);
    EXPECT_EQ(many->detailedText().count(QStringLiteral("missing")), 30);
    many->close();

    host.Window().Open({c_casting, c_flange, c_flange});
    host.Window().GetLoader().Cancel();
    ASSERT_TRUE(host.Settle());
    EXPECT_EQ(host.Window().GetScene().GetParts().size(), 1U);

    // Half of it is on the graphics card when it is cancelled.
    bool begun = false;
    const auto cancel =
        QObject::connect(&host.Window().GetLoader(), &Loader::Progress, [&](const QString&, double share) {
            if (share > 0.5) {
                begun = true;
                host.Window().GetLoader().Cancel();
            }
        });
    const QString large = folder.filePath(QStringLiteral("large.rek"));
    ASSERT_TRUE(
        VolumeWriter::WriteREK(large.toLocal8Bit().constData(), VolumeBuilder::BuildBox(200, 200, 200).GetData()));
    ASSERT_TRUE(host.Open({large}));
    QObject::disconnect(cancel);
    EXPECT_TRUE(begun);
    EXPECT_EQ(host.Window().GetScene().GetParts().size(), 1U);
    EXPECT_GT(ViewerHost::CountForeground(ViewerHost::Picture(host.Frame())), 2000);
    EXPECT_EQ(ViewerHost::GlErrors(), 0);
}

TEST(ViewerTest, SettingsAreRemembered) {
    ViewerHost host;
    ASSERT_TRUE(host.Open({c_flange}));
    host.Window().GetFrames().SetCount(2);
    ASSERT_TRUE(host.Settle());
    host.Window().resize(900, 600);
    host.Window().close();
    host.CloseWindow();
    host.OpenWindow();
    EXPECT_EQ(host.Window().GetFrames().GetCount(), 2);
    EXPECT_EQ(host.Window().size(), QSize(900, 600));
    const QList<QAction*> actions = host.Window().findChildren<QAction*>();
    const auto recent = std::find_if(actions.begin(), actions.end(), [](const QAction* action) {
        return action->text().endsWith(QStringLiteral("flange.stl"));
    });
    ASSERT_NE(recent, actions.end());
    (*recent)->trigger();
    ASSERT_TRUE(host.Settle());
    EXPECT_EQ(host.Window().GetScene().GetParts().size(), 1U);
    EXPECT_EQ(ViewerHost::GlErrors(), 0);
}

} // namespace

} // namespace KOVA::Quorvex::viewer
