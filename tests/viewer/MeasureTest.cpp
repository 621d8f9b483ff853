// Where a click meets a mesh, and what becomes of the distances between such points.

#include <array>
#include <cmath>
#include <fstream>
#include <random>
#include <vector>

#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QLocale>
#include <QStatusBar>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/mesh/MeshAttribute.h>
#include <Quorvex/mesh/MeshData.h>

#include <viewer/MeshPart.h>
#include <viewer/NumberText.h>
#include <viewer/SceneTree.h>

#include "ViewerHost.h"

namespace KOVA::Quorvex::viewer {

namespace {

// Along -z, from z = 10.
Beam BeamAt(double x, double y, double radius, double growth) {
    return {{{x, y, 10.0}, {0.0, 0.0, -1.0}}, radius, growth};
}

TEST(MeetTest, EdgesAndVerticesAreMetThroughSurfaces) {
    // A large triangle in front, and one behind it with an edge along x = 0 that goes away from the eye.
    std::vector<Vector3f> corners{{-9.0F, -9.0F, 2.0F}, {9.0F, -9.0F, 2.0F}, {0.0F, 9.0F, 2.0F},
                                  {0.0F, -2.0F, 1.0F},  {0.0F, 2.0F, -3.0F}, {3.0F, 0.0F, -1.0F}};
    const MeshData data(6, corners.data(), nullptr, static_cast<ColorRGB*>(nullptr), 4);
    for (const double y : {-1.9, -0.5, 0.0, 1.0, 1.95}) {
        const double depth = 10.0 - (-1.0 - y); // of the edge at that y
        EXPECT_NEAR(NearestEdge(data, BeamAt(0.001, y, 0.01, 0.0)).value_or(0.0), depth, 0.01) << y;
        EXPECT_NEAR(MeetTriangles(data, BeamAt(0.001, y, 0.01, 0.0).ray).value_or(0.0), 8.0, 1e-9);
        // From an eye the ray through that point of the edge.
        const Vector3d way = Vector3d(0.0, y, -1.0 - y) - Vector3d(0.3, 0.2, 10.0);
        const Ray ray{{0.3, 0.2, 10.0}, way * (1.0 / Length(way))};
        EXPECT_NEAR(NearestEdge(data, {ray, 0.0, 1e-3}).value_or(0.0), Length(way), 0.02) << y;
    }
    EXPECT_NEAR(NearestVertex(data, BeamAt(0.05, 1.9, 0.2, 0.0)).value_or(0.0), 13.0, 1e-9);
    EXPECT_NEAR(NearestVertex(data, BeamAt(0.5, 8.0, 0.0, 1e-4)).value_or(0.0), 8.0, 1e-9); // none inside: the closest
    EXPECT_FALSE(NearestVertex(data, {{{0.0, 0.0, 3.0}, {0.0, 0.0, 1.0}}, 0.1, 0.0}));      // all behind
    EXPECT_FALSE(NearestEdge(data, {{{0.0, 0.0, 3.0}, {0.0, 0.0, 1.0}}, 0.1, 0.0}));
    EXPECT_NEAR(NearestEdge(data, {{{0.0, 0.5, 0.0}, {0.0, 0.0, -1.0}}, 0.0, 1e-3}).value_or(0.0), 1.5,
                0.01); // one end of the edge is behind
    // A rib that the middle of the pixel misses.
    std::vector<Vector3f> rib{{-50.0F, 0.0F, 0.0F}, {50.0F, 0.0F, 4.0F}, {50.0F, 0.001F, 4.0F}};
    const MeshData thin(3, rib.data(), nullptr, static_cast<ColorRGB*>(nullptr), 4);
    EXPECT_FALSE(MeetTriangles(thin, BeamAt(0.0, 0.01, 0.02, 0.0).ray));
    EXPECT_NEAR(NearestEdge(thin, BeamAt(0.0, 0.01, 0.02, 0.0)).value_or(0.0), 8.0, 1e-3);
}

TEST(NumberTextTest, ShowsMicrometresWithoutExponents) {
    QLocale::setDefault(QLocale::c());
    EXPECT_EQ(NumberText(1234.5674, 1500.0), QStringLiteral("1234.567"));
    EXPECT_EQ(NumberText(4512350.125, 1500.0), QStringLiteral("4512350.125"));
    EXPECT_EQ(NumberText(1234567.4, 1e6), QStringLiteral("1234567"));
    EXPECT_EQ(NumberText(-0.0000001, 1.0), QStringLiteral("0"));
    EXPECT_EQ(NumberText(110.0, 0.0), QStringLiteral("110"));
    EXPECT_EQ(NumberText(1.5e-9, 2e-9), QStringLiteral("1.5e-09"));
    EXPECT_EQ(NumberText(DecimalOf(150.1F), 100.0), QStringLiteral("150.1"));
    EXPECT_EQ(PlaceText({1.5, 2.0, -3.25}, 10.0), QStringLiteral("1.5, 2, -3.25"));
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(PlaceText({1234.5, 2.0, -3.25}, 10.0), QStringLiteral("1234,5; 2; -3,25"));
    QLocale::setDefault(QLocale::system());
}

// The sides of a box, two triangles each.
QString WriteBox(const QTemporaryDir& folder, const QString& name, const std::array<double, 3>& low,
                 const std::array<double, 3>& high) {
    QString path = folder.filePath(name);
    std::ofstream file(path.toStdString());
    file.precision(12);
    file << "solid box\n";
    const auto corner = [&](unsigned int i) {
        file << "vertex " << ((i & 1U) != 0 ? high : low)[0] << ' ' << ((i & 2U) != 0 ? high : low)[1] << ' '
             << ((i & 4U) != 0 ? high : low)[2] << '\n';
    };
    constexpr std::array<std::array<unsigned int, 4>, 6> sides{
        {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}}};
    for (const auto& side : sides) {
        for (const std::array<std::size_t, 3>& triangle : {std::array<std::size_t, 3>{0, 1, 2}, {0, 2, 3}}) {
            file << "facet normal 0 0 0\nouter loop\n";
            for (const std::size_t i : triangle) {
                corner(side[i]);
            }
            file << "endloop\nendfacet\n";
        }
    }
    file << "endsolid box\n";
    return path;
}

class MeasureTest : public testing::Test {
protected:
    FrameGrid& Frames() { return host.Window().GetFrames(); }
    SceneModel& Scene() { return host.Window().GetScene(); }
    ScenePart& Part(std::size_t i) { return *Scene().GetParts()[i]; }
    const std::vector<Measurements::Distance>& Distances() { return Frames().GetMeasurements().GetDistances(); }

