// brevint-manual FOLDER: writes the manual page and the completions of brevint there.

#include "cli/manual/Completions.h"
#include "cli/manual/ManPage.h"

#include <filesystem>
#include <fstream>
#include <iostream>

int main(int argc, char** argv) {
    using namespace brevint::cli;
    if (argc != 2) {
        std::cerr << "usage: brevint-manual FOLDER\n";
        return 2;
    }
    const std::vector<CommandEntry> table = ReadOptionTable(CommandLine());
    const std::pair<const char*, std::string> files[] = {{"brevint.1", ManPage(table)},
                                                         {"brevint.bash", BashCompletion(table)},
                                                         {"_brevint", ZshCompletion(table)},
                                                         {"brevint.fish", FishCompletion(table)}};
    for (const auto& [name, text] : files) {
        std::ofstream file(std::filesystem::path(argv[1]) / name, std::ios::binary);
        if (!(file << text << std::flush)) {
            std::cerr << "brevint-manual: " << name << " cannot be written\n";
            return 1;
        }
    }
}
