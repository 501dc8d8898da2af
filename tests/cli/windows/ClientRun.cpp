#include "tests/cli/ClientRun.h"

#include "support/Utf8.h"
#include "support/windows/Handles.h"

#include <cstddef>
#include <regex>
#include <system_error>

#include <aclapi.h>
#include <sddl.h>

namespace brevint::test {

namespace {

void Require(bool succeeded) {
    if (!succeeded) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    }
}

HandlePtr OpenStream(const std::filesystem::path& path, DWORD access, DWORD disposition) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    const HANDLE file = CreateFileW(path.c_str(), access, FILE_SHARE_READ, &inherited, disposition,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    Require(file != INVALID_HANDLE_VALUE);
    return HandlePtr(file);
}

/// Starts a program, which inherits these handles and no others: a server's sockets would stay open
/// in it after the server has closed them.
PROCESS_INFORMATION StartProcess(std::wstring command, const std::filesystem::path& folder,
                                 STARTUPINFOEXW& startup, std::vector<HANDLE> inherited) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    std::vector<std::byte> memory(size);
    startup.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory.data());
    Require(InitializeProcThreadAttributeList(startup.lpAttributeList, 1, 0, &size));
    PROCESS_INFORMATION process = {};
    Require(UpdateProcThreadAttribute(startup.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST,
                                      static_cast<void*>(inherited.data()),
                                      inherited.size() * sizeof(HANDLE), nullptr, nullptr) &&
            CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE,
                           EXTENDED_STARTUPINFO_PRESENT, nullptr, folder.c_str(),
                           &startup.StartupInfo, &process));
    DeleteProcThreadAttributeList(startup.lpAttributeList);
    return process;
}

} // namespace

struct ClientRun::Process {
    HandlePtr handle;
};

ClientRun::ClientRun(const std::vector<std::string>& arguments, const std::string& input,
                     const std::filesystem::path& workingFolder,
                     const std::filesystem::path& streams)
    : m_streams(streams), m_process(std::make_unique<Process>()) {
    WriteFile(streams / "input", input);
    // Looked for in the folder of this very program first.
    std::wstring command = L"brevint.exe";
    for (const std::string& argument : arguments) {
        // No argument of a test has a backslash before a quotation mark.
        command += L" \"" +
                   std::regex_replace(Utf8::ToWide(argument), std::wregex(L"\""), L"\\\"") + L"\"";
    }
    const HandlePtr in = OpenStream(streams / "input", GENERIC_READ, OPEN_EXISTING);
    const HandlePtr out = OpenStream(streams / "output", GENERIC_WRITE, CREATE_ALWAYS);
    const HandlePtr error = OpenStream(streams / "error", GENERIC_WRITE, CREATE_ALWAYS);
    STARTUPINFOEXW startup = {};
    startup.StartupInfo.cb = sizeof startup;
    startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    startup.StartupInfo.hStdInput = in.get();
    startup.StartupInfo.hStdOutput = out.get();
    startup.StartupInfo.hStdError = error.get();
    const PROCESS_INFORMATION process = StartProcess(std::move(command), workingFolder, startup,
                                                     {in.get(), out.get(), error.get()});
    CloseHandle(process.hThread);
    m_process->handle.reset(process.hProcess);
}

ClientRun::~ClientRun() {
    TerminateProcess(m_process->handle.get(), 1);
}

int ClientRun::ProcessId() const {
    return static_cast<int>(GetProcessId(m_process->handle.get()));
}

ClientRun::Result ClientRun::Wait() {
    DWORD exitCode = 0;
    Require(WaitForSingleObject(m_process->handle.get(), INFINITE) == WAIT_OBJECT_0 &&
            GetExitCodeProcess(m_process->handle.get(), &exitCode));
    return {static_cast<int>(exitCode), ReadFile(m_streams / "output"),
            ReadFile(m_streams / "error")};
}

void OpenToEverybody(const std::filesystem::path& path) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    Require(ConvertStringSecurityDescriptorToSecurityDescriptorW(
        L"D:P(A;;FA;;;WD)", SDDL_REVISION_1, &descriptor, nullptr));
    const LocalPtr owner(descriptor);
    Require(SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor));
}

} // namespace brevint::test
