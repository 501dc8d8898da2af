#include "cli/commands/Commands.h"

#include <algorithm>
#include <sstream>

namespace brevint::cli {

// Each stands in one of the sources in this folder.
ExitCode RunCat(Context& context);
ExitCode RunCheckIn(Context& context);
ExitCode RunCheckOut(Context& context);
ExitCode RunGet(Context& context);
ExitCode RunJob(Context& context);
ExitCode RunList(Context& context);
ExitCode RunMakeDirectory(Context& context);
ExitCode RunPath(Context& context);
ExitCode RunPut(Context& context);
ExitCode RunRemove(Context& context);
ExitCode RunReplace(Context& context);
ExitCode RunSignIn(Context& context);
ExitCode RunSignOut(Context& context);
ExitCode RunTemplates(Context& context);
ExitCode RunVersions(Context& context);
ExitCode RunWhoAmI(Context& context);

namespace {

constexpr Value kFlag;
constexpr Value kFile = {Value::Kind::File, "FILE"};
constexpr Value kFolder = {Value::Kind::Folder, "FOLDER"};
constexpr Value kItem = {Value::Kind::Any, "ITEM"};
constexpr Value kName = {Value::Kind::Any, "NAME"};
constexpr Value kUrl = {Value::Kind::Any, "URL"};
constexpr Value kRoot = {Value::Kind::Any, "NAME=ID"};
constexpr Value kNumber = {Value::Kind::Any, "N"};
constexpr Value kSeconds = {Value::Kind::Any, "SECONDS"};
constexpr Value kType = {Value::Kind::Any, "TYPE"};
constexpr Value kJobId = {Value::Kind::Any, "JOB"};
constexpr Value kSender = {Value::Kind::Choice, "COMMAND", "put replace"};
constexpr Value kOrder = {Value::Kind::Choice, "KEY", "name size modified none"};

constexpr bool kRequired = true;
constexpr bool kOptional = false;

constexpr OptionRow kProgramOptions[] = {
    {"-h,--help", kFlag, ShowsHelp(), "Print a help text and exit"},
    {"--version", kFlag, ShowsVersion(), "Print the version and exit"},
    {"--url", kUrl, &Options::url, "Address of the service; the one signed in to unless given"},
    {"--root", kRoot, &Options::roots,
     "A folder that holds all others, besides /Projects and /Templates; sign-in keeps it"},
    {"--timeout", kSeconds, &Options::timeoutSeconds,
     "Longest time for a call, and for a transfer or job without progress, in seconds"},
    {"--json", kFlag, &Options::json, "Print one JSON document instead of text"},
    {"--insecure-http", kFlag, &Options::insecureHttp,
     "Allow http:// to other machines: password and content travel unencrypted"},
};

constexpr std::span<const OptionRow> kNoOptions;

constexpr OptionRow kSignIn[] = {
    {"--user", kName, &Options::user, "Name of the user", kRequired},
};

constexpr OptionRow kTemplates[] = {
    {"type", kType, &Options::type, "Type of the templates", kRequired},
};

constexpr OptionRow kList[] = {
    {"items", kItem, &Options::items, "Folders and files; the roots if left out"},
    {"-l", kFlag, &Options::allFields, "Show all that is known about each item"},
    {"-R,--recursive", kFlag, &Options::recursive, "List the folders below, too"},
    {"--sort", kOrder, &Options::sort, "What to sort by; \"none\" is the order of the service"},
    {"--reverse", kFlag, &Options::reverse, "Sort the other way round"},
};

constexpr OptionRow kItems[] = {
    {"items", kItem, &Options::items, "Files and folders", kRequired},
};

constexpr OptionRow kFiles[] = {
    {"items", kItem, &Options::items, "Files", kRequired},
};

constexpr OptionRow kRemove[] = {
    kItems[0],
    {"-r,--recursive", kFlag, &Options::recursive, "Delete folders, with all that they hold"},
    {"-f,--force", kFlag, &Options::force, "Do not ask"},
};

// What all commands take that move files.
constexpr OptionRow kQuiet = {"-q,--quiet", kFlag, &Options::quiet, "Show no progress"};
constexpr OptionRow kEvents = {"--events", kFlag, &Options::events,
                               "Tell all that happens on standard error, one JSON document a line"};
constexpr OptionRow kConcurrent = {"-j,--jobs", kNumber, &Options::concurrent,
                                   "How many files move at a time"};
constexpr OptionRow kUpdate = {
    "--update", kFlag, &Options::update,
    "Leave out files that are there with the same size and are not older; replace the others"};
constexpr OptionRow kOverwrite = {"--overwrite", kFlag, &Options::overwrite,
                                  "Replace files that are there"};
constexpr OptionRow kPlanOnly = {"-n,--dry-run", kFlag, &Options::planOnly,
                                 "Only say what would be done"};

constexpr OptionRow kGet[] = {
    kItems[0],
    {"-o,--output", kFile, &Options::output,
     "File to write, for one item only; \"-\" is standard output"},
    {"-d,--directory", kFolder, &Options::directory,
     "Folder to write to; the files are called as on the service", kOptional, "--output"},
    {"-r,--recursive", kFlag, &Options::recursive, "Download folders, with all that they hold"},
    kUpdate,
    kOverwrite,
    {"--keep-times", kFlag, &Options::keepTimes, "Give files the times of the service's"},
    kPlanOnly,
    kConcurrent,
    kQuiet,
    kEvents,
};

constexpr OptionRow kCat[] = {kFiles[0], kQuiet, kEvents};

constexpr OptionRow kPut[] = {
    {"files", kFile, &Options::files, "Local files and folders", kRequired},
    {"-t,--to", kItem, &Options::folder, "Folder to put them in", kRequired},
    {"-r,--recursive", kFlag, &Options::recursive, "Send folders, with all that they hold"},
    kUpdate,
    kOverwrite,
    kPlanOnly,
    {"--no-wait", kFlag, &Options::noWait,
     "Do not wait until the service has processed files: print the jobs instead"},
    kConcurrent,
    kQuiet,
    kEvents,
};

constexpr OptionRow kReplace[] = {
    {"item", kItem, &Options::item, "File to replace", kRequired},
    {"file", kFile, &Options::file, "Local file with the new content", kRequired},
    {"--no-wait", kFlag, &Options::noWait,
     "Do not wait until the service has processed it: print the job instead"},
    kQuiet,
    kEvents,
};

constexpr OptionRow kJob[] = {
    {"job", kJobId, &Options::job, "Identifier of the job, as put and replace print it", kRequired},
    {"--of", kSender, &Options::jobOf, "Command that the job came from"},
    {"--wait", kFlag, &Options::wait, "Wait until the job has ended"},
};

constexpr OptionRow kMakeDirectory[] = {
    {"parent", kItem, &Options::folder, "Folder to make it in", kRequired},
    {"name", kName, &Options::name, "Name of the new folder", kRequired},
};

constexpr char kGetDocument[] =
    "`results`: array of `item`, `ok`, `action` (move or skip), `id`, `file`, `size`; of a folder "
    "also `entries`: array of `path`, `action` (move, skip, make-folder or refuse), `ok`, `size`";
constexpr char kPutDocument[] =
    "`results`: array of `item`, `ok`, `action` (move or skip), `size` if it does not move, "
    "`jobId`, `finished`, and `id` of the item once it is there; of a folder `entries` as of "
    "`get`: array of `path`, `action`, `ok`, "
    "`size`";
constexpr char kReplaceDocument[] = "`results`: array of `item`, `ok`, `action`, `jobId`, "
                                    "`finished`, and `id` of the item once finished";
constexpr char kChangeDocument[] = "`results`: array of `item`, `ok`, `id`";

constexpr CommandRow kCommands[] = {
    {"sign-in", "Sign in to a service",
     "Needs --url. The password is asked for; where standard input is no terminal, it is the\n"
     "first line of it.\n",
     kSignIn, "`url`, `user`",
     "brevint sign-in --url https://host/app --user ada\n"
     "pass show host | brevint sign-in --url https://host/app --user ada\n",
     RunSignIn},
    {"sign-out", "End the session",
     "The session is forgotten here even if the service cannot be told.\n", kNoOptions, "`url`",
     "brevint sign-out\n", RunSignOut},
    {"whoami", "Show who is signed in", "", kNoOptions,
     "`user`, `role` (administrator or user), `url`, `portal`",
     "brevint whoami\nbrevint whoami --json\n", RunWhoAmI},
    {"versions", "Show the versions of the service",
     "These are its own, and those of the desktop program that it accepts.\n", kNoOptions,
     "`service`, `desktop` (array)", "brevint versions\n", RunVersions},
    {"templates", "List the templates of a type", "", kTemplates,
     "`templates`: array of `id`, `key`, `name`, `category`, `description`, `created`, "
     "`createdBy`",
     "brevint templates Reports\n", RunTemplates},
    {"ls", "List folders and files",
     "The last name of a path may be a pattern: \"*\" stands for any characters, \"?\" for one.\n",
     kList,
     "`folders`: array of `path`, `folderId`, `error` if it cannot be listed, `items`: array of "
     "`id`, `parentId`, `ownerId`, `name`, `description`, `created`, `modified`, `size` (number "
     "of bytes, or null), `locked`, `lockedBy`, `public`, `kind` (folder, file or other), `type`; "
     "`error`, the first one or the one that ended the listing, if there is any",
     "brevint ls\nbrevint ls -l /Projects/2026\nbrevint ls --sort size '/Projects/2026/*.pdf'\n",
     RunList},
    {"path", "Show the paths of items", "", kItems,
     "`results`: array of `item`, `ok`, `id`, `path`",
     "brevint path 7d0c3d4e-2f6b-4c43-9a0e-5a1c6f0b2e11\n", RunPath},
    {"get", "Download files and folders",
     "A file that is there already is replaced only if -o names it, or with --overwrite or\n"
     "--update, and only once the download is complete. One that broke off goes on where it\n"
     "stopped.\n",
     kGet, kGetDocument,
     "brevint get /Projects/2026/Plan.xlsx\n"
     "brevint get /Projects/2026/Plan.xlsx -o Old.xlsx\n"
     "brevint get '/Projects/2026/*.pdf' -d Downloads\n"
     "brevint get -r --update /Projects/2026\n",
     RunGet},
    {"cat", "Write files to standard output", "", kCat,
     "`error`: standard output belongs to the file", "brevint cat /Projects/Notes.txt | less\n",
     RunCat},
    {"put", "Send files and folders into a folder",
     "A file that is there already is replaced only with --overwrite or --update.\n", kPut,
     kPutDocument,
     "brevint put Plan.xlsx Map.png --to /Projects/2026\n"
     "brevint put -r --update Drawings --to /Projects/2026\n"
     "brevint put Plan.xlsx --to /Projects/2026 --no-wait\n",
     RunPut},
    {"replace", "Send a new version of a file", "", kReplace, kReplaceDocument,
     "brevint replace /Projects/2026/Plan.xlsx Plan.xlsx\n", RunReplace},
    {"job", "Show how far the processing of a sent file is", "", kJob,
     "`jobId`, `finished`, and `id` of the item once finished",
     "brevint job 7d0c3d4e-2f6b-4c43-9a0e-5a1c6f0b2e11\n"
     "brevint job 7d0c3d4e-2f6b-4c43-9a0e-5a1c6f0b2e11 --of replace --wait --timeout 60\n",
     RunJob},
    {"checkout", "Lock files for yourself", "", kFiles, kChangeDocument,
     "brevint checkout /Projects/2026/Plan.xlsx\n", RunCheckOut},
    {"checkin", "Release files that you have locked", "", kFiles, kChangeDocument,
     "brevint checkin /Projects/2026/Plan.xlsx\n", RunCheckIn},
    {"mkdir", "Make a folder", "", kMakeDirectory, "`id`, `parentId`, `name`",
     "brevint mkdir /Projects 2026\n", RunMakeDirectory},
    {"rm", "Delete items", "On a terminal it asks before each.\n", kRemove,
     "`results`: array of `item`, `ok`, `id`, `deleted`",
     "brevint rm /Projects/Notes.txt\nbrevint rm -r /Projects/2026\n", RunRemove},
};

std::vector<std::string> Split(const char* text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

/// An option or argument with what it takes: "-o FILE", "ITEM...", "--of put|replace".
std::string Usage(const OptionRow& option) {
    std::string value = option.value.name;
    if (option.value.kind == Value::Kind::Choice) {
        value = option.value.choices;
        std::ranges::replace(value, ' ', '|');
    }
    if (option.IsArgument()) {
        return value + (option.IsRepeated() ? "..." : "");
    }
    return option.OptionNames().front() + (value.empty() ? "" : " ") + value;
}

} // namespace

const CommandRow kProgram = {"brevint",
                             "Works with a document repository on a Brevint service",
                             "",
                             kProgramOptions,
                             "",
                             "brevint sign-in --url https://host/app --user ada\n"
                             "brevint ls /Projects\n"
                             "brevint get /Projects/2026/Plan.xlsx\n"
                             "brevint put Report.pdf --to /Projects/2026\n"
                             "brevint sign-out\n",
                             nullptr};

std::span<const CommandRow> AllCommands() {
    return kCommands;
}

bool OptionRow::IsRepeated() const {
    return std::holds_alternative<std::vector<std::string> Options::*>(effect);
}

std::string OptionRow::Default() const {
    const Options defaults;
    if (const auto* const text = std::get_if<std::string Options::*>(&effect)) {
        return defaults.**text;
    }
    const auto* const number = std::get_if<std::uint32_t Options::*>(&effect);
    return number ? std::to_string(defaults.**number) : std::string();
}

std::vector<std::string> OptionRow::OptionNames() const {
    return IsArgument() ? std::vector<std::string>() : Split(names, ',');
}

std::vector<std::string> OptionRow::Choices() const {
    return Split(value.choices, ' ');
}

std::string CommandRow::Synopsis() const {
    std::string line = name;
    for (const OptionRow& option : options) {
        const std::string usage = Usage(option);
        if (option.isRequired) {
            line += " " + usage;
        } else if (option.excludes[0] != '\0') {
            line.back() = ' '; // the bracket that ends the option before
            line += "| " + usage + "]";
        } else {
            line += " [" + usage + "]";
        }
    }
    return line;
}

} // namespace brevint::cli
