#include "explorer/system/OpenedFiles.h"

#include "base/Ascii.h"
#include "explorer/system/Handles.h"
#include "explorer/system/Text.h"
#include "support/LocalName.h"
#include "support/windows/Ownership.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <optional>
#include <system_error>

#include <windows.h>

namespace brevint::explorer {

namespace {

constexpr std::wstring_view kFolderPrefix = L"Brevint Explorer ";

/// Endings of what Windows runs, or takes orders from.
constexpr std::wstring_view kProgramEndings[] = {
    L".ade",         L".adp",       L".app",       L".appinstaller",
    L".application", L".appref-ms", L".appx",      L".appxbundle",
    L".bas",         L".bat",       L".chm",       L".cmd",
    L".com",         L".cpl",       L".csh",       L".diagcab",
    L".diagcfg",     L".dll",       L".exe",       L".fxp",
    L".gadget",      L".hlp",       L".hta",       L".inf",
    L".ins",         L".isp",       L".jar",       L".jnlp",
    L".js",          L".jse",       L".ksh",       L".library-ms",
    L".lnk",         L".mad",       L".mdb",       L".mde",
    L".msc",         L".msh",       L".msi",       L".msix",
    L".msixbundle",  L".msp",       L".mst",       L".msu",
    L".ocx",         L".ops",       L".pcd",       L".pif",
    L".pl",          L".prg",       L".ps1",       L".ps1xml",
    L".ps2",         L".ps2xml",    L".psc1",      L".psc2",
    L".psd1",        L".psm1",      L".py",        L".pyw",
    L".pyz",         L".rb",        L".reg",       L".scf",
    L".scr",         L".sct",       L".search-ms", L".settingcontent-ms",
    L".shb",         L".shs",       L".sys",       L".url",
    L".vb",          L".vbe",       L".vbs",       L".website",
    L".ws",          L".wsc",       L".wsf",       L".wsh",
    L".xll"};

/// Of the program whose folder that is; nothing: it is no program's folder.
std::optional<DWORD> ProcessOf(const std::filesystem::path& folder) {
    const std::wstring name = folder.filename().wstring();
    if (!name.starts_with(kFolderPrefix)) {
        return std::nullopt;
    }
    const std::wstring number = name.substr(kFolderPrefix.size());
    if (number.empty() || !std::ranges::all_of(number, base::IsDigit<wchar_t>)) {
        return std::nullopt;
    }
    return std::wcstoul(number.c_str(), nullptr, 10);
}

/// Whether Windows knows no such process. One that it does not let others open is alive.
bool HasEnded(DWORD process) {
    const HandlePtr running(OpenProcess(SYNCHRONIZE, FALSE, process));
    return !running && GetLastError() == ERROR_INVALID_PARAMETER;
}

std::filesystem::path TemporaryFolder() {
    std::error_code failed;
    return std::filesystem::temp_directory_path(failed);
}

} // namespace

std::wstring LocalName(std::string_view name) {
    std::wstring local = DisplayText(Wide(name));
    for (wchar_t& character : local) {
        if (std::wstring_view(L"<>:\"/\\|?*").find(character) != std::wstring_view::npos) {
            character = L'_';
        }
    }
    // Windows drops these at the end, and with them perhaps another ending than the one that shows.
    local.erase(local.find_last_not_of(L" .") + 1);
    constexpr std::size_t kLongest = 200;
    if (local.size() > kLongest) {
        const std::wstring ending = std::filesystem::path(local).extension().wstring();
        const std::size_t kept = ending.size() < kLongest ? kLongest - ending.size() : 0;
        local = local.substr(0, kept) + ending.substr(0, kLongest);
    }
    // What is left is a device, a part file or one that Windows obeys.
    return IsLocalName(Utf8(local)) ? local : L'_' + local;
}

bool IsProgram(const std::wstring& localName) {
    // To Windows a name such as ".bat" is nothing but its ending.
    const std::size_t dot = localName.rfind(L'.');
    return dot != std::wstring::npos &&
           std::ranges::find(kProgramEndings, FoldCase(localName.substr(dot))) !=
               std::end(kProgramEndings);
}

bool MarkAsDownloaded(const std::filesystem::path& file) {
    const HANDLE opened = CreateFileW((file.wstring() + L":Zone.Identifier").c_str(), GENERIC_WRITE,
                                      0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        return false;
    }
    const HandlePtr stream(opened);
    constexpr std::string_view kInternet = "[ZoneTransfer]\r\nZoneId=3\r\n";
    DWORD written = 0;
    return WriteFile(stream.get(), kInternet.data(), static_cast<DWORD>(kInternet.size()), &written,
                     nullptr) &&
           written == kInternet.size();
}

OpenedFiles::OpenedFiles() : OpenedFiles(TemporaryFolder()) {}

OpenedFiles::OpenedFiles(const std::filesystem::path& parent) {
    if (parent.empty()) {
        return;
    }
    std::error_code failed;
    // Each program's folder bears its process's number.
    for (std::filesystem::directory_iterator entry(parent, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        if (const auto process = ProcessOf(entry->path()); process && HasEnded(*process)) {
            std::error_code ignored;
            std::filesystem::remove_all(entry->path(), ignored);
        }
    }
    m_folder = parent / (std::wstring(kFolderPrefix) + std::to_wstring(GetCurrentProcessId()));
}

OpenedFiles::~OpenedFiles() {
    std::error_code ignored; // the next start tries again
    std::filesystem::remove_all(m_folder, ignored);
}

std::filesystem::path OpenedFiles::NewPath(const std::wstring& localName) {
    if (m_folder.empty()) {
        return {};
    }
    const LocalPtr descriptor = UsersOnly();
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor.get(), FALSE};
    CreateDirectoryW(m_folder.c_str(), &attributes); // may be there
    std::filesystem::path folder;
    bool isMade = false;
    do { // an earlier program with this process's number may have left some
        folder = m_folder / std::to_wstring(++m_count);
        isMade = descriptor && CreateDirectoryW(folder.c_str(), &attributes);
    } while (descriptor && !isMade && GetLastError() == ERROR_ALREADY_EXISTS);
    return isMade ? folder / localName : std::filesystem::path();
}

} // namespace brevint::explorer