    // Where a point of the part's file is seen, in Qt's pixels.
    QPointF PlaceOf(const ScenePart& part, const Vector3d& point) {
        const auto pixel = host.Frame().Rig().PixelOf(part.InScene(point));
        EXPECT_TRUE(pixel);
        return QPointF(pixel->x, pixel->y) / host.Frame().devicePixelRatioF();
    }

    void Click(const ScenePart& part, const Vector3d& point) {
        const QPointF place = PlaceOf(part, point);
        QTest::mouseClick(&host.Frame(), Qt::LeftButton, {},
                          {static_cast<int>(std::floor(place.x())), static_cast<int>(std::floor(place.y()))});
    }

    void Remove(std::size_t i) {
        host.Window().GetSceneTree().Select(&Part(i));
        auto* const tree = host.Window().GetSceneTree().findChild<QTreeWidget*>();
        tree->setFocus();
        QTest::keyClick(tree, Qt::Key_Delete);
        ASSERT_TRUE(host.Settle());
    }

    // Rows and columns of the frame that hold pixels in the colour of marks.
    QRect Marks() {
        EXPECT_TRUE(host.Settle());
        const QImage picture = ViewerHost::Picture(host.Frame());
        QRect rectangle;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor color = picture.pixelColor(x, y);
                if (color.red() > 200 && color.green() > 180 && color.blue() < 100) {
                    rectangle |= QRect(x, y, 1, 1);
                }
            }
        }
        return rectangle;
    }

    bool StatusShows(const QString& text) {
        const QList<QLabel*> labels = host.Window().statusBar()->findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(),
                           [&](const QLabel* label) { return label->text().contains(text); });
    }

    ViewerHost host;
    QTemporaryDir folder;
};

