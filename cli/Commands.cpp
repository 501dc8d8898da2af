#include "cli/Command.h"

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
    {"sign-in", "Sign in to a service", MakeSignIn},
    {"sign-out", "End the session", MakeSignOut},
    {"whoami", "Show who is signed in", MakeWhoAmI},
    {"versions", "Show the versions of the service", MakeVersions},
    {"templates", "List the templates of a type", MakeTemplates},
    {"ls", "List a folder", MakeList},
    {"path", "Show the paths of items", MakePath},
    {"get", "Download files", MakeGet},
    {"put", "Send new files into a folder", MakePut},
    {"replace", "Send a new version of a file", MakeReplace},
    {"job", "Show how far the processing of a sent file is", MakeJob},
    {"checkout", "Lock files for yourself", MakeCheckOut},
    {"checkin", "Release files that you have locked", MakeCheckIn},
    {"mkdir", "Make a folder", MakeMakeDirectory},
    {"rm", "Delete items, folders with all that they hold", MakeRemove},
};

} // namespace

std::span<const CommandRow> AllCommands() {
    return kCommands;
}

} // namespace brevint::cli
