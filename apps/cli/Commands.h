#pragma once

namespace CLI {
class App;
}

namespace KOVA::Quorvex::cli {

// Each adds its subcommand to the program; parsing a command line that names it runs it. They throw Failure.
void AddInfoCommand(CLI::App& program);
void AddRenderCommand(CLI::App& program);
void AddTurntableCommand(CLI::App& program);
void AddCodecsCommand(CLI::App& program);
void AddImportCommand(CLI::App& program);
void AddHistogramCommand(CLI::App& program);
void AddLunkerCommand(CLI::App& program);
void AddCapabilitiesCommand(CLI::App& program);

} // namespace KOVA::Quorvex::cli
