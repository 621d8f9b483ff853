#include "Studio.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <optional>

#include <fmt/format.h>

#include <Quorvex/core/Facade.h>

#include "Failure.h"
#include "Lighting.h"
#include "PartLook.h"
#include "StereoView.h"
#include "VolumeLook.h"

namespace KOVA::Quorvex::cli {

namespace {

// On each side of the box, so that it does not hide the numbers of the grid.
constexpr double c_roomForNumbers = 0.05;

// Marks stand out from parts and from backgrounds of either kind.
constexpr ColorRGB c_markOnDark{1.0F, 0.85F, 0.2F};
constexpr ColorRGB c_markOnLight{0.7F, 0.0F, 0.1F};

// The label of a line lies at its middle. Blank lines below bring the text above the line.
std::string AboveTheMiddle(const std::string& label) {
    const auto lines = static_cast<std::size_t>(std::count(label.begin(), label.end(), '\n')) + 1;
    std::string raised = label;
    for (std::size_t i = 0; i < lines && !label.empty(); ++i) {
        raised += "\n ";
    }
    return raised;
}

// Whether parts hide what lies behind them.
bool IsOpaque(MeshAttribute::RenderMode mode) {
    return mode != MeshAttribute::RENDER_WIREFRAME && mode != MeshAttribute::RENDER_POINTS &&
           mode != MeshAttribute::RENDER_XRAY;
}

// Lines and points are as wide as they would be without anti-aliasing.
float LineWidth(const RenderOptions& options, double antiAliasing) {
    const double points = options.meshMode == MeshAttribute::RENDER_POINTS ? 2.0 : 1.0;
    return static_cast<float>(std::max(1.0, points * antiAliasing));
}

Background BackgroundOf(const RenderOptions& options, bool volumes) {
    if (options.backgroundGiven) {
        return options.background;
    }
    return SuitableBackground(options.meshMode, volumes ? std::optional(options.volumes.mode) : std::nullopt);
}

double Brightness(const Background& background) {
    return static_cast<double>(std::max({background.top.r, background.top.g, background.top.b, background.bottom.r,
                                         background.bottom.g, background.bottom.b}));
}

} // namespace

Studio::Studio(const OffscreenSession& session, const Scene& scene, const RenderOptions& options)
    : m_options(options), m_hasVolumes(!scene.volumes.empty()), m_box(scene.box), m_unit(scene.unit),
      m_middle(scene.middle), m_marks(scene.marks), m_overlay(&m_frame.Add(Overlay())->GetData()) {
    if (!m_frame.Init(session.Window(), &m_view)) {
        throw Failure("the off-screen window cannot be drawn to");
    }
    if (!Quorvex::CheckQXExtension(1)) {
        throw Failure("this OpenGL driver cannot draw pictures off screen (GL_EXT_framebuffer_object is missing)");
    }
    m_frame.SetScreenSize(options.size.width, options.size.height); // for the size of labels
    m_frame.SetLight({0.0F, 0.0F, 1.0F});                           // from the viewer, in right-handed views
    const Background background = BackgroundOf(options, m_hasVolumes);
    m_frame.SetBackgroundColor(background.top, background.bottom);
    SetAntiAliasing(options.size, AntiAliasing());

    for (const Mesh& source : scene.meshes) {
        Mesh* mesh = m_frame.Add(source);
        MeshAttribute& attribute = mesh->GetAttribute();
        attribute.SetRenderMode(options.meshMode);
        attribute.SetLineWidth(LineWidth(options, AntiAliasing()));
        attribute.SetShininess(c_shininess);
        attribute.SetSpecularity(c_specularity);
        if (options.boundingBox) {
            attribute.ShowBoundingBox();
            attribute.SetBoundingBoxColor(c_boxColor);
        }
        OrientNormals(mesh->GetData());
        m_meshes.push_back(mesh);
    }
    AddVolumes(scene);
    if (options.boundingBox) {
        m_box = m_box.Enlarged(static_cast<double>(RenderObjectAttribute::GetBoundingBoxRescale()));
    }
    if (options.grid) {
        m_box = m_box.Enlarged(c_roomForNumbers);
    }
    SetScale(1.0);
    LightLinesForView();
    if (options.meshMode == MeshAttribute::RENDER_XRAY && !m_hasVolumes) { // which have one size only
        ExposeXRay();
    }
    m_frame.SetCoordAxesEnabled(options.axes);
    m_frame.ShowGrid(options.grid);
    if (options.stereo != STEREO_NONE) {
        SetUpStereo();
    }
}

// Uploads the meshes, with the normals that lines and points need to be seen from where the viewer is now.
void Studio::LightLinesForView() {
    const bool first = m_normals.empty();
    for (std::size_t i = 0; i < m_meshes.size(); ++i) {
        MeshData& data = m_meshes[i]->GetData();
        if (ShowsLines(m_options.meshMode)) {
            Vector3f* const normals = data.GetNormalArray();
            if (first) {
                m_normals.emplace_back(normals, normals + (normals != nullptr ? data.GetNumVertices() : 0));
            } else {
                std::copy(m_normals[i].begin(), m_normals[i].end(), normals);
            }
            LightLines(data, m_view);
        } else if (!first) {
            continue;
        }
        data.Update(STORAGE_VBO);
    }
}

void Studio::Turn(unsigned int pictures) {
    const Position& axis = *m_options.turnAxis;
    m_view.RotateWorld({static_cast<float>(axis[0]), static_cast<float>(axis[1]), static_cast<float>(axis[2]),
                        static_cast<float>(2.0 * std::numbers::pi / pictures)});
    PlaceMarks();
    if (ShowsLines(m_options.meshMode)) {
        LightLinesForView();
    }
}

void Studio::Record(const std::string& path, unsigned long codec, unsigned int pictures,
                    const std::function<bool(unsigned int)>& next) {
    struct Session {
        Studio& studio;
        const std::function<bool(unsigned int)>& next;
        bool begun = false;
        bool ended = false;
    } session{*this, next};
    const auto step = [](void* user, unsigned int picture, unsigned int all) {
        auto& s = *static_cast<Session*>(user);
        s.begun = true;
        s.ended = s.ended || !s.next(picture);
        if (s.ended) {
            s.studio.m_frame.AbortRendering();
        } else {
            s.studio.Turn(all);
        }
    };
    m_frame.AVISetCodec(codec);
    if (m_frame.AVIAnimate(path, m_options.size.width, m_options.size.height, pictures, step, &session)) {
        return;
    }
    if (session.ended) {
        throw Failure(fmt::format("interrupted; '{}' was not written", path));
    }
    if (!session.begun) {
        throw Failure(fmt::format("a video of {} x {} pixels cannot be begun with this codec; 'quorvex codecs' lists "
                                  "those there are",
                                  m_options.size.width, m_options.size.height));
    }
    throw Failure(fmt::format("cannot write '{}': the video could not be written in full", path));
}

void Studio::SetUpStereo() {
    CountDepthsAway(m_view);
    m_frame.SetLight({0.0F, 0.0F, -1.0F});
    // The red glass is on the left, so its eye sees what the frame calls the right eye's picture. Interleaved screens
    // give each eye its own.
    const float effect = ComfortableEffect(m_view);
    m_frame.SetStereoEffect(m_options.stereo == STEREO_ANAGLYPH ? effect : -effect);
    if (!m_frame.SetStereoMode(m_options.stereo)) {
        throw Failure("this OpenGL driver cannot draw stereo pictures");
    }
}

void Studio::AddVolumes(const Scene& scene) {
    if (m_hasVolumes && !Quorvex::CheckQXExtension(CAPABILITY_VOLUME)) {
        throw Failure("this OpenGL driver cannot draw volumes (3D textures or shaders are missing)");
    }
    for (const Volume& source : scene.volumes) {
        SetLook(m_options.volumes, source);
        if (m_options.boundingBox) {
            source.GetAttribute().ShowBoundingBox();
            source.GetAttribute().SetColor(c_boxColor);
        }
        source.GetData().Update(STORAGE_VBO);
        m_frame.Add(source);
    }
}

// Surfaces of volumes are smooth by themselves, and what they cost goes with the pixels.
double Studio::AntiAliasing() const {
    return m_options.antiAliasing.value_or(m_hasVolumes ? 1.0 : 2.0);
}

std::vector<unsigned char> Studio::Draw() {
    std::vector<unsigned char> pixels;
    if (!m_frame.RenderToPixels(pixels, m_options.size.width, m_options.size.height)) {
        throw Failure(fmt::format("a picture of {} x {} pixels cannot be drawn on this system", m_options.size.width,
                                  m_options.size.height));
    }
    return pixels;
}

void Studio::DrawToBitmap(const std::string& path) {
    if (!m_frame.RenderToBitmap(path, m_options.size.width, m_options.size.height)) {
        throw Failure(fmt::format("cannot write '{}': the picture could not be written in full", path));
    }
}

// Camera and objects together, so that the picture stays the same: only depths in eye space change.
void Studio::SetScale(double scale) {
    m_scale = scale;
    for (Mesh* mesh : m_meshes) {
        Matrix44d& transform = mesh->GetAttribute().GetTransformRef();
        transform.SetIdentity();
        const auto s = static_cast<float>(scale);
        transform.Scale({s, s, s});
    }
    const double aspect = static_cast<double>(m_options.size.width) / static_cast<double>(m_options.size.height);
    Load(FitCamera(m_box.Scaled(scale),
                   {m_options.side, m_options.projection, m_options.fovDegrees, aspect, m_options.turnAxis}),
         m_view);
    PlaceMarks();
    m_frame.SetGridUnit(m_unit / scale, m_middle[0], m_middle[1], m_middle[2]);
}

void Studio::PlaceMarks() {
    const std::vector<Mesh*> none;
    const MarkPlaces places(m_view, IsOpaque(m_options.meshMode) ? m_meshes : none, m_scale,
                            m_options.stereo != STEREO_NONE);
    const Background background = BackgroundOf(m_options, m_hasVolumes);
    const ColorRGB color = Brightness(background) > 0.8 ? c_markOnLight : c_markOnDark;
    const ColorRGBA own(color.r, color.g, color.b);
    m_overlay->Clear();
    m_labelPlaces.clear();
    for (const PointMark& mark : m_marks.points) {
        const bool seen = places.IsSeen(mark.position);
        const Vector3f place = seen ? places.InFront(mark.position) : places.OnSurface(mark.position);
        Point& point = m_overlay->AddPoint(place, color, mark.label);
        point.TextRef().AdjustSize(places.LabelFactor(point.GetPosition()));
    }
    for (const LineMark& mark : m_marks.lines) {
        Point& first = m_overlay->AddPoint(places.OnSurface(mark.ends[0]), color, "");
        Point& second = m_overlay->AddPoint(places.OnSurface(mark.ends[1]), color, "");
        m_overlay->AddLine(first, second, own, "");
        if (!mark.label.empty()) {
            AddLabel(places, mark, m_overlay->AddLine(first, first, own, AboveTheMiddle(mark.label)));
        }
    }
}

// On a line without length, at the middle of the line that it belongs to. What is measured may run through material:
// its label is seen when any of it is.
void Studio::AddLabel(const MarkPlaces& places, const LineMark& mark, Line& label) {
    Position middle{};
    for (std::size_t i = 0; i < middle.size(); ++i) {
        middle[i] = (mark.ends[0][i] + mark.ends[1][i]) / 2.0;
    }
    const bool seen = places.IsSeen(middle) || places.IsSeen(mark.ends[0]) || places.IsSeen(mark.ends[1]);
    Point& place = m_labelPlaces.emplace_back(seen ? places.InFront(middle) : places.OnSurface(middle));
    label.SetPoint0Ptr(&place);
    label.SetPoint1Ptr(&place);
    label.TextRef().AdjustSize(places.LabelFactor(place.GetPosition()));
}

void Studio::SetAntiAliasing(PictureSize size, double factor) {
    // Limited for both directions alike: if only the longer one were cut off, the proportions would change.
    const double longer = std::max(size.width, size.height);
    const double shorter = std::min(size.width, size.height);
    const double limit = MAX_PASS_SIZE / longer;
    // A little more than one pixel for a pixel only blurs.
    const double worthwhile = limit > 1.0 && limit < 1.25 ? 1.0 : limit;
    m_frame.SetAntiAliasing(static_cast<float>(std::max(std::min(factor, worthwhile), 1.0 / shorter)));
}

// Every surface that faces the viewer adds a quarter of its depth in eye space to the grey level. How many surfaces lie
// behind each other differs from part to part, so a small underexposed picture is measured first.
void Studio::ExposeXRay() {
    constexpr double underexposed = 0.04; // of the scale at which the scene's radius is 1
    constexpr double wanted = 0.92;       // of what the background leaves
    constexpr double longest = 512.0;     // pixels of the small picture

    SetScale(underexposed);
    m_frame.SetBackgroundColor(ColorRGBA{0.0F, 0.0F, 0.0F});
    const PictureSize& full = m_options.size;
    const double factor = std::min(1.0, longest / std::max(full.width, full.height));
    const auto reduced = [factor](unsigned int pixels) {
        return std::max(1U, static_cast<unsigned int>(std::lround(pixels * factor)));
    };
    const PictureSize sample{reduced(full.width), reduced(full.height)};
    SetAntiAliasing(sample, 1.0);
    std::vector<unsigned char> pixels;
    const bool drawn = m_frame.RenderToPixels(pixels, sample.width, sample.height);

    const Background background = BackgroundOf(m_options, m_hasVolumes);
    m_frame.SetBackgroundColor(background.top, background.bottom);
    SetAntiAliasing(full, AntiAliasing());
    const double level = drawn ? BrightLevel(pixels) : 0.0;
    SetScale(ExposedScale(underexposed, level, wanted * (1.0 - Brightness(background))));
}

double ExposedScale(double scale, double measured, double wanted) {
    // A white background leaves nothing to show; something is drawn all the same.
    return measured > 0.0 ? scale * std::max(wanted, 0.1) / measured : 1.0;
}

double BrightLevel(const std::vector<unsigned char>& rgb) {
    std::array<std::uint64_t, 256> counts{};
    std::uint64_t lit = 0;
    for (std::size_t i = 0; i < rgb.size(); i += 3) {
        ++counts[rgb[i]];
        lit += rgb[i] != 0 ? 1U : 0U;
    }
    std::uint64_t above = 0;
    for (std::size_t level = 255; level > 0; --level) {
        above += counts[level];
        if (above * 100 > lit) {
            return static_cast<double>(level) / 255.0;
        }
    }
    return 0.0;
}

} // namespace KOVA::Quorvex::cli
