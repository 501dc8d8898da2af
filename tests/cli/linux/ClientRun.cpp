#include "tests/cli/ClientRun.h"

#include <csignal>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brevint::test {

struct ClientRun::Process {
    pid_t pid = 0;
};

ClientRun::ClientRun(const std::vector<std::string>& arguments, const std::string& input,
                     const std::filesystem::path& workingFolder,
                     const std::filesystem::path& streams)
    : m_streams(streams), m_process(std::make_unique<Process>()) {
    WriteFile(streams / "input", input);
    std::string program = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "brevint";
    std::vector<std::string> texts = arguments;
    std::vector<char*> list = {program.data()};
    for (std::string& text : texts) {
        list.push_back(text.data());
    }
    list.push_back(nullptr);

    constexpr int kWrite = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, (streams / "input").c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, (streams / "output").c_str(), kWrite, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, (streams / "error").c_str(), kWrite, 0600);
    posix_spawn_file_actions_addchdir_np(&actions, workingFolder.c_str());
    // A shell starts what runs in the background with Ctrl-C ignored.
    std::signal(SIGINT, SIG_DFL);
    const int error =
        posix_spawn(&m_process->pid, program.c_str(), &actions, nullptr, list.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::system_error(error, std::generic_category());
    }
}

ClientRun::~ClientRun() {
    if (m_process->pid != 0) {
        kill(m_process->pid, SIGKILL);
        Wait();
    }
}

int ClientRun::ProcessId() const {
    return m_process->pid;
}

ClientRun::Result ClientRun::Wait() {
    int status = 0;
    waitpid(std::exchange(m_process->pid, 0), &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(m_streams / "output"),
            ReadFile(m_streams / "error")};
}

void OpenToEverybody(const std::filesystem::path& path) {
    chmod(path.c_str(), std::filesystem::is_directory(path) ? 0777 : 0644);
}

} // namespace brevint::test
