#include "brevint/brevint.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cwctype>
#include <memory>
#include <set>
#include <string>

namespace brevint::test {
namespace {

template <class Response>
std::unique_ptr<IResponse> Make() {
    return std::make_unique<Response>();
}

template <class... Responses>
constexpr std::array<std::unique_ptr<IResponse> (*)(), sizeof...(Responses)> kMakesOf = {
    Make<Responses>...};

constexpr const char* kKinds[] = {"CheckInOut",     "CreateFolder", "Delete",    "Download",
                                  "FolderContents", "Identity",     "Overwrite", "Path",
                                  "PollOverwrite",  "PollUpload",   "SignOut",   "Template",
                                  "Upload",         "VersionInfo"};
constexpr auto kMakes =
    kMakesOf<CCheckInOutResponse, CCreateFolderResponse, CDeleteResponse, CDownloadFileResponse,
             CGetFolderContentsResponse, CIdentityResponse, COverwriteFileResponse, CPathResponse,
             CPollOverwriteStatusResponse, CPollUploadStatusResponse, CSignOutResponse,
             CTemplateResponse, CUploadFileResponse, CVersionInfoResponse>;

/// A message, and its code in each kind of response that knows it.
struct Row {
    std::wstring text;
    const char* codes;
    bool isPrefix = false;
};

const Row kRows[] = {
    {L"authorization failed.",
     "CheckInOut 1103 CreateFolder 1103 Delete 1103 Download 1103 FolderContents 1103 "
     "Overwrite 1103 Path 1103 PollOverwrite 1103 PollUpload 1103 Template 1103 Upload 1103"},
    {L"requested item not found.",
     "CheckInOut 1202 Download 1300 FolderContents 1400 Overwrite 1502 Path 1901 "
     "PollOverwrite 1502 PollUpload 1602 Upload 1602"},
    {L"guid should contain 32 digits with 4 dashes (xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx).",
     "CreateFolder 2000 Download 1301 FolderContents 1401 Overwrite 1501 Path 1900 "
     "PollOverwrite 1501 PollUpload 1601 Upload 1601"},
    {L"item already checked out.", "CheckInOut 1203"},
    {L"item already checked in.", "CheckInOut 1101"},
    {L"cannot check-out or check-in folders.", "CheckInOut 1201"},
    {L"item checked out to another user.", "CheckInOut 1205 Overwrite 1504 PollOverwrite 1504"},
    {L"please specify a name that does not contain the following characters:  "
     L"\\ / : * ? \" < > |",
     "CreateFolder 2002"},
    {L"requested item is not a folder.", "FolderContents 1402 PollUpload 1603 Upload 1603"},
    {L"specified item is not a file.", "Overwrite 1503 PollOverwrite 1503"},
    {L"no files found.", "Overwrite 1508 Upload 1611"},
    {L"there is an item with the same name already in this location.",
     "PollUpload 1600 Upload 1600"},
    {L"cannot add projects to template repository.", "PollUpload 1608 Upload 1608"},
    {L"cannot add templates to project repository.", "PollUpload 1609 Upload 1609"},
    {L"error converting value", "CheckInOut 1200 Delete 2100", true},
    {L"the destination already contains a folder named '", "CreateFolder 2001", true},
    // Two more rows with the same beginning follow in both polls, and change nothing.
    {L"the provided file ('", "PollOverwrite 1505 PollUpload 1605", true},
};

/// What the table says of a message.
double CodeOf(const std::string& kind, const std::wstring& message) {
    for (const auto& [text, codes, isPrefix] : kRows) {
        const std::string all = std::string(" ") + codes;
        const auto at = all.find(' ' + kind + ' ');
        if ((isPrefix ? message.starts_with(text) : message == text) && at != std::string::npos) {
            return std::stod(all.substr(at + kind.size() + 2));
        }
    }
    return 1100;
}

TEST(ErrorMap, GivesEveryMessageItsCodeInEveryLetterCase) {
    // Every message, and what differs from one at its end or its beginning.
    std::set<std::wstring> messages = {L"", L"no such message."};
    for (const auto& [text, codes, isPrefix] : kRows) {
        messages.insert({text, text + L"x.pdf') cannot be taken.", text + L" ", L" " + text,
                         text.substr(0, text.size() - 1)});
    }
    for (std::size_t i = 0; i < kMakes.size(); ++i) {
        for (const std::wstring& message : messages) {
            std::wstring capitals = message;
            std::transform(message.begin(), message.end(), capitals.begin(), std::towupper);
            for (const std::wstring& spelled : {message, capitals}) {
                SCOPED_TRACE(testing::Message() << kKinds[i] << ' ' << spelled);
                const auto response = kMakes[i]();
                response->ProcessErrorMessage(spelled.c_str());
                EXPECT_EQ(response->GetErrorCode(), CodeOf(kKinds[i], message));
            }
        }
    }
}

} // namespace
} // namespace brevint::test
