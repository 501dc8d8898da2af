#include "tests/cli/ClientRun.h"

#include "support/Utf8.h"

#include <cstddef>
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

/// Names the handles that a new process inherits; `handles` must outlive it.
class AttributeList {
public:
    AttributeList(HANDLE* handles, std::size_t size) {
        SIZE_T needed = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &needed);
        m_memory.resize(needed);
        if (!InitializeProcThreadAttributeList(Get(), 1, 0, &needed) ||
            !UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles, size,
                                       nullptr, nullptr)) {
            ThrowLastError();
        }
    }
    AttributeList(const AttributeList&) = delete;
    AttributeList& operator=(const AttributeList&) = delete;
    ~AttributeList() { DeleteProcThreadAttributeList(Get()); }

    LPPROC_THREAD_ATTRIBUTE_LIST Get() const {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_memory.data());
    }

private:
    mutable std::vector<std::byte> m_memory;
};

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
    for (const wchar_t c : Utf8::ToWide(argument)) {
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
    : m_streams(streams), m_process(std::make_unique<Process>()) {
    WriteFile(streams / "input", input);
    // Looked for in the folder of this very program first.
    std::wstring command = L"brevint.exe";
    for (const std::string& argument : arguments) {
        command += L" " + Quote(argument);
    }
    const HandlePtr in = OpenStream(streams / "input", GENERIC_READ, OPEN_EXISTING);
    const HandlePtr out = OpenStream(streams / "output", GENERIC_WRITE, CREATE_ALWAYS);
    const HandlePtr error = OpenStream(streams / "error", GENERIC_WRITE, CREATE_ALWAYS);
    // Only these: a server's sockets would stay open in the program after the server closed them.
    HANDLE inherited[] = {in.get(), out.get(), error.get()};
    const AttributeList attributes(inherited, sizeof inherited);
    STARTUPINFOEXW startup = {};
    startup.StartupInfo.cb = sizeof startup;
    startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    startup.StartupInfo.hStdInput = in.get();
    startup.StartupInfo.hStdOutput = out.get();
    startup.StartupInfo.hStdError = error.get();
    startup.lpAttributeList = attributes.Get();
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE,
                        EXTENDED_STARTUPINFO_PRESENT, nullptr, workingFolder.c_str(),
                        &startup.StartupInfo, &process)) {
        ThrowLastError();
    }
    CloseHandle(process.hThread);
    m_process->handle.reset(process.hProcess);
    m_process->id = process.dwProcessId;
}

ClientRun::~ClientRun() {
    TerminateProcess(m_process->handle.get(), 1);
}

int ClientRun::ProcessId() const {
    return static_cast<int>(m_process->id);
}

ClientRun::Result ClientRun::Wait() {
    DWORD exitCode = static_cast<DWORD>(-1);
    if (WaitForSingleObject(m_process->handle.get(), kLimit) == WAIT_OBJECT_0) {
        GetExitCodeProcess(m_process->handle.get(), &exitCode);
    } else {
        TerminateProcess(m_process->handle.get(), 1);
        WaitForSingleObject(m_process->handle.get(), kLimit);
    }
    return {static_cast<int>(exitCode), ReadFile(m_streams / "output"),
            ReadFile(m_streams / "error")};
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