TEST_F(MeasureTest, DistancesAndCamerasStayWhenTheUnitChanges) {
    const QString first = WriteBox(folder, QStringLiteral("first.stl"), {0.0, 0.0, 0.0}, {300.0, 40.0, 30.0});
    const QString second = WriteBox(folder, QStringLiteral("second.stl"), {0.0, 50.0, 0.0}, {100.0, 110.0, 40.0});
    ASSERT_TRUE(host.Open({first, second}));
    QTest::keyClick(&host.Window(), Qt::Key_1);
    QTest::keyClick(&host.Window(), Qt::Key_M);
    const auto measure = [&](const ScenePart& part) { // on the upper side of the second one
        Click(part, {10.0, 60.0, 40.0});
        Click(part, {80.0, 100.0, 40.0});
    };
    measure(Part(1));
    ASSERT_EQ(Distances().size(), 1U);
    const QString label = Distances().front().label;
    EXPECT_NEAR(label.toDouble(), std::hypot(70.0, 40.0), 0.8);
    Click(Part(0), {10.0, 10.0, 30.0});
    Click(Part(1), {10.0, 60.0, 40.0});
    EXPECT_EQ(Distances().size(), 2U);
    const auto seen = [&](const ScenePart& part) {
        return std::array{PlaceOf(part, {10.0, 60.0, 40.0}), PlaceOf(part, {80.0, 100.0, 0.0})};
    };
    const auto before = seen(Part(1));
    const QRect marks = Marks();

    Remove(0); // the unit was its
    ASSERT_EQ(Scene().GetParts().size(), 1U);
    ASSERT_EQ(Distances().size(), 1U);
    EXPECT_EQ(Distances().front().label, label);
    const auto same = [&](const ScenePart& part) {
        const auto now = seen(part);
        return (now[0] - before[0]).manhattanLength() < 0.1 && (now[1] - before[1]).manhattanLength() < 0.1;
    };
    EXPECT_TRUE(same(Part(0)));
    const QRect left = Marks();
    EXPECT_TRUE(marks.contains(left) && left.width() > 30);

    // A volume brings its voxels as the unit; nothing of the mesh moves.
    ASSERT_TRUE(host.Open({c_casting}));
    ASSERT_EQ(Scene().GetParts().size(), 2U);
    EXPECT_EQ(Distances().size(), 1U);
    EXPECT_EQ(Distances().front().label, label);
    EXPECT_TRUE(same(Part(0)));
    Remove(1);
    EXPECT_EQ(Distances().size(), 1U);
    EXPECT_TRUE(same(Part(0)));

    // Parts without marks: hidden ones, and those that are gone.
    Part(0).Attribute().Hide();
    Scene().Apply(&Part(0));
    EXPECT_TRUE(Marks().isEmpty());
    Part(0).Attribute().Show();
    Scene().Apply(&Part(0));
    EXPECT_EQ(Marks(), left);
    Remove(0);
    EXPECT_TRUE(Distances().empty());
    EXPECT_TRUE(Marks().isEmpty());
    EXPECT_EQ(ViewerHost::GlErrors(), 0);
}

TEST_F(MeasureTest, AnOpenEndGoesWithItsPart) {
    ASSERT_TRUE(host.Open({WriteBox(folder, QStringLiteral("a%2 %1.stl"), {0.0, 0.0, 0.0}, {10.0, 10.0, 10.0}),
                           WriteBox(folder, QStringLiteral("other.stl"), {20.0, 0.0, 0.0}, {30.0, 10.0, 10.0})}));
    QTest::keyClick(&host.Window(), Qt::Key_1);
    Click(Part(0), {5.0, 5.0, 10.0});
    EXPECT_TRUE(StatusShows(QStringLiteral("a%2 %1.stl at ")));
    QTest::keyClick(&host.Window(), Qt::Key_M);
    for (const bool hide : {true, false}) {
        Click(Part(0), {5.0, 5.0, 10.0});
        ASSERT_TRUE(Frames().GetMeasurements().GetOpenEnd());
        EXPECT_TRUE(StatusShows(QStringLiteral("second point")));
        EXPECT_FALSE(Marks().isEmpty());
        if (hide) {
            Part(0).Attribute().Hide();
            Scene().Apply(&Part(0));
        } else {
            Remove(0);
        }
        EXPECT_FALSE(Frames().GetMeasurements().GetOpenEnd());
        EXPECT_TRUE(StatusShows(QStringLiteral("first point")));
        EXPECT_TRUE(Marks().isEmpty());
        Part(0).Attribute().Show();
        Scene().Apply(&Part(0));
    }
}

// Of a box that is seen through: its far edges are behind its near side.
TEST_F(MeasureTest, ClicksOnEdgesAndPointsMeetThem) {
    ASSERT_TRUE(
        host.Open({WriteBox(folder, QStringLiteral("far.stl"), {4512350.0, 0.0, 0.0}, {4512450.0, 60.0, 80.0})}));
    ScenePart& part = Part(0);
    QTest::keyClick(&host.Window(), Qt::Key_1); // the far side is seen inside the near one
    for (const auto mode : {MeshAttribute::RENDER_WIREFRAME, MeshAttribute::RENDER_POINTS}) {
        dynamic_cast<MeshAttribute&>(part.Attribute()).SetRenderMode(mode);
        Scene().Apply(&part);
        ASSERT_TRUE(host.Settle());
        QTest::keyClick(&host.Window(), Qt::Key_M);
        const double inset = mode == MeshAttribute::RENDER_WIREFRAME ? 20.0 : 0.0;
        Click(part, {4512350.0 + inset, 0.0, 0.0});
        Click(part, {4512450.0 - inset, 0.0, 0.0});
        QTest::keyClick(&host.Window(), Qt::Key_M);
        ASSERT_FALSE(Distances().empty()) << mode;
        EXPECT_NEAR(Distances().back().label.toDouble(), 100.0 - 2.0 * inset, 1.0) << mode;
        EXPECT_NEAR(Distances().back().from.place.z, 0.0, 0.1) << mode;
        EXPECT_NEAR(Distances().back().to.place.z, 0.0, 0.1) << mode;
    }
    const std::vector<ScenePart::Fact> facts = part.Describe();
    EXPECT_EQ(facts[2].value, QLocale().decimalPoint() == QLatin1String(",") ? QStringLiteral("4512350; 0; 0")
                                                                             : QStringLiteral("4512350, 0, 0"));
}

