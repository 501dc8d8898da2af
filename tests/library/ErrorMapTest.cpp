#include "tests/support/ResponseKinds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <set>
#include <sstream>
#include <string>

namespace brevint::test {
namespace {

/// A message, and its code in each kind of response that knows it.
struct Row {
    std::wstring text;
    const char* codes;
    bool isPrefix = false;
};

const Row kRows[] = {
    {L"authorization failed.",
     "CheckInOut 1103 CreateFolder 1103 Delete 1103 DownloadFile 1103 GetFolderContents 1103 "
     "OverwriteFile 1103 Path 1103 PollOverwriteStatus 1103 PollUploadStatus 1103 Template 1103 "
     "UploadFile 1103"},
    {L"requested item not found.",
     "CheckInOut 1202 DownloadFile 1300 GetFolderContents 1400 OverwriteFile 1502 Path 1901 "
     "PollOverwriteStatus 1502 PollUploadStatus 1602 UploadFile 1602"},
    {L"guid should contain 32 digits with 4 dashes (xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx).",
     "CreateFolder 2000 DownloadFile 1301 GetFolderContents 1401 OverwriteFile 1501 Path 1900 "
     "PollOverwriteStatus 1501 PollUploadStatus 1601 UploadFile 1601"},
    {L"item already checked out.", "CheckInOut 1203"},
    {L"item already checked in.", "CheckInOut 1101"},
    {L"cannot check-out or check-in folders.", "CheckInOut 1201"},
    {L"item checked out to another user.",
     "CheckInOut 1205 OverwriteFile 1504 PollOverwriteStatus 1504"},
    {L"please specify a name that does not contain the following characters:  "
     L"\\ / : * ? \" < > |",
     "CreateFolder 2002"},
    {L"requested item is not a folder.",
     "GetFolderContents 1402 PollUploadStatus 1603 UploadFile 1603"},
    {L"specified item is not a file.", "OverwriteFile 1503 PollOverwriteStatus 1503"},
    {L"no files found.", "OverwriteFile 1508 UploadFile 1611"},
    {L"there is an item with the same name already in this location.",
     "PollUploadStatus 1600 UploadFile 1600"},
    {L"cannot add projects to template repository.", "PollUploadStatus 1608 UploadFile 1608"},
    {L"cannot add templates to project repository.", "PollUploadStatus 1609 UploadFile 1609"},
    {L"error converting value", "CheckInOut 1200 Delete 2100", true},
    {L"the destination already contains a folder named '", "CreateFolder 2001", true},
    // Two more rows with the same beginning follow in both polls, and change nothing.
    {L"the provided file ('", "PollOverwriteStatus 1505 PollUploadStatus 1605", true},
};

/// What the table says of a message.
double CodeOf(std::string_view kind, const std::wstring& message) {
    for (const auto& [text, codes, isPrefix] : kRows) {
        std::istringstream known(codes);
        for (std::string name; known >> name;) {
            double code = 0;
            known >> code;
            if (name == kind && (isPrefix ? message.starts_with(text) : message == text)) {
                return code;
            }
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
    for (const ResponseKind& kind : kResponseKinds) {
        for (const std::wstring& message : messages) {
            std::wstring capitals = message;
            std::transform(message.begin(), message.end(), capitals.begin(), std::towupper);
            for (const std::wstring& spelled : {message, capitals}) {
                SCOPED_TRACE(testing::Message() << kind.name << ' ' << spelled);
                const auto response = kind.make();
                response->ProcessErrorMessage(spelled.c_str());
                EXPECT_EQ(response->GetErrorCode(), CodeOf(kind.name, message));
            }
        }
    }
}

} // namespace
} // namespace brevint::test
