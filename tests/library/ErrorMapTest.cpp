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

/// The kinds of response. The last three know no message.
constexpr auto kMakes =
    kMakesOf<CCheckInOutResponse, CCreateFolderResponse, CDeleteResponse, CDownloadFileResponse,
             CGetFolderContentsResponse, COverwriteFileResponse, CPathResponse,
             CPollOverwriteStatusResponse, CPollUploadStatusResponse, CUploadFileResponse,
             CTemplateResponse, CIdentityResponse, CSignOutResponse, CVersionInfoResponse>;

/// A message, and its code for each kind of response; 0 where it has none.
struct Row {
    std::wstring text;
    int codes[kMakes.size()];
    bool isPrefix = false;
};

const Row kRows[] = {
    {L"authorization failed.", {1103, 1103, 1103, 1103, 1103, 1103, 1103, 1103, 1103, 1103, 1103}},
    {L"requested item not found.", {1202, 0, 0, 1300, 1400, 1502, 1901, 1502, 1602, 1602}},
    {L"guid should contain 32 digits with 4 dashes (xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx).",
     {0, 2000, 0, 1301, 1401, 1501, 1900, 1501, 1601, 1601}},
    {L"item already checked out.", {1203}},
    {L"item already checked in.", {1101}},
    {L"cannot check-out or check-in folders.", {1201}},
    {L"item checked out to another user.", {1205, 0, 0, 0, 0, 1504, 0, 1504}},
    {L"please specify a name that does not contain the following characters:  "
     L"\\ / : * ? \" < > |",
     {0, 2002}},
    {L"requested item is not a folder.", {0, 0, 0, 0, 1402, 0, 0, 0, 1603, 1603}},
    {L"specified item is not a file.", {0, 0, 0, 0, 0, 1503, 0, 1503}},
    {L"no files found.", {0, 0, 0, 0, 0, 1508, 0, 0, 0, 1611}},
    {L"there is an item with the same name already in this location.",
     {0, 0, 0, 0, 0, 0, 0, 0, 1600, 1600}},
    {L"cannot add projects to template repository.", {0, 0, 0, 0, 0, 0, 0, 0, 1608, 1608}},
    {L"cannot add templates to project repository.", {0, 0, 0, 0, 0, 0, 0, 0, 1609, 1609}},
    {L"error converting value", {1200, 0, 2100}, true},
    {L"the destination already contains a folder named '", {0, 2001}, true},
    // Two more rows with the same beginning follow in both polls, and change nothing.
    {L"the provided file ('", {0, 0, 0, 0, 0, 0, 0, 1505, 1605}, true},
};

/// What the table says of a message.
double CodeOf(std::size_t kind, const std::wstring& message) {
    for (const Row& row : kRows) {
        const bool isMeant = row.isPrefix ? message.starts_with(row.text) : message == row.text;
        if (isMeant && row.codes[kind]) {
            return row.codes[kind];
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
    for (std::size_t kind = 0; kind < kMakes.size(); ++kind) {
        for (const std::wstring& message : messages) {
            std::wstring capitals = message;
            std::transform(message.begin(), message.end(), capitals.begin(), std::towupper);
            for (const std::wstring& spelled : {message, capitals}) {
                SCOPED_TRACE(testing::Message() << kind << ' ' << spelled);
                const auto response = kMakes[kind]();
                EXPECT_EQ(response->GetErrorCode(), 1100);
                response->ProcessErrorMessage(spelled.c_str());
                EXPECT_EQ(response->GetErrorCode(), CodeOf(kind, message));
                EXPECT_EQ(response->GetSucceeded(), CodeOf(kind, message) == 1101);
            }
        }
    }
}

} // namespace
} // namespace brevint::test