// Also run with two pixels of the screen for one of Qt's.
TEST_F(MeasureTest, LabelsAreAsLargeAsTheInterfacesText) {
    for (auto* dock : host.Window().findChildren<QDockWidget*>()) {
        dock->hide();
    }
    host.Window().resize(500, 450);
    ASSERT_TRUE(host.Open({WriteBox(folder, QStringLiteral("box.stl"), {0.0, 0.0, 0.0}, {100.0, 60.0, 80.0})}));
    QTest::keyClick(&host.Window(), Qt::Key_1);
    QTest::keyClick(&host.Window(), Qt::Key_M);
    const double ratio = host.Window().devicePixelRatioF();
    for (const bool orthogonal : {false, true}) {
        if (orthogonal) {
            QTest::keyClick(&host.Window(), Qt::Key_P);
        }
        Click(Part(0), {20.0, 30.0, 80.0});
        Click(Part(0), {80.0, 30.0, 80.0});
        const QRect marks = Marks(); // a horizontal line and the number above it
        const QImage picture = ViewerHost::Picture(host.Frame());
        ViewerHost::Keep(picture, "label.png");
        EXPECT_GT(marks.height(), 12 * ratio);
        EXPECT_LT(marks.height(), 30 * ratio);
        int thickness = 0; // of the line, beside the number: yellow on grey, with borders that are in between
        for (int y = marks.top() - 2; y <= marks.bottom() + 2; ++y) {
            const QColor color = picture.pixelColor(marks.left() + marks.width() / 8, y);
            thickness += color.red() - color.blue() > 50 ? 1 : 0;
        }
        EXPECT_GE(thickness, ratio);
        EXPECT_LE(thickness, ratio + 1);
        QTest::keyClick(&host.Window(), Qt::Key_M, Qt::ControlModifier);
    }
}

TEST_F(MeasureTest, LabelsAreMadeOnce) {
    ASSERT_TRUE(host.Open({WriteBox(folder, QStringLiteral("box.stl"), {0.0, 0.0, 0.0}, {100.0, 60.0, 80.0})}));
    Measurements measurements;
    for (const Vector3d& place : {Vector3d(0.0, 0.0, 0.0), Vector3d(100.0, 0.0, 0.0), Vector3d(0.0, 60.0, 80.0)}) {
        measurements.Take({&Part(0), place}, Scene().GetUnit().unit);
    }
    CameraRig rig = host.Frame().Rig();
    RenderFrame frame;
    MeasurementMarks marks(frame);
    marks.Place(measurements, rig, 1.0);
    OverlayData& overlay = marks.GetOverlay();
    ASSERT_EQ(overlay.GetLines().size(), 1U);
    ASSERT_EQ(overlay.GetPoints().size(), 3U);
    EXPECT_EQ(overlay.GetLines().front().TextRef().GetText(), "100\n ");
    overlay.AddPoint({}, {}, ""); // stays until all is made anew
    const Vector3f place = overlay.GetPoints().front().GetPosition();
    const float size = overlay.GetLines().front().TextRef().GetSizeX();
    rig.Turn(100, 100, 130, 110);
    marks.Place(measurements, rig, 2.0);
    EXPECT_EQ(overlay.GetPoints().size(), 4U);
    EXPECT_GT((overlay.GetPoints().front().GetPosition() - place).Length(), 0.0F);
    rig.Turn(130, 110, 100, 100);
    marks.Place(measurements, rig, 2.0);
    EXPECT_NEAR(overlay.GetLines().front().TextRef().GetSizeX(), 2.0F * size, 0.01F * size);
    measurements.ForgetOpenEnd();
    marks.Place(measurements, rig, 2.0);
    EXPECT_EQ(overlay.GetPoints().size(), 2U);
}

} // namespace

} // namespace KOVA::Quorvex::viewer
