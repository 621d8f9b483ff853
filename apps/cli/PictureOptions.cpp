#include "PictureOptions.h"

#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "ParsedOption.h"
#include "RenderOptions.h"

namespace KOVA::Quorvex::cli {

namespace {

void AddVolumeOptions(CLI::App& command, VolumeOptions& o) {
    AddParsed(command, "--volume-mode", VolumeModeNames(), "How volumes are drawn (default shaded)",
              [&o](const std::string& text) { o.mode = ParseVolumeMode(text); });
    command
        .add_option("--transfer", o.transferFile,
                    "Colours and opacities of the 256 intensities: lines 'r g b a', each 0 to 1. The default is made "
                    "from the histogram: air transparent, material visible")
        ->type_name("FILE");
    AddParsed(command, "--intensity-window", "LO,HI", "Show the intensities from LO to HI (0 to 255) and nothing else",
              [&o](const std::string& text) { o.window = ParseWindow(text); })
        ->excludes("--transfer");
    AddParsed(command, "--samples", "F", "Slices for half a voxel (default 2)",
              [&o](const std::string& text) { o.samples = ParseNumber(text, 0.01, 64.0); });
    const auto addPlane = [](const char* name, std::vector<Vector4d>& planes, const std::string& text) {
        if (planes.size() == VolumeAttribute::userPlanes) {
            throw std::invalid_argument(fmt::format("{} can be given {} times", name, VolumeAttribute::userPlanes));
        }
        planes.push_back(ParsePlane(text));
    };
    AddParsed(command, "--clip", "A,B,C,D", "Cut away where A x + B y + C z + D is negative; up to 6 times",
              [&o, addPlane](const std::string& text) { addPlane("--clip", o.clipPlanes, text); })
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->trigger_on_parse();
    AddParsed(command, "--slice", "A,B,C,D",
              "Show the voxels on the plane A x + B y + C z + D = 0 in grey, not clipped; up to 6 times",
              [&o, addPlane](const std::string& text) { addPlane("--slice", o.slices, text); })
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->trigger_on_parse();
}

} // namespace

void AddPictureOptions(CLI::App& command, RenderOptions& o) {
    command
        .add_option(
            "FILE", o.files,
            "STL files (surfaces) and REK files (volumes), all in one scene, each surface in a colour of its own")
        ->required()
        ->type_name("");
    AddParsed(command, "--size", "WxH", "Width and height in pixels (default 800x600)",
              [&o](const std::string& text) { o.size = ParseSize(text); });
    AddParsed(command, "--view", SideNames(), "Where the viewer stands (default iso)",
              [&o](const std::string& text) { o.side = ParseSide(text); });
    AddParsed(command, "--projection", ProjectionNames(), "Default perspective",
              [&o](const std::string& text) { o.projection = ParseProjection(text); });
    AddParsed(command, "--fov", "DEG", "Opening angle of the perspective across the picture's width (default 30)",
              [&o](const std::string& text) { o.fovDegrees = ParseNumber(text, 1.0, 150.0); });
    AddParsed(command, "--antialias", "F",
              "Pixels drawn for a pixel of the picture, each way, up to 4096 in all (default 2; 1 with volumes)",
              [&o](const std::string& text) { o.antiAliasing = ParseNumber(text, 1.0, 8.0); });
    AddParsed(command, "--background", "RRGGBB[,RRGGBB]", "One colour, or those of the upper and the lower edge",
              [&o](const std::string& text) {
                  o.background = ParseBackground(text);
                  o.backgroundGiven = true;
              });
    AddParsed(command, "--mesh-mode", MeshModeNames(), "How surfaces are drawn (default surface)",
              [&o](const std::string& text) { o.meshMode = ParseMeshMode(text); });
    command.add_flag("--bounding-box", o.boundingBox, "Mark the box of each file");
    command.add_flag("--axes", o.axes, "Show where x (red), y (green) and z (blue) point, in the lower left corner");
    AddParsed(command, "--stereo", "N",
              "For two eyes: 1 red and cyan (red glass on the left); 2, 3 interleaved rows, the right eye's in the "
              "lowest; 4, 5 interleaved columns, the left eye's in the first or in the second (default 0, one eye)",
              [&o](const std::string& text) { o.stereo = ParseStereo(text); });
    AddParsedMany(command, "--point", "X,Y,Z[,LABEL]", "Mark a point, with a label above it; may be repeated",
                  [&o](const std::string& text) { o.marks.points.push_back(ParsePointMark(text)); });
    AddParsedMany(command, "--line", "X1,Y1,Z1,X2,Y2,Z2[,LABEL]",
                  "Draw a line between two points, with a label at its middle; may be repeated",
                  [&o](const std::string& text) { o.marks.lines.push_back(ParseLineMark(text)); });
    AddVolumeOptions(command, o.volumes);
}

const char* PictureHelp() {
    return "Views are right-handed: front looks from +z with x to the right and y up, right from +x, top from\n"
           "+y with z down, iso from (1, 1, 1). The scene's box fills the picture up to a margin of 5 %.\n"
           "A volume is centred on the origin, its longest axis from -1 to 1; planes are in these coordinates. The\n"
           "coordinates of surfaces, points and lines beside a volume are taken for its voxels; without a volume\n"
           "points and lines are in the coordinates of the files. A label's lines are 20 pixels high, its letters\n"
           "14, in pictures of every size; \\n in a label begins a new line.\n";
}

} // namespace KOVA::Quorvex::cli
