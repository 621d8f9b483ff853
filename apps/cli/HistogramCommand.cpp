#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "HistogramFacts.h"
#include "HistogramPlot.h"
#include "PictureFile.h"
#include "ProgressBar.h"
#include "VolumeFile.h"
#include "system/System.h"

namespace KOVA::Quorvex::cli {

namespace {

struct Options {
    std::string file;
    std::string plot;
    int median = 0;
    unsigned int plotWidth = 1600;
    bool csv = false;
    bool json = false;
};

template <class Value> nlohmann::json OrNull(const std::optional<Value>& value) {
    return value ? nlohmann::json(*value) : nlohmann::json();
}

void PrintJson(const Options& options, const HistogramFacts& facts) {
    const VolumeSummary& summary = facts.summary;
    nlohmann::ordered_json json{{"file", options.file}, {"voxels", summary.voxels}, {"min", summary.low},
                                {"max", summary.high},  {"mean", summary.mean},     {"bins", summary.histogram}};
    if (facts.filtered) {
        json["median"] = facts.median;
        json["filtered_bins"] = *facts.filtered;
    }
    json["peaks"] = nlohmann::ordered_json::array();
    for (const HistogramFacts::Peak& peak : facts.peaks) {
        json["peaks"].push_back({{"intensity", peak.level}, {"count", peak.count}});
    }
    json["background_peak"] = OrNull(facts.background);
    json["material_peak"] = OrNull(facts.material);
    json["threshold_between_peaks"] = OrNull(facts.threshold);
    json["threshold_by_variance"] = summary.parts ? nlohmann::json(summary.parts->threshold) : nlohmann::json();
    // A file name may be no UTF-8.
    fmt::print("{}\n", json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

void PrintCsv(const HistogramFacts& facts) {
    fmt::print("intensity,voxels{}\n", facts.filtered ? ",filtered" : "");
    for (std::size_t level = 0; level < facts.summary.histogram.size(); ++level) {
        fmt::print("{},{}", level, facts.summary.histogram[level]);
        if (facts.filtered) {
            fmt::print(",{}", (*facts.filtered)[level]);
        }
        fmt::print("\n");
    }
}

std::string Text(const std::optional<int>& value) {
    return value ? fmt::format("{}", *value) : "-";
}

void PrintText(const Options& options, const HistogramFacts& facts) {
    constexpr std::size_t most = 12;
    const VolumeSummary& summary = facts.summary;
    fmt::print("{}\n", options.file);
    fmt::print("  {:<24}{:>14}\n", "voxels", summary.voxels);
    fmt::print("  {:<24}{:>14} {:>14}\n", "smallest, largest", summary.low, summary.high);
    fmt::print("  {:<24}{:>14.2f}\n", "mean", summary.mean);
    fmt::print("  {:<24}{:>14} {:>14}\n", "background, material", Text(facts.background), Text(facts.material));
    fmt::print("  {:<24}{:>14}\n", "threshold half-way", Text(facts.threshold));
    fmt::print("  {:<24}{:>14}\n", "threshold by variance",
               summary.parts ? fmt::format("{}", summary.parts->threshold) : "-");
    fmt::print("  {:<24}{:>14}{}\n", "peaks", facts.peaks.size(), facts.peaks.size() > most ? ", the highest:" : "");
    for (const HistogramFacts::Peak& peak : HighestPeaks(facts, most)) {
        fmt::print("    {:<22}{:>14} voxels\n", peak.level, peak.count);
    }
}

void Run(const Options& options) {
    if (!options.plot.empty()) {
        CheckWritable(options.plot);
    }
    HistogramFacts facts;
    {
        ProgressBar bar;
        bar.Show(0.0, options.file);
        const Volume volume = ReadVolume(options.file);
        bar.Show(0.9, "counting");
        facts = Examine(volume.GetData(), options.median);
    }
    if (!options.plot.empty()) {
        const Canvas plot =
            DrawHistogram(facts, std::filesystem::path(options.file).filename().string(), options.plotWidth);
        WritePng(options.plot, plot.Size(), plot.Pixels());
    }
    if (options.json) {
        PrintJson(options, facts);
    } else if (options.csv) {
        PrintCsv(facts);
    } else {
        PrintText(options, facts);
    }
}

} // namespace

void AddHistogramCommand(CLI::App& program) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = program.add_subcommand("histogram", "Count the intensities of a volume, and find thresholds");
    command->add_option("FILE", options->file, "A REK volume")->required()->type_name("");
    command->add_option("--median", options->median, "Look for peaks behind a median filter of that width")
        ->check(CLI::Range(1, 255))
        ->type_name("WIDTH");
    CLI::Option* csv = command->add_flag("--csv", options->csv, "Print the counts, a line for each intensity");
    command->add_flag("--json", options->json, "Print everything as one object")->excludes(csv);
    command->add_option("--plot", options->plot, "Draw the counts, linear and logarithmic, with peaks and thresholds")
        ->type_name("OUT.png");
    command->add_option("--plot-width", options->plotWidth, "Width of the picture in pixels")
        ->check(CLI::Range(400, 8000))
        ->capture_default_str()
        ->type_name("PIXELS");
    command->footer(
        "Voxels count as they are drawn, 0 to 255. Two thresholds are named, and what is above belongs to the\n"
        "material: half-way between the peaks of background and material, which are those that remain when the\n"
        "median filter is made wider and wider; and the one that parts the voxels best, by the variance between\n"
        "the two kinds.\n"
        "Examples:\n"
        "  quorvex histogram scan.rek --plot scan.png\n"
        "  quorvex histogram scan.rek --median 7 --csv > scan.csv");
    command->callback([options] { Run(*options); });
}

} // namespace KOVA::Quorvex::cli
