#include "CommandLine.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <string>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "Commands.h"
#include "Failure.h"

namespace KOVA::Quorvex::cli {

namespace {

constexpr int c_done = 0;
constexpr int c_failed = 1;
constexpr int c_wrongUsage = 2;

int Report(int code, std::string text) {
    for (char& c : text) {
        c = c == '\n' || c == '\r' ? ' ' : c;
    }
    fmt::print(stderr, "quorvex: {}\n", text);
    return code;
}

void Parse(int argc, const char* const* argv) {
    CLI::App program("Pictures of measured parts and facts about them, without a window.", "quorvex");
    program.allow_windows_style_options(false); // a path that begins with a slash is a path on every system
    program.set_version_flag("--version", "quorvex " QUORVEX_VERSION, "Print the version and exit");
    program.set_help_flag("-h,--help", "Print this help and exit");
    program.footer("Examples:\n"
                   "  quorvex info part.stl scan.rek\n"
                   "  quorvex import scan.raw --dims 512x512x400 --type u16 -o scan.rek\n"
                   "  quorvex render part.stl -o part.png --view front --mesh-mode surface-wireframe\n"
                   "  quorvex turntable scan.rek -o scan.avi --frames 250\n"
                   "  quorvex histogram scan.rek --plot scan.png\n"
                   "  quorvex capabilities --json\n\n"
                   "'quorvex COMMAND --help' tells more about a command. Exit code: 0 done, 1 failed, 2 wrong usage.");
    program.require_subcommand(0, 1);
    AddInfoCommand(program);
    AddRenderCommand(program);
    AddTurntableCommand(program);
    AddImportCommand(program);
    AddHistogramCommand(program);
    AddLunkerCommand(program);
    AddCodecsCommand(program);
    AddCapabilitiesCommand(program);

    try {
        program.parse(argc, argv);
        // Asked here and not by the parser, which would say so of a misspelt one too.
        if (program.get_subcommands().empty()) {
            throw CLI::ValidationError(
                "a command is missing: info, render, turntable, import, histogram, lunker, codecs or capabilities");
        }
    } catch (const CLI::CallForHelp& help) {
        program.exit(help); // prints the help of the command that was asked
    } catch (const CLI::CallForVersion& version) {
        program.exit(version);
    }
}

} // namespace

int RunTool(int argc, const char* const* argv) {
    try {
        Parse(argc, argv);
        errno = 0;
        if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
            return Report(c_failed, fmt::format("cannot write to standard output: {}", std::strerror(errno)));
        }
        return c_done;
    } catch (const CLI::ParseError& error) {
        return Report(c_wrongUsage, fmt::format("{} (--help tells more)", error.what()));
    } catch (const std::bad_alloc&) {
        return Report(c_failed, "there is not enough memory");
    } catch (const std::exception& error) {
        return Report(c_failed, error.what());
    }
}

} // namespace KOVA::Quorvex::cli
