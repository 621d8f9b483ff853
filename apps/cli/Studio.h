#pragma once

#include <array>
#include <functional>
#include <list>
#include <vector>

#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/view/View.h>

#include "MarkPlaces.h"
#include "OffscreenSession.h"
#include "RenderOptions.h"
#include "Scene.h"

namespace KOVA::Quorvex::cli {

// A scene in front of a camera, ready to be drawn to pictures.
class Studio {
public:
    // Uploads the scene. Throws Failure when the frame cannot be set up.
    Studio(const OffscreenSession& session, const Scene& scene, const RenderOptions& options);

    // Rows from the top, 3 bytes (R, G, B) a pixel. Throws Failure when the picture cannot be drawn.
    std::vector<unsigned char> Draw();

    // The same as a BMP file.
    void DrawToBitmap(const std::string& path);

    // Records a whole turn about the options' axis as an AVI file: the camera turns before each picture, so that the
    // last one shows what Draw does. next is called with the number of each picture, from 0, before it is drawn; when
    // it answers false the recording ends. Throws Failure when there is no such codec, when the file cannot be written
    // in full, and when the recording was ended; there is no file then.
    void Record(const std::string& path, unsigned long codec, unsigned int pictures,
                const std::function<bool(unsigned int)>& next);

private:
    void AddVolumes(const Scene& scene);
    double AntiAliasing() const;
    void SetScale(double scale);
    void LightLinesForView();
    void Turn(unsigned int pictures);
    void PlaceMarks();
    void AddLabel(const MarkPlaces& places, const LineMark& mark, Line& label);
    void SetAntiAliasing(PictureSize size, double factor);
    void ExposeXRay();
    void SetUpStereo();

    const RenderOptions& m_options;
    bool m_hasVolumes;
    Box m_box;                      // what has to be in the picture
    double m_unit;                  // of the files for 1 of the scene
    std::array<double, 3> m_middle; // in the files' coordinates
    View m_view;
    RenderFrame m_frame;
    double m_scale = 1.0;
    std::vector<Mesh*> m_meshes;                  // in the frame
    std::vector<std::vector<Vector3f>> m_normals; // theirs, when they are drawn as lines, which have others
    const Marks& m_marks;
    OverlayData* m_overlay;         // in the frame
    std::list<Point> m_labelPlaces; // of lines; the overlay would draw them
};

// The factor by which an X-ray scene is enlarged so that its brightest spots come out at the wanted level, when they
// were measured at another level and factor. Grey levels from 0 to 1.
double ExposedScale(double scale, double measured, double wanted);

// The grey level (0..1) that is exceeded by no more than one in a hundred of the pixels that are not black; 0 for a
// black picture.
double BrightLevel(const std::vector<unsigned char>& rgb);

} // namespace KOVA::Quorvex::cli
