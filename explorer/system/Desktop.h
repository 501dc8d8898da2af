#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <windows.h>

namespace brevint::explorer {

/// What the program asks of the user's desktop: dialogs for files, the clipboard, other programs.
/// An empty path, and an empty list, mean that the user has chosen none.
class Desktop {
public:
    virtual ~Desktop() = default;

    virtual std::vector<std::filesystem::path> ChooseFiles(HWND owner) = 0;
    virtual std::filesystem::path ChooseFolder(HWND owner) = 0;
    virtual std::filesystem::path ChooseDestination(HWND owner, const std::wstring& name) = 0;
    /// Hands a file to the program that is meant for it. Returns why that failed; empty: it did
    /// not.
    virtual std::wstring Open(HWND owner, const std::filesystem::path& file) = 0;
    virtual bool Copy(HWND owner, const std::wstring& text) = 0;
};

/// The one that is there.
class SystemDesktop : public Desktop {
public:
    std::vector<std::filesystem::path> ChooseFiles(HWND owner) override;
    std::filesystem::path ChooseFolder(HWND owner) override;
    std::filesystem::path ChooseDestination(HWND owner, const std::wstring& name) override;
    std::wstring Open(HWND owner, const std::filesystem::path& file) override;
    bool Copy(HWND owner, const std::wstring& text) override;
};

} // namespace brevint::explorer
