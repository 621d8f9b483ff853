#pragma once

namespace CLI {
class App;
}

namespace KOVA::Quorvex::cli {

struct RenderOptions;

// What every command that draws is told: the files, and how they are shown.
void AddPictureOptions(CLI::App& command, RenderOptions& options);

// For their help: where things are in the picture. Whole lines.
const char* PictureHelp();

} // namespace KOVA::Quorvex::cli
