#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <Quorvex/core/Colors.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/mesh/MeshAttribute.h>

#include "Background.h"
#include "Camera.h"
#include "Marks.h"
#include "VolumeLook.h"

// What `quorvex render` and `quorvex turntable` are told, and how the texts of the command line become numbers.

namespace KOVA::Quorvex::cli {

enum class PictureFormat { Bmp, Png };

struct PictureSize {
    unsigned int width = 800;
    unsigned int height = 600;
};

constexpr unsigned int c_maxPictureSize = 16384; // pixels each way

struct RenderOptions {
    std::vector<std::string> files;
    std::string output;
    PictureSize size;
    Side side = Side::Iso;
    Projection projection = Projection::Perspective;
    double fovDegrees = 30.0;
    std::optional<double> antiAliasing; // else by what is drawn
    Background background{};
    bool backgroundGiven = false;
    MeshAttribute::RenderMode meshMode = MeshAttribute::RENDER_SURFACE;
    bool boundingBox = false;
    VolumeOptions volumes;
    StereoMode stereo = STEREO_NONE;
    bool axes = false;
    bool grid = false;
    Marks marks;
    std::optional<Position> turnAxis; // about which the scene will turn in front of the camera
};

// The parsers throw std::invalid_argument with a text that says what is wrong with the value.

// "800x600", each from 1 to c_maxPictureSize.
PictureSize ParseSize(std::string_view text);

// A number from low to high. Not a number, an infinity and trailing characters are refused.
double ParseNumber(std::string_view text, double low, double high);

// "RRGGBB" for one colour all over, "RRGGBB,RRGGBB" for top and bottom, in hexadecimal digits.
Background ParseBackground(std::string_view text);

Side ParseSide(std::string_view text);
Projection ParseProjection(std::string_view text);
MeshAttribute::RenderMode ParseMeshMode(std::string_view text);
VolumeAttribute::RenderMode ParseVolumeMode(std::string_view text);

// "A,B,C,D" with A, B and C not all zero.
Vector4d ParsePlane(std::string_view text);

// "LO,HI", whole numbers with 0 <= LO <= HI <= 255.
IntensityWindow ParseWindow(std::string_view text);

// "X,Y,Z", not all zero; of length 1 afterwards.
Position ParseDirection(std::string_view text);

// The code of a codec, up to four characters, as the library takes it; missing ones are blanks.
unsigned long ParseCodec(std::string_view text);

// "0" to "5".
StereoMode ParseStereo(std::string_view text);

// By the ending of the name, in any case.
PictureFormat FormatOf(std::string_view path);

// The words that the parser above takes, as "front|back|..." for help texts.
std::string SideNames();
std::string ProjectionNames();
std::string MeshModeNames();
std::string VolumeModeNames();

// Options that are right on their own but not together; throw std::invalid_argument. For a picture, and for a video.
void CheckPicture(const RenderOptions& options);
void CheckVideo(const RenderOptions& options);

} // namespace KOVA::Quorvex::cli
