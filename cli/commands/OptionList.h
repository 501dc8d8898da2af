#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace brevint::cli {

// What an option or argument takes, as help, manual and completions show it. The completions offer
// files and folders where the first two stand.
inline constexpr char kFileType[] = "FILE";
inline constexpr char kFolderType[] = "FOLDER";
inline constexpr char kItemType[] = "ITEM";

/// Takes a command's options and arguments into the grammar of the command line. Options are named
/// "-o,--output", arguments "items"; each fills a variable, which must outlive the grammar. It
/// keeps the parser's templates out of the commands, each of which would take seconds longer to
/// compile.
class OptionList {
public:
    explicit OptionList(CLI::App& app) : m_app(app) {}

    void Required(const std::string& names, std::string& value, const std::string& type,
                  const std::string& description);
    /// The same for one value or more.
    void Required(const std::string& names, std::vector<std::string>& values,
                  const std::string& type, const std::string& description);
    /// Stays as it is unless given.
    void Optional(const std::string& names, std::string& value, const std::string& type,
                  const std::string& description);
    /// The same for one of several values.
    void Choice(const std::string& names, std::string& value, const std::string& type,
                const std::vector<std::string>& choices, const std::string& description);
    void Flag(const std::string& names, bool& value, const std::string& description);

    /// Two options that cannot be given together.
    void Exclude(const std::string& one, const std::string& other);

private:
    CLI::App& m_app;
};

} // namespace brevint::cli
