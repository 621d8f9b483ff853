#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <Quorvex/core/Facade.h>

#include "Commands.h"
#include "OffscreenSession.h"
#include "ParsedOption.h"
#include "PictureFile.h"
#include "PictureOptions.h"
#include "ProgressBar.h"
#include "RenderOptions.h"
#include "Scene.h"
#include "Studio.h"

namespace KOVA::Quorvex::cli {

namespace {

constexpr unsigned int c_mostPictures = 100000;

struct TurntableOptions {
    RenderOptions picture;
    unsigned int pictures = 250; // ten seconds
    std::optional<unsigned long> codec;
};

volatile std::sig_atomic_t s_interrupted = 0;

// While this lives an interrupt (Ctrl-C) is noticed between two pictures, so that nothing is left behind.
class InterruptScope {
public:
    InterruptScope() : m_before(std::signal(SIGINT, [](int) { s_interrupted = 1; })) {}
    InterruptScope(const InterruptScope&) = delete;
    InterruptScope& operator=(const InterruptScope&) = delete;
    ~InterruptScope() { std::signal(SIGINT, m_before); }

private:
    void (*m_before)(int);
};

// What a user wants who does not care: small files that every player shows; where the codec is missing, large ones.
unsigned long DefaultCodec() {
    const unsigned long jpeg = ParseCodec("MJPG");
    const std::vector<ICINFO> codecs = Quorvex::GetInstalledAVICodecs();
    const bool there = std::any_of(codecs.begin(), codecs.end(), [jpeg](const ICINFO& codec) {
        return codec.fccHandler == jpeg && codec.szDescription[0] != 0;
    });
    return there ? jpeg : ParseCodec("DIB");
}

std::string Duration(double seconds) {
    const long whole = std::lround(seconds);
    return whole < 60 ? fmt::format("{} s", whole) : fmt::format("{}:{:02} min", whole / 60, whole % 60);
}

void Record(const TurntableOptions& options) {
    const RenderOptions& picture = options.picture;
    CheckWritable(picture.output);
    ProgressBar progress;
    const OffscreenSession session;
    const Scene scene = LoadScene(picture.files, picture.marks, progress);
    progress.Show(0.0, "preparing");
    Studio studio(session, scene, picture);
    const unsigned long codec = options.codec ? *options.codec : DefaultCodec();

    const InterruptScope interrupts;
    const auto start = std::chrono::steady_clock::now();
    studio.Record(picture.output, codec, options.pictures, [&](unsigned int number) {
        const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
        std::string what = fmt::format("picture {} of {}", number + 1, options.pictures);
        if (number > 0) {
            what += fmt::format(", {} left", Duration(passed.count() / number * (options.pictures - number)));
        }
        progress.Show(static_cast<double>(number) / options.pictures, what);
        return s_interrupted == 0;
    });
}

} // namespace

void AddTurntableCommand(CLI::App& program) {
    CLI::App* command = program.add_subcommand("turntable", "Record a turn around STL and REK files as a video");
    const auto options = std::make_shared<TurntableOptions>();
    TurntableOptions& o = *options;
    o.picture.turnAxis = Position{0.0, 1.0, 0.0};

    AddPictureOptions(*command, o.picture);
    command->add_option("-o,--output", o.picture.output, "The video, 25 pictures a second")
        ->required()
        ->type_name("OUT.avi");
    AddParsed(*command, "--frames", "N", "Pictures of the whole turn (default 250, ten seconds)",
              [&o](const std::string& text) {
                  const double pictures = ParseNumber(text, 1.0, c_mostPictures);
                  if (pictures != std::floor(pictures)) {
                      throw std::invalid_argument(fmt::format("'{}' is no whole number", text));
                  }
                  o.pictures = static_cast<unsigned int>(pictures);
              });
    AddParsed(*command, "--axis", "X,Y,Z",
              "What the camera turns about, through the middle of the scene; counter-clockwise seen from its end "
              "(default 0,1,0)",
              [&o](const std::string& text) { o.picture.turnAxis = ParseDirection(text); });
    AddParsed(*command, "--codec", "FOURCC",
              "How pictures are compressed: a code that 'quorvex codecs' lists (default MJPG, or DIB, uncompressed, "
              "where that is missing)",
              [&o](const std::string& text) { o.codec = ParseCodec(text); });
    command->footer(std::string(PictureHelp()) +
                    "The video ends with the view that 'quorvex render' shows, from as far away as the turn needs.\n"
                    "Examples:\n"
                    "  quorvex turntable part.stl -o part.avi\n"
                    "  quorvex turntable scan.rek -o scan.avi --frames 100 --axis 0,0,1 --view front --size 640x480\n"
                    "  quorvex turntable part.stl -o part.avi --codec H264 --mesh-mode xray");
    command->callback([options] {
        try {
            CheckVideo(options->picture);
        } catch (const std::invalid_argument& error) {
            throw CLI::ValidationError(error.what());
        }
        Record(*options);
    });
}

} // namespace KOVA::Quorvex::cli
