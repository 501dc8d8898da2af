#include "cli/service/ItemResolver.h"

#include "base/Ascii.h"
#include "brevint/IGetFolderContentsResponse.h"
#include "brevint/IRepositoryProxy.h"
#include "brevint/PathResponse.h"
#include "cli/output/Failure.h"
#include "support/Utf8.h"

#include <algorithm>

namespace brevint::cli {

namespace {

bool IsIdentifier(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) {
        return base::IsLetterOrDigit(c) ||
               std::string_view("-_{}").find(c) != std::string_view::npos;
    });
}

/// Takes the next segment of a path off its front; slashes in a row count as one.
std::string_view TakeSegment(std::string_view& path) {
    path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
    const std::string_view segment = path.substr(0, path.find('/'));
    path.remove_prefix(segment.size());
    return segment;
}

bool IsEnd(std::string_view path) {
    return path.find_first_not_of('/') == std::string_view::npos;
}

Failure NotOne(bool none, const std::string& name, const std::string& folder) {
    const std::string shown = "\"" + name + "\"";
    const std::string where = " in the folder \"" + folder + "\"";
    return none ? Failure(ExitCode::Refused, "There is no " + shown + where + ".",
                          "See what is there with brevint ls.")
                : Failure(ExitCode::Refused, "Several items" + where + " are called " + shown + ".",
                          "Name the item by its identifier; brevint ls -l shows it.");
}

} // namespace

std::wstring CheckIdentifier(const std::string& text) {
    if (!IsIdentifier(text)) {
        throw Failure(ExitCode::Usage, "\"" + text + "\" is no identifier.",
                      "Give an identifier, or a path that begins with \"/\".");
    }
    return Utf8::ToWide(text);
}

std::vector<CFolderItem> ListFolder(Service& service, const std::wstring& folderId,
                                    std::string_view name) {
    const auto response = service.Call(
        "The folder " + std::string(name) + " cannot be listed.",
        [folderId](Service& at) { return at.Repository()->GetFolderContents(at.Url(), folderId); });
    return TakeRecords(*response, &IGetFolderContentsResponse::GetFolderContents);
}

std::string AskPath(Service& service, const std::wstring& itemId, std::string_view name) {
    const auto response =
        service.Call("The path of " + std::string(name) + " cannot be told.",
                     [itemId](Service& at) { return at.Repository()->GetPath(at.Url(), itemId); });
    return Utf8::ToNarrow(response->GetPath());
}

ItemResolver::ItemResolver(Service& service, const std::string& rootId)
    : m_service(service), m_rootId(CheckIdentifier(rootId)) {}

std::wstring ItemResolver::Id(const std::string& item) {
    return item.starts_with('/') ? Find(item).GetUniqueId() : CheckIdentifier(item);
}

CFolderItem ItemResolver::Find(const std::string& path) {
    CFolderItem found;
    found.SetUniqueId(m_rootId);
    std::string_view rest = path;
    for (std::string_view root = RootPath(); !IsEnd(root);) {
        if (TakeSegment(root) != TakeSegment(rest)) {
            throw Failure(ExitCode::Usage,
                          "\"" + path + "\" does not lie in the folder \"" + RootPath() + "\".",
                          "Paths begin with the root folder; --root chooses another one.");
        }
    }
    std::string folder = RootPath();
    while (!IsEnd(rest)) {
        const std::wstring name = Utf8::ToWide(TakeSegment(rest));
        const std::vector<CFolderItem> items = ListFolder(m_service, found.GetUniqueId(), folder);
        const auto bearsName = [&name](const CFolderItem& item) {
            return item.GetName() == name;
        };
        const auto count = std::ranges::count_if(items, bearsName);
        if (count != 1) {
            throw NotOne(count == 0, Utf8::ToNarrow(name), folder);
        }
        found = *std::ranges::find_if(items, bearsName);
        folder.append("/").append(Utf8::ToNarrow(name));
    }
    return found;
}

const std::string& ItemResolver::RootPath() {
    if (!m_rootPath) {
        m_rootPath = AskPath(m_service, m_rootId, "the root folder");
    }
    return *m_rootPath;
}

} // namespace brevint::cli
