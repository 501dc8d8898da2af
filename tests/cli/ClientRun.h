#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace brevint::test {

/// One run of the real program, in a folder and with the environment of this process.
class ClientRun {
public:
    struct Result {
        int exitCode = -1; ///< -1 when a signal has ended the program.
        std::string output;
        std::string error;
    };

    /// Starts it. The arguments are UTF-8; `input` is what it reads from standard input. The three
    /// streams are files in `streams`.
    ClientRun(const std::vector<std::string>& arguments, const std::string& input,
              const std::filesystem::path& workingFolder, const std::filesystem::path& streams);
    /// Ends it, if nobody has waited for its end.
    ~ClientRun();

    /// By which the system knows it.
    int ProcessId() const;

    /// Waits for its end. To be called once.
    Result Wait();

private:
    struct Process;
    std::filesystem::path m_streams;
    std::unique_ptr<Process> m_process;
};

/// The bytes of a file; "" when there is none.
std::string ReadFile(const std::filesystem::path& path);
/// Makes the folder, too.
void WriteFile(const std::filesystem::path& path, const std::string& content);

/// Lets every user of the machine read the file, or write to the folder.
void OpenToEverybody(const std::filesystem::path& path);

} // namespace brevint::test
