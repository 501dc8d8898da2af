#include "cli/commands/Command.h"

namespace brevint::cli {

// Each stands in a source of its own in commands/.
std::unique_ptr<Command> MakeCheckIn();
std::unique_ptr<Command> MakeCheckOut();
std::unique_ptr<Command> MakeGet();
std::unique_ptr<Command> MakeJob();
std::unique_ptr<Command> MakeList();
std::unique_ptr<Command> MakeMakeDirectory();
std::unique_ptr<Command> MakePath();
std::unique_ptr<Command> MakePut();
std::unique_ptr<Command> MakeRemove();
std::unique_ptr<Command> MakeReplace();
std::unique_ptr<Command> MakeSignIn();
std::unique_ptr<Command> MakeSignOut();
std::unique_ptr<Command> MakeTemplates();
std::unique_ptr<Command> MakeVersions();
std::unique_ptr<Command> MakeWhoAmI();

namespace {

constexpr CommandRow kCommands[] = {
    {"sign-in", "Sign in to a service",
     "Needs --url. The password is asked for; where standard input is no terminal, it is the\n"
     "first line of it.\n",
     "brevint sign-in --url https://host/app --user ada\n"
     "pass show host | brevint sign-in --url https://host/app --user ada\n",
     MakeSignIn},
    {"sign-out", "End the session",
     "The session is forgotten here even if the service cannot be told.\n", "brevint sign-out\n",
     MakeSignOut},
    {"whoami", "Show who is signed in", "", "brevint whoami\nbrevint whoami --json\n", MakeWhoAmI},
    {"versions", "Show the versions of the service", "", "brevint versions\n", MakeVersions},
    {"templates", "List the templates of a type", "", "brevint templates Reports\n", MakeTemplates},
    {"ls", "List a folder", "", "brevint ls\nbrevint ls -l /Projects/2026\n", MakeList},
    {"path", "Show the paths of items", "", "brevint path 7d0c3d4e-2f6b-4c43-9a0e-5a1c6f0b2e11\n",
     MakePath},
    {"get", "Download files",
     "A file that is there already is replaced, but only once the download is complete.\n",
     "brevint get /Projects/2026/Plan.xlsx\n"
     "brevint get /Projects/2026/Plan.xlsx -o Old.xlsx\n"
     "brevint get /Projects/Notes.txt -o - | less\n"
     "brevint get /Projects/Notes.txt /Projects/Map.png -d Downloads\n",
     MakeGet},
    {"put", "Send new files into a folder", "",
     "brevint put Plan.xlsx Map.png --to /Projects/2026\n"
     "brevint put Plan.xlsx --to /Projects/2026 --no-wait\n",
     MakePut},
    {"replace", "Send a new version of a file", "",
     "brevint replace /Projects/2026/Plan.xlsx Plan.xlsx\n", MakeReplace},
    {"job", "Show how far the processing of a sent file is", "",
     "brevint job 7d0c3d4e-2f6b-4c43-9a0e-5a1c6f0b2e11\n"
     "brevint job 7d0c3d4e-2f6b-4c43-9a0e-5a1c6f0b2e11 --of replace --wait --timeout 60\n",
     MakeJob},
    {"checkout", "Lock files for yourself", "", "brevint checkout /Projects/2026/Plan.xlsx\n",
     MakeCheckOut},
    {"checkin", "Release files that you have locked", "",
     "brevint checkin /Projects/2026/Plan.xlsx\n", MakeCheckIn},
    {"mkdir", "Make a folder", "", "brevint mkdir /Projects 2026\n", MakeMakeDirectory},
    {"rm", "Delete items, folders with all that they hold", "",
     "brevint rm /Projects/2026 /Projects/Notes.txt\n", MakeRemove},
};

} // namespace

std::span<const CommandRow> AllCommands() {
    return kCommands;
}

} // namespace brevint::cli
