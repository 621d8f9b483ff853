#include "ParsedOption.h"

#include <stdexcept>
#include <vector>

#include <CLI/CLI.hpp>

namespace KOVA::Quorvex::cli {

namespace {

void Parse(const std::string& name, const std::string& text, const std::function<void(const std::string&)>& parse) {
    try {
        parse(text);
    } catch (const std::invalid_argument& error) {
        throw CLI::ValidationError(name, error.what());
    }
}

} // namespace

CLI::Option* AddParsed(CLI::App& command, const std::string& name, const std::string& form, const std::string& help,
                       const std::function<void(const std::string&)>& parse) {
    const auto callback = [name, parse](const std::string& text) { Parse(name, text, parse); };
    return command.add_option_function<std::string>(name, callback, help)->type_name(form);
}

CLI::Option* AddParsedMany(CLI::App& command, const std::string& name, const std::string& form, const std::string& help,
                           const std::function<void(const std::string&)>& parse) {
    const auto callback = [name, parse](const std::vector<std::string>& texts) {
        for (const std::string& text : texts) {
            Parse(name, text, parse);
        }
    };
    return command.add_option_function<std::vector<std::string>>(name, callback, help)
        ->allow_extra_args(false)
        ->type_name(form);
}

} // namespace KOVA::Quorvex::cli
