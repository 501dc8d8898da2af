#include "tests/cli/ClientRun.h"

#include "cli/Utf8.h"

#include <system_error>

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

namespace brevint::test {

namespace {

constexpr DWORD kLimit = 60 * 1000;

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using HandlePtr = std::unique_ptr<HANDLE, HandleCloser>;

[[noreturn]] void ThrowLastError() {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

HandlePtr OpenStream(const std::filesystem::path& path, DWORD access, DWORD disposition) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    const HANDLE file = CreateFileW(path.c_str(), access, FILE_SHARE_READ, &inherited, disposition,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        ThrowLastError();
    }
    return HandlePtr(file);
}

/// The argument as the C runtime's rules have it in a command line.
std::wstring Quote(const std::string& argument) {
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : cli::ToWide(argument)) {
        if (c == L'"') {
            quoted.append(backslashes + 1, L'\\');
        }
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    return quoted.append(backslashes, L'\\') + L"\"";
}

} // namespace

struct ClientRun::Process {
    DWORD id = 0;
    HandlePtr handle;
};

ClientRun::ClientRun(const std::vector<std::string>& arguments, const std::string& input,
                     const std::filesystem::path& workingFolder,
                     const std::filesystem::path& streams)
    : streams_(streams), process_(std::make_unique<Process>()) {
    WriteFile(streams / "input", input);
    // Looked for in the folder of this very program first.
    std::wstring command = L"brevint.exe";
    for (const std::string& argument : arguments) {
        command += L" " + Quote(argument);
    }
    const HandlePtr in = OpenStream(streams / "input", GENERIC_READ, OPEN_EXISTING);
    const HandlePtr out = OpenStream(streams / "output", GENERIC_WRITE, CREATE_ALWAYS);
    const HandlePtr error = OpenStream(streams / "error", GENERIC_WRITE, CREATE_ALWAYS);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = in.get();
    startup.hStdOutput = out.get();
    startup.hStdError = error.get();
    PROCESS_INFORMATION process = {};
    // A process group of its own is what an interruption can be sent to.
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, CREATE_NEW_PROCESS_GROUP,
                        nullptr, workingFolder.c_str(), &startup, &process)) {
        ThrowLastError();
    }
    CloseHandle(process.hThread);
    process_->handle.reset(process.hProcess);
    process_->id = process.dwProcessId;
}

ClientRun::~ClientRun() {
    TerminateProcess(process_->handle.get(), 1);
}

void ClientRun::Interrupt() {
    if (!GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, process_->id)) {
        ThrowLastError();
    }
}

ClientRun::Result ClientRun::Wait() {
    DWORD exitCode = static_cast<DWORD>(-1);
    if (WaitForSingleObject(process_->handle.get(), kLimit) == WAIT_OBJECT_0) {
        GetExitCodeProcess(process_->handle.get(), &exitCode);
    } else {
        TerminateProcess(process_->handle.get(), 1);
        WaitForSingleObject(process_->handle.get(), kLimit);
    }
    return {static_cast<int>(exitCode), ReadFile(streams_ / "output"),
            ReadFile(streams_ / "error")};
}

void OpenToEverybody(const std::filesystem::path& path) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:P(A;;FA;;;WD)", SDDL_REVISION_1,
                                                              &descriptor, nullptr)) {
        ThrowLastError();
    }
    const BOOL set = SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor);
    LocalFree(descriptor);
    if (!set) {
        ThrowLastError();
    }
}

} // namespace brevint::test
