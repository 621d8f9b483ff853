#include <memory>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "Commands.h"
#include "OffscreenSession.h"
#include "ParsedOption.h"
#include "PictureFile.h"
#include "ProgressBar.h"
#include "RenderOptions.h"
#include "Scene.h"
#include "Studio.h"

namespace KOVA::Quorvex::cli {

namespace {

void Render(const RenderOptions& options) {
    CheckWritable(options.output);
    ProgressBar progress;
    const OffscreenSession session;
    const Scene scene = LoadScene(options.files, options.marks, progress);
    progress.Show(0.9, "drawing");
    Studio studio(session, scene, options);
    if (FormatOf(options.output) == PictureFormat::Bmp) {
        studio.DrawToBitmap(options.output);
    } else {
        WritePng(options.output, options.size, studio.Draw());
    }
}

} // namespace

void AddRenderCommand(CLI::App& program) {
    CLI::App* command = program.add_subcommand("render", "Draw STL files to a picture");
    const auto options = std::make_shared<RenderOptions>();
    RenderOptions& o = *options;

    command->add_option("FILE", o.files, "STL files, all in one scene, each in a colour of its own")
        ->required()
        ->type_name("");
    command->add_option("-o,--output", o.output, "The picture; its ending, .bmp or .png, says of which kind")
        ->required()
        ->type_name("OUT");
    AddParsed(*command, "--size", "WxH", "Width and height in pixels (default 800x600)",
              [&o](const std::string& text) { o.size = ParseSize(text); });
    AddParsed(*command, "--view", SideNames(), "Where the viewer stands (default iso)",
              [&o](const std::string& text) { o.side = ParseSide(text); });
    AddParsed(*command, "--projection", ProjectionNames(), "Default perspective",
              [&o](const std::string& text) { o.projection = ParseProjection(text); });
    AddParsed(*command, "--fov", "DEG", "Opening angle of the perspective across the picture's width (default 30)",
              [&o](const std::string& text) { o.fovDegrees = ParseNumber(text, 1.0, 150.0); });
    AddParsed(*command, "--antialias", "F",
              "Pixels drawn for a pixel of the picture, each way, up to 4096 in all (default 2)",
              [&o](const std::string& text) { o.antiAliasing = ParseNumber(text, 1.0, 8.0); });
    AddParsed(*command, "--background", "RRGGBB[,RRGGBB]", "One colour, or those of the upper and the lower edge",
              [&o](const std::string& text) {
                  o.background = ParseBackground(text);
                  o.backgroundGiven = true;
              });
    AddParsed(*command, "--mesh-mode", MeshModeNames(), "How surfaces are drawn (default surface)",
              [&o](const std::string& text) { o.meshMode = ParseMeshMode(text); });
    command->add_flag("--bounding-box", o.boundingBox, "Mark the corners of each file's box");
    command->add_flag("--axes", o.axes, "Show where x (red), y (green) and z (blue) point, in the lower left corner");
    command->add_flag(
        "--grid", o.grid,
        "Draw a grid with the files' coordinates, through the middle of the scene; in views along an axis");
    AddParsed(*command, "--stereo", "N",
              "For two eyes: 1 red and cyan (red glass on the left); 2, 3 interleaved rows, the right eye's in the "
              "lowest; 4, 5 interleaved columns, the left eye's in the first or in the second (default 0, one eye)",
              [&o](const std::string& text) { o.stereo = ParseStereo(text); });
    AddParsedMany(*command, "--point", "X,Y,Z[,LABEL]", "Mark a point, with a label above it; may be repeated",
                  [&o](const std::string& text) { o.marks.points.push_back(ParsePointMark(text)); });
    AddParsedMany(*command, "--line", "X1,Y1,Z1,X2,Y2,Z2[,LABEL]",
                  "Draw a line between two points, with a label at its middle; may be repeated",
                  [&o](const std::string& text) { o.marks.lines.push_back(ParseLineMark(text)); });
    command->footer(
        "Views are right-handed: front looks from +z with x to the right and y up, right from +x, top from\n"
        "+y with z down, iso from (1, 1, 1). The scene's box fills the picture up to a margin of 5 %.\n"
        "Points and lines are in the coordinates of the files. A label's lines are 20 pixels high, its letters\n"
        "14, in pictures of every size; \\n in a label begins a new line.\n"
        "Examples:\n"
        "  quorvex render part.stl -o part.png\n"
        "  quorvex render part.stl -o front.bmp --view front --projection orthogonal --size 1200x900\n"
        "  quorvex render housing.stl lid.stl -o both.png --background ffffff --mesh-mode hidden-line\n"
        "  quorvex render part.stl -o part.png --point 0,0,5,top --line=-10,0,0,10,0,0,'20 mm'");
    command->callback([options] {
        try {
            CheckTogether(*options);
        } catch (const std::invalid_argument& error) {
            throw CLI::ValidationError(error.what());
        }
        Render(*options);
    });
}

} // namespace KOVA::Quorvex::cli
