#include "requests/MultipartFrame.h"

#include "support/Files.h"
#include "support/Text.h"
#include "support/Utf8.h"

namespace {

constexpr const wchar_t* kBoundary = L"---------------------8cdfaf76df000f9";
constexpr const wchar_t* kBoundaryPlaceholder = L"%%BOUNDARY%%";
constexpr const wchar_t* kFileNamePlaceholder = L"%%FILENAME%%";
constexpr const wchar_t* kHeaderTemplate =
    L"Content-Type: multipart/form-data; boundary=%%BOUNDARY%%\r\n";
constexpr const wchar_t* kPartHeaderTemplate =
    L"--%%BOUNDARY%%\r\n"
    L"Content-Disposition: form-data; name=\"file\"; filename=\"%%FILENAME%%\"\r\n"
    L"Content-Type: application/octet-stream\r\n\r\n";
constexpr const wchar_t* kTrailerTemplate = L"\r\n--%%BOUNDARY%%--\r\n";

std::wstring FillBoundary(const wchar_t* text) {
    return BaseHlpr::StringReplace(text, kBoundaryPlaceholder, kBoundary);
}

} // namespace

MultipartFrame MakeMultipartFrame(const std::wstring& filePath) {
    const std::wstring fileName = BaseHlpr::ExtractFileName(filePath);
    return {Utf8::ToNarrow(BaseHlpr::StringReplace(FillBoundary(kPartHeaderTemplate).c_str(),
                                                   kFileNamePlaceholder, fileName.c_str())),
            Utf8::ToNarrow(FillBoundary(kTrailerTemplate))};
}

std::wstring MultipartHeader() {
    return FillBoundary(kHeaderTemplate);
}
