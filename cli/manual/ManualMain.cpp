// brevint-manual files FOLDER: writes the manual page and the completions of brevint there.
// brevint-manual table NAME: prints a table of docs/command-line.md.

#include "cli/manual/Completions.h"
#include "cli/manual/DocumentTables.h"
#include "cli/manual/ManPage.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>
#include <utility>

namespace {

int WriteFiles(const std::filesystem::path& folder) {
    using namespace brevint::cli;
    const std::pair<const char*, std::string> files[] = {{"brevint.1", ManPage()},
                                                         {"brevint.bash", BashCompletion()},
                                                         {"_brevint", ZshCompletion()},
                                                         {"brevint.fish", FishCompletion()}};
    for (const auto& [name, text] : files) {
        std::ofstream file(folder / name, std::ios::binary);
        if (!(file << text << std::flush)) {
            std::cerr << "brevint-manual: " << name << " cannot be written\n";
            return 1;
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view what = argc == 3 ? argv[1] : "";
    if (what == "files") {
        return WriteFiles(argv[2]);
    }
    const std::string table = what == "table" ? brevint::cli::DocumentTable(argv[2]) : "";
    if (table.empty()) {
        std::cerr << "usage: brevint-manual files FOLDER | table NAME\n";
        return 2;
    }
    std::cout << table;
}
