#include "cli/OptionList.h"

#include <CLI/CLI.hpp>

namespace brevint::cli {

void OptionList::Required(const std::string& names, std::string& value, const std::string& type,
                          const std::string& description) {
    app_.add_option(names, value, description)->type_name(type)->required();
}

void OptionList::Required(const std::string& names, std::vector<std::string>& values,
                          const std::string& type, const std::string& description) {
    app_.add_option(names, values, description)->type_name(type)->required();
}

void OptionList::Optional(const std::string& names, std::string& value, const std::string& type,
                          const std::string& description) {
    app_.add_option(names, value, description)->type_name(type)->capture_default_str();
}

void OptionList::Choice(const std::string& names, std::string& value, const std::string& type,
                        const std::vector<std::string>& choices, const std::string& description) {
    app_.add_option(names, value, description)
        ->type_name(type)
        ->check(CLI::IsMember(choices))
        ->capture_default_str();
}

void OptionList::Flag(const std::string& names, bool& value, const std::string& description) {
    app_.add_flag(names, value, description);
}

void OptionList::Exclude(const std::string& one, const std::string& other) {
    app_.get_option(one)->excludes(app_.get_option(other));
}

} // namespace brevint::cli
