#include <memory>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "OffscreenSession.h"
#include "PictureFile.h"
#include "PictureOptions.h"
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
    CLI::App* command = program.add_subcommand("render", "Draw STL and REK files to a picture");
    const auto options = std::make_shared<RenderOptions>();
    RenderOptions& o = *options;

    AddPictureOptions(*command, o);
    command->add_option("-o,--output", o.output, "The picture; its ending, .bmp or .png, says of which kind")
        ->required()
        ->type_name("OUT");
    command->add_flag(
        "--grid", o.grid,
        "Draw a grid with the files' coordinates, through the middle of the scene; in views along an axis");
    command->footer(std::string(PictureHelp()) +
                    "Examples:\n"
                    "  quorvex render part.stl -o part.png\n"
                    "  quorvex render part.stl -o front.bmp --view front --projection orthogonal --size 1200x900\n"
                    "  quorvex render housing.stl lid.stl -o both.png --background ffffff --mesh-mode hidden-line\n"
                    "  quorvex render scan.rek -o inside.png --clip 0,0,-1,0 --slice 0,0,1,0\n"
                    "  quorvex render scan.rek -o bones.png --volume-mode max --view front\n"
                    "  quorvex render part.stl -o part.png --point 0,0,5,top --line=-10,0,0,10,0,0,'20 mm'");
    command->callback([options] {
        try {
            CheckPicture(*options);
        } catch (const std::invalid_argument& error) {
            throw CLI::ValidationError(error.what());
        }
        Render(*options);
    });
}

} // namespace KOVA::Quorvex::cli
