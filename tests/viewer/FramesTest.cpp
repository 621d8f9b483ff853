// Frames of all sizes, and which of them mouse and keys act on.

#include <array>
#include <cmath>
#include <vector>

#include <QAction>
#include <QApplication>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <viewer/CameraRig.h>

#include "ViewerHost.h"

namespace KOVA::Quorvex::viewer {

namespace {

constexpr std::array<std::array<int, 2>, 6> c_sizes{
    {{900, 300}, {300, 900}, {640, 480}, {100, 100}, {480, 500}, {1500, 120}}};
constexpr std::array<Box, 4> c_boxes{{{{-1.0, -1.0, -1.0}, {1.0, 1.0, 1.0}},
                                      {{0.0, 2.0, 1.0}, {6.0, 4.0, 3.0}},
                                      {{-1.0, -7.0, -0.5}, {1.0, -1.0, 0.5}},
                                      {{-4.0, 0.0, -4.0}, {4.0, 0.0, 4.0}}}};

std::vector<Vector3d> CornersOf(const Box& box) {
    std::vector<Vector3d> corners;
    for (const double x : {box.low[0], box.high[0]}) {
        for (const double y : {box.low[1], box.high[1]}) {
            corners.insert(corners.end(), {{x, y, box.low[2]}, {x, y, box.high[2]}});
        }
    }
    return corners;
}

// How far from the middle of the frame the box reaches: 1 is the frame's edge.
double Reach(const CameraRig& rig, const Box& box) {
    double reach = 0.0;
    for (const Vector3d& corner : CornersOf(box)) {
        const auto pixel = rig.PixelOf(corner);
        EXPECT_TRUE(pixel);
        reach = std::max(
            {reach, std::abs(2.0 * pixel->x / rig.GetWidth() - 1.0), std::abs(2.0 * pixel->y / rig.GetHeight() - 1.0)});
    }
    return reach;
}

TEST(FramesTest, WhatWasFittedStaysInSightAtAllSizes) {
    for (const Projection projection : {Projection::Perspective, Projection::Orthogonal}) {
        for (const Box& box : c_boxes) {
            CameraRig rig;
            rig.SetScene(box);
            rig.SetProjection(projection);
            for (const Side side : {Side::Iso, Side::Front, Side::Top, Side::Right}) {
                rig.Look(side);
                for (const auto& size : c_sizes) {
                    rig.SetSize(size[0], size[1]);
                    const double reach = Reach(rig, box);
                    EXPECT_LT(reach, 0.96); // the margin
                    EXPECT_GT(reach, 0.9);  // as large as it can be
                }
            }
        }
    }
}

TEST(FramesTest, MovedCamerasShowTheSameAgainAtTheSameSize) {
    for (const Projection projection : {Projection::Perspective, Projection::Orthogonal}) {
        for (const Box& box : c_boxes) {
            CameraRig rig;
            rig.SetSize(800, 500);
            rig.SetScene(box);
            rig.SetProjection(projection);
            rig.Fit();
            rig.Turn(400, 250, 420, 262);
            rig.Zoom(0.8, 400.0, 250.0);
            CameraRig other;
            other.SetScene(box);
            const double reach = Reach(rig, box);
            const auto before = rig.PixelOf(Vector3d(box.high));
            for (const auto& size : c_sizes) {
                rig.SetSize(size[0], size[1]);
                EXPECT_LT(Reach(rig, box), 1.0);
                other.SetSize(size[1], size[0]);
                other.Follow(rig);
                EXPECT_LT(Reach(other, box), 1.0);
            }
            rig.SetSize(800, 500);
            EXPECT_NEAR(Reach(rig, box), reach, 1e-4);
            EXPECT_NEAR(rig.PixelOf(Vector3d(box.high))->x, before->x, 0.05);
            other.SetSize(800, 500);
            EXPECT_NEAR(Reach(other, box), reach, 1e-4);

            // In another unit the same points of the file are seen in the same places, also when it is fitted.
            const SceneUnit millimetres{1.0, {0.0, 0.0, 0.0}};
            const SceneUnit inches{25.4, {3.0, -2.0, 1.0}};
            const auto moved = [&](const Vector3d& p) { return (p - Vector3d(inches.middle)) * (1.0 / inches.unit); };
            rig.Pan(20.0, -10.0);
            CameraRig converted = rig;
            converted.ChangeUnit(millimetres, inches);
            for (const Vector3d& corner : CornersOf(box)) {
                EXPECT_NEAR(converted.PixelOf(moved(corner))->x, rig.PixelOf(corner)->x, 0.05);
                EXPECT_NEAR(converted.PixelOf(moved(corner))->y, rig.PixelOf(corner)->y, 0.05);
            }
        }
    }
}

// Pixels of the part along the frame's upper, lower and left edge. The background is the same along a row.
int CountAtEdges(const QImage& picture) {
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const bool horizontal = y < 3 || y >= picture.height() - 3;
        const QImage row = picture.copy(0, y, picture.width(), 1);
        count += ViewerHost::CountForeground(row) > 0 && horizontal ? 1 : 0;
        count += row.pixel(0, 0) != row.pixel(row.width() - 1, 0) ? 1 : 0;
    }
    return count;
}

TEST(FramesTest, PartsAreNotCutOffByTheFramesEdges) {
    ViewerHost host;
    host.Window().resize(1250, 500);
    ASSERT_TRUE(host.Open({c_flange}));
    QTest::keyClick(&host.Window(), Qt::Key_A);
    FrameGrid& frames = host.Window().GetFrames();
    const auto check = [&](const char* name) {
        ASSERT_TRUE(host.Settle());
        ViewerHost::Keep(ViewerHost::Picture(host.Window()), name);
        for (int i = 0; i < frames.GetCount(); ++i) {
            const QImage picture = ViewerHost::Picture(host.Frame(i));
            EXPECT_EQ(CountAtEdges(picture), 0) << name << i;
            EXPECT_GT(ViewerHost::CountForeground(picture), 0.05 * picture.width() * picture.height()) << name << i;
        }
    };
    for (const char* name : {"perspective.png", "orthogonal.png"}) {
        for (const auto& [key, count] : {std::pair(Qt::Key_4, 4), std::pair(Qt::Key_2, 2), std::pair(Qt::Key_1, 1)}) {
            QTest::keyClick(&host.Window(), key, Qt::ControlModifier);
            ASSERT_TRUE(ViewerHost::WaitUntil([&, wanted = count] { return frames.GetCount() == wanted; }));
            check(name);
        }
        host.Window().resize(1250, 400); // lower, with one frame
        check(name);
        host.Window().resize(1250, 500);
        QTest::keyClick(&host.Window(), Qt::Key_P);
        QTest::keyClick(&host.Window(), Qt::Key_F);
    }
    EXPECT_EQ(ViewerHost::GlErrors(), 0);
}

QAction* FindAction(MainWindow& window, const QString& text) {
    for (QAction* action : window.findChildren<QAction*>()) {
        if (action->text() == text) {
            return action;
        }
    }
    return nullptr;
}

TEST(FramesTest, TheFrameThatIsTouchedIsTheCurrentOne) {
    ViewerHost host;
    ASSERT_TRUE(host.Open({c_flange}));
    FrameGrid& frames = host.Window().GetFrames();
    QTest::keyClick(&host.Window(), Qt::Key_4, Qt::ControlModifier);
    ASSERT_TRUE(ViewerHost::WaitUntil([&] { return frames.GetCount() == 4; }));
    ASSERT_TRUE(host.Settle());
    const auto hasBorder = [&](int i) {
        const QImage window = ViewerHost::Picture(host.Window());
        const QRect frame = host.Frame(i).rect();
        const QPoint outside(frame.center().x(), i < 2 ? -1 : frame.height());
        return window.pixelColor(host.Frame(i).mapTo(&host.Window(), outside)) ==
               frames.palette().color(QPalette::Highlight);
    };
    EXPECT_EQ(&frames.Current(), &host.Frame(0));
    EXPECT_TRUE(hasBorder(0) && !hasBorder(3));

    // By the keyboard: the arrows and the shortcuts act on the same frame.
    host.Frame(0).setFocus();
    for (int i = 0; i < 60 && !host.Frame(1).hasFocus(); ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    ASSERT_TRUE(host.Frame(1).hasFocus());
    EXPECT_EQ(&frames.Current(), &host.Frame(1));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_5);
    EXPECT_FLOAT_EQ(host.Frame(1).Rig().GetView().getZVector().y, 1.0F);
    EXPECT_LT(host.Frame(0).Rig().GetView().getZVector().y, 0.9F);
    ASSERT_TRUE(host.Settle());
    EXPECT_TRUE(hasBorder(1) && !hasBorder(0));

    // By the wheel; the menu tells of the frame that is left when the current one goes.
    QAction* const orthogonal = FindAction(host.Window(), QStringLiteral("&Orthogonal"));
    ASSERT_NE(orthogonal, nullptr);
    FrameWidget& last = host.Frame(3);
    const QPoint middle = last.rect().center();
    QWheelEvent wheel(middle, last.mapToGlobal(middle), {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&last, &wheel);
    EXPECT_EQ(&frames.Current(), &last);
    QTest::keyClick(&last, Qt::Key_P);
    EXPECT_EQ(last.Rig().GetProjection(), Projection::Orthogonal);
    EXPECT_TRUE(orthogonal->isChecked());
    frames.SetCount(1);
    ASSERT_TRUE(ViewerHost::WaitUntil([&] { return frames.GetCount() == 1; }));
    EXPECT_EQ(&frames.Current(), &host.Frame(0));
    EXPECT_FALSE(orthogonal->isChecked());
    ASSERT_TRUE(host.Settle());
    EXPECT_FALSE(hasBorder(0));
    EXPECT_EQ(ViewerHost::GlErrors(), 0);
}

TEST(FramesTest, OneButtonAtATimeMovesTheCamera) {
    ViewerHost host;
    FrameWidget& frame = host.Frame();
    const auto direction = [&frame] { return frame.Rig().GetView().getZVector(); };
    const auto turned = [&](const Vector3f& from) { return (direction() - from).Length() > 1e-3F; };
    const auto place = [&frame] { return *frame.Rig().PixelOf({0.0, 0.0, 0.0}); };
    Vector3f before = direction();
    QTest::mousePress(&frame, Qt::LeftButton, {}, {100, 100});
    QTest::mousePress(&frame, Qt::RightButton, {}, {100, 100});
    QTest::mouseMove(&frame, {140, 110});
    EXPECT_TRUE(turned(before));
    QTest::mouseRelease(&frame, Qt::RightButton, {}, {140, 110});
    before = direction();
    QTest::mouseMove(&frame, {180, 120});
    EXPECT_TRUE(turned(before));
    QTest::mouseRelease(&frame, Qt::LeftButton, {}, {180, 120});
    before = direction();
    QTest::mouseMove(&frame, {220, 140});
    EXPECT_FALSE(turned(before));

    const CameraRig::Pixel pivot = place();
    QTest::mousePress(&frame, Qt::BackButton, {}, {100, 100});
    QTest::mouseMove(&frame, {160, 160});
    QTest::mouseRelease(&frame, Qt::BackButton, {}, {160, 160});
    EXPECT_FALSE(turned(before));
    EXPECT_NEAR(place().x, pivot.x, 0.01);
    EXPECT_NEAR(place().y, pivot.y, 0.01);

    // A button whose release went elsewhere does not keep the others from theirs.
    frame.setFocus();
    QTest::mousePress(&frame, Qt::LeftButton, {}, {100, 100});
    frame.clearFocus();
    QTest::mouseMove(&frame, {160, 160});
    EXPECT_FALSE(turned(before));
    QTest::mousePress(&frame, Qt::RightButton, {}, {100, 100});
    QTest::mouseMove(&frame, {140, 120});
    EXPECT_NEAR(place().x, pivot.x + 40.0, 1.0);
    EXPECT_FALSE(turned(before));
}

} // namespace

} // namespace KOVA::Quorvex::viewer
