#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <string>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <Quorvex/volume/VolumeWriter.h>

#include "Commands.h"
#include "Failure.h"
#include "FileReason.h"
#include "ImportOptions.h"
#include "ParsedOption.h"
#include "PictureFile.h"
#include "ProgressBar.h"

namespace KOVA::Quorvex::cli {

namespace {

// The limits of samples as they were measured, such that they part: the header of a file of floats needs two.
FloatRange Measure(const ImportOptions& options, const RekHeader& header, const VolumeWriter::Progress& progress) {
    const auto [low, high] = VolumeWriter::MeasureRaw(options.raw.c_str(), header, progress);
    if (!std::isfinite(high - low)) {
        throw Failure(fmt::format("the samples of '{}' go from {} to {}, which is more than a float can span; name "
                                  "limits with --range",
                                  options.raw, low, high));
    }
    if (low < high) {
        return {low, high};
    }
    return {low, std::max(low + 1.0F, std::nextafter(low, std::numeric_limits<float>::infinity()))};
}

void Import(const ImportOptions& options) {
    const std::string reason = ReasonOfSystem(options.raw);
    if (!reason.empty()) {
        throw Failure(fmt::format("cannot read '{}': {}", options.raw, reason));
    }
    CheckWritable(options.output);
    ProgressBar bar;
    RekHeader header;
    header.width = options.dims[0];
    header.height = options.dims[1];
    header.depth = options.dims[2];
    header.bits = options.type;
    const bool measured = options.type == REK_FLOAT && !options.range;
    try {
        if (options.range || measured) {
            const FloatRange range = options.range ? *options.range : Measure(options, header, [&bar](double done) {
                bar.Show(done / 3.0, "looking for the limits");
            });
            header.recVolMin = range.low;
            header.recVolMax = range.high;
        }
        const double before = measured ? 1.0 / 3.0 : 0.0;
        VolumeWriter::ConvertRaw(options.raw.c_str(), header, options.output.c_str(),
                                 [&](double done) { bar.Show(before + (1.0 - before) * done, options.output); });
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        throw Failure(error.what());
    }
}

} // namespace

void AddImportCommand(CLI::App& program) {
    CLI::App* command = program.add_subcommand("import", "Make a REK volume of bare samples");
    const auto options = std::make_shared<ImportOptions>();
    ImportOptions& o = *options;
    command->add_option("RAW", o.raw, "The samples, little-endian, x fastest, then y, then z")
        ->required()
        ->type_name("");
    command->add_option("-o,--output", o.output, "The REK file")->required()->type_name("OUT");
    AddParsed(*command, "--dims", "XxYxZ", "Voxels along x, y and z", [&o](const std::string& text) {
        o.dims = ParseDims(text);
    })->required();
    AddParsed(*command, "--type", "u8|u16|f32", "Samples of 8 bits, of 16 bits, or floats",
              [&o](const std::string& text) { o.type = ParseSampleType(text); })
        ->required();
    AddParsed(*command, "--range", "MIN,MAX",
              "The samples that become 0 and 255, floats by default the smallest and the largest; 16 bits are\n"
              "stretched to it, and kept as they are by default",
              [&o](const std::string& text) { o.range = ParseRange(text); });
    command->footer(
        "The file must hold exactly the samples. Its first slice is z = 0, which a REK file stores last. The\n"
        "samples keep their kind; when a volume is read, 16 bits count by their high byte. A file of any size\n"
        "passes through little memory.\n"
        "Examples:\n"
        "  quorvex import scan.raw --dims 1024x1024x900 --type f32 -o scan.rek\n"
        "  quorvex import detector12bit.raw --dims 512x512x400 --type u16 --range 0,4095 -o scan.rek");
    command->callback([options] {
        if (options->range && options->type == REK_UINT8) {
            throw CLI::ValidationError("--range", "8-bit samples are taken as they are");
        }
        Import(*options);
    });
}

} // namespace KOVA::Quorvex::cli
