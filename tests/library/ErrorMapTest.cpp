#include "base/Ascii.h"
#include "brevint/ErrorCodes.h"
#include "brevint/ErrorDescription.h"
#include "service/ServiceError.h"
#include "tests/support/ResponseKinds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <exception>
#include <set>
#include <sstream>
#include <string>

namespace brevint::test {
namespace {

/// A message as the service sends it, and its code in each kind of response that knows it. Of a
/// message that is known by its beginning, that many characters count.
struct Row {
    Row(const std::exception& message, const char* known, std::size_t length = std::string::npos)
        : codes(known), isPrefix(length != std::string::npos) {
        const std::string lower = base::ToLower(std::string_view(message.what()).substr(0, length));
        text.assign(lower.begin(), lower.end());
    }
    std::wstring text;
    const char* codes;
    bool isPrefix;
};

const Row kRows[] = {
    {service::AuthorizationFailed(),
     "CheckInOut 1103 CreateFolder 1103 Delete 1103 DownloadFile 1103 GetFolderContents 1103 "
     "OverwriteFile 1103 Path 1103 PollOverwriteStatus 1103 PollUploadStatus 1103 Template 1103 "
     "UploadFile 1103"},
    {service::ItemNotFound(),
     "CheckInOut 1202 DownloadFile 1300 GetFolderContents 1400 OverwriteFile 1502 Path 1901 "
     "PollOverwriteStatus 1502 PollUploadStatus 1602 UploadFile 1602"},
    {service::MalformedGuid(),
     "CreateFolder 2000 DownloadFile 1301 GetFolderContents 1401 OverwriteFile 1501 Path 1900 "
     "PollOverwriteStatus 1501 PollUploadStatus 1601 UploadFile 1601"},
    {service::AlreadyCheckedOut(), "CheckInOut 1203"},
    {service::AlreadyCheckedIn(), "CheckInOut 1101"},
    {service::CannotLockFolders(), "CheckInOut 1201"},
    {service::CheckedOutToAnother(), "CheckInOut 1205 OverwriteFile 1504 PollOverwriteStatus 1504"},
    {service::InvalidName(), "CreateFolder 2002"},
    {service::NotAFolder(), "GetFolderContents 1402 PollUploadStatus 1603 UploadFile 1603"},
    {service::NotAFile(), "OverwriteFile 1503 PollOverwriteStatus 1503"},
    {service::NoFilesFound(), "OverwriteFile 1508 UploadFile 1611"},
    {service::ItemExists(), "PollUploadStatus 1600 UploadFile 1600"},
    {service::NoProjectsInTemplates(), "PollUploadStatus 1608 UploadFile 1608"},
    {service::NoTemplatesInProjects(), "PollUploadStatus 1609 UploadFile 1609"},
    {service::ConversionError("{}", "", ""), "CheckInOut 1200 Delete 2100",
     std::string_view("error converting value").size()},
    {service::FolderExists(""), "CreateFolder 2001",
     std::string_view("the destination already contains a folder named '").size()},
    // Two more rows with the same beginning follow in both polls, and change nothing.
    {service::BadProvidedFile("", ""), "PollOverwriteStatus 1505 PollUploadStatus 1605",
     std::string_view("the provided file ('").size()},
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
        std::istringstream known(codes);
        double code = 0;
        for (std::string name; known >> name >> code;) {
            EXPECT_TRUE(FindKind(name)) << name;
        }
        messages.insert({text, text + L"x.pdf') cannot be taken.", text + L" ", L" " + text,
                         text.substr(0, text.size() - 1)});
    }
    for (const ResponseKind& kind : kResponseKinds) {
        for (const std::wstring& message : messages) {
            std::wstring capitals = message;
            std::ranges::transform(message, capitals.begin(), std::towupper);
            for (const std::wstring& spelled : {message, capitals}) {
                SCOPED_TRACE(testing::Message() << kind.name << ' ' << spelled);
                const auto response = kind.make();
                response->ProcessErrorMessage(spelled.c_str());
                EXPECT_EQ(response->GetErrorCode(), CodeOf(kind.name, message));
            }
        }
    }
}

TEST(ErrorCodes, AreDescribedWithAHintForTheUser) {
    const std::set<double> withoutHint = {ErrorCode::MessageNotRecognised, ErrorCode::Success};
    for (const double code : {
#define BREVINT_ERROR_CODE(code, name, kind, calls, meaning, hint) ErrorCode::name,
#include "resources/ErrorCodes.inc"
#undef BREVINT_ERROR_CODE
         }) {
        SCOPED_TRACE(code);
        const ErrorDescription* const description = DescribeError(code);
        ASSERT_TRUE(description);
        EXPECT_EQ(std::string_view(description->hint).ends_with('.'), !withoutHint.contains(code));
        EXPECT_FALSE(std::string_view(description->meaning).empty());
    }
    EXPECT_EQ(DescribeError(1), nullptr);
}

} // namespace
} // namespace brevint::test
