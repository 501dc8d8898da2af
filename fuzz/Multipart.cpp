#include "fuzz/Fuzz.h"
#include "requests/UploadFileRequestInfo.h"
#include "service/MultipartReader.h"
#include "tests/library/Helpers.h"
#include "tests/support/TempFolder.h"

using namespace brevint;

// A file's name and, on the next lines, its content: what the library sends, the service reads.
void Fuzz(std::string_view input) {
    static const test::TempFolder folder;
    std::wstring name = L"f" + Utf8::ToWide(TakeLine(input).substr(0, 80));
    std::erase_if(name, [](wchar_t c) { return c < L' ' || c == L'/' || c == L'"'; });
    const std::wstring path = test::WriteFile(folder.Path(name), input);
    const CUploadFileRequestInfo info(L"http://host", name, path);
    std::filesystem::remove(test::FilePath(path));
    const std::string type = Utf8::ToNarrow(info.GetHeaders()).substr(14);
    const std::string_view body(info.GetUploadData().data(), info.GetUploadData().size());
    std::string content;
    service::MultipartReader reader(std::string_view(type).substr(0, type.size() - 2),
                                    [&](std::string_view piece) { content += piece; });
    const std::size_t cut = input.size() * 31 % (body.size() + 1); // somewhere
    reader.Take(body.substr(0, cut));
    reader.Take(body.substr(cut));
    const service::MultipartFile file = reader.End();
    Require(file.name == Utf8::ToNarrow(name) && content.substr(0, file.size) == input);
}
