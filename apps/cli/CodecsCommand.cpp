#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <Quorvex/core/Facade.h>

#include "Commands.h"

namespace KOVA::Quorvex::cli {

namespace {

// Descriptions are plain text; what is not ASCII is of no use in a list.
std::string Plain(const wchar_t* text) {
    std::string plain;
    for (; *text != 0; ++text) {
        plain += *text >= L' ' && *text <= L'~' ? static_cast<char>(*text) : '?';
    }
    return plain;
}

std::string CodeOf(unsigned long handler) {
    std::string code;
    for (unsigned int i = 0; i < 4; ++i) {
        const auto c = static_cast<char>(handler >> (8 * i) & 0xFFU);
        code += c >= ' ' && c <= '~' ? c : '?';
    }
    return code;
}

struct Codec {
    std::string code, name, description, driver;
    bool available;
};

std::vector<Codec> Codecs() {
    std::vector<Codec> codecs;
    bool uncompressed = false;
    for (const ICINFO& info : Quorvex::GetInstalledAVICodecs()) {
        const auto* const description = static_cast<const wchar_t*>(info.szDescription);
        codecs.push_back({CodeOf(info.fccHandler), Plain(static_cast<const wchar_t*>(info.szName)), Plain(description),
                          Plain(static_cast<const wchar_t*>(info.szDriver)), description[0] != 0});
        uncompressed = uncompressed || codecs.back().code == "DIB ";
    }
    if (!uncompressed) { // systems do not list what needs no codec
        codecs.insert(codecs.begin(), {"DIB ", "Uncompressed", "Uncompressed frames", "", true});
    }
    return codecs;
}

void Print(const std::vector<Codec>& codecs) {
    for (const Codec& codec : codecs) {
        fmt::print("{:<6}{:<16}{}{}\n", codec.code, codec.available ? codec.name : codec.driver,
                   codec.available ? codec.description : "cannot be opened on this system",
                   codec.available && !codec.driver.empty() ? " [" + codec.driver + "]" : "");
    }
}

} // namespace

void AddCodecsCommand(CLI::App& program) {
    CLI::App* command = program.add_subcommand("codecs", "List what videos can be compressed with");
    const auto json = std::make_shared<bool>(false);
    command->add_flag("--json", *json, "Print one array");
    command->footer("The code is for 'quorvex turntable --codec'. Where several lines have the same code, the first "
                    "that can be\nopened is taken.\n"
                    "Examples:\n"
                    "  quorvex codecs\n"
                    "  quorvex codecs --json");
    command->callback([json] {
        const std::vector<Codec> codecs = Codecs();
        if (!*json) {
            Print(codecs);
            return;
        }
        nlohmann::ordered_json all = nlohmann::ordered_json::array();
        for (const Codec& codec : codecs) {
            all.push_back({{"code", codec.code},
                           {"name", codec.name},
                           {"description", codec.description},
                           {"driver", codec.driver},
                           {"available", codec.available}});
        }
        fmt::print("{}\n", all.dump(2));
    });
}

} // namespace KOVA::Quorvex::cli
