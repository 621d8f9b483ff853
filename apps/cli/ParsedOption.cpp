#include "ParsedOption.h"

#include <stdexcept>

#include <CLI/CLI.hpp>

namespace KOVA::Quorvex::cli {

CLI::Option* AddParsed(CLI::App& command, const std::string& name, const std::string& form, const std::string& help,
                       const std::function<void(const std::string&)>& parse) {
    const auto callback = [name, parse](const std::string& text) {
        try {
            parse(text);
        } catch (const std::invalid_argument& error) {
            throw CLI::ValidationError(name, error.what());
        }
    };
    return command.add_option_function<std::string>(name, callback, help)->type_name(form);
}

} // namespace KOVA::Quorvex::cli
