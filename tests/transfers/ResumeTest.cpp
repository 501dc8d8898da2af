#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"
#include "tests/transfers/Queue.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace brevint::test {
namespace {

using Headers = ScriptedServer::Headers;

constexpr const char* kTarget = "/Repository/Files/id";

class Resume : public testing::Test {
protected:
    ScriptedServer m_server;
    /// Four bytes of ten arrive, and then the attempts are used up.
    void LeavePart(const Queue& queue) {
        Store(m_destination, "old");
        m_server.On(kTarget)
            .Head(200, {{"ETag", "\"a\""}, {"Content-Length", "10"}})
            .Send("0123")
            .Close();
        m_server.On(kTarget).Reply(503);
        EXPECT_EQ(Outcome(StartDownload(queue, "id", m_destination)).state,
                  BREVINT_TRANSFER_FAILED);
        EXPECT_EQ(Contents(m_destination), "old");
        EXPECT_EQ(FileCount(m_folder.Folder()), 3); // with the part and its record
    }

    TempFolder m_folder;
    const std::filesystem::path m_destination = m_folder.Folder() / "file";
};

std::uint64_t Resumed(const TransferPtr& transfer) {
    brevint_progress progress;
    brevint_progress_init(&progress, sizeof progress);
    brevint_transfer_progress(transfer.get(), &progress);
    return progress.bytes_resumed;
}

TEST_F(Resume, GoesOnWhereTheSameFileBrokeOff) {
    struct Case {
        const char* name;
        Headers first;
        Headers second;
        int status;
        std::string rest;
        const char* range;
        const char* condition;
    };
    const std::string whole = "0123456789";
    const Case cases[] = {
        {"strong tag",
         {{"ETag", "\"a\""}},
         {{"ETag", "\"a\""}, {"Content-Range", "bytes 4-9/10"}},
         206,
         "456789",
         "bytes=4-",
         "\"a\""},
        {"date",
         {{"Last-Modified", "Mon, 02 Nov 2026 10:00:00 GMT"}},
         {{"Content-Range", "bytes 4-9/10"}},
         206,
         "456789",
         "bytes=4-",
         "Mon, 02 Nov 2026 10:00:00 GMT"},
        {"changed", {{"ETag", "\"a\""}}, {{"ETag", "\"b\""}}, 200, whole, "bytes=4-", "\"a\""},
        {"weak tag", {{"ETag", "W/\"a\""}}, {}, 200, whole, "", ""},
        {"nothing", {}, {}, 200, whole, "", ""},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        ScriptedServer server;
        Headers first = test.first;
        first.emplace_back("Content-Length", "10");
        server.On(kTarget).Head(200, first).Send("0123").Close();
        server.On(kTarget).Reply(test.status, test.second, test.rest);
        const Queue queue = MakeQueue(Narrow(server.Url("/")));
        const TransferPtr transfer = StartDownload(queue, "id", m_destination);
        EXPECT_EQ(Outcome(transfer).state, BREVINT_TRANSFER_FINISHED) << Outcome(transfer).text;
        EXPECT_EQ(Resumed(transfer), 0U); // it is one transfer
        EXPECT_EQ(Contents(m_destination), whole);
        EXPECT_EQ(FileCount(m_folder.Folder()), 1);
        ASSERT_EQ(server.RequestsFor(kTarget).size(), 2U);
        EXPECT_EQ(server.RequestsFor(kTarget)[1].Header("Range"), test.range);
        EXPECT_EQ(server.RequestsFor(kTarget)[1].Header("If-Range"), test.condition);
    }
}

TEST_F(Resume, NeverMixesWhatDoesNotFit) {
    const std::vector<std::pair<int, Headers>> unfit = {
        {206, {{"ETag", "\"b\""}, {"Content-Range", "bytes 4-9/10"}}},
        {206, {{"ETag", "\"a\""}, {"Content-Range", "bytes 3-9/10"}}},
        {206, {{"ETag", "\"a\""}, {"Content-Range", "bytes 4-10/11"}}},
        {416, {{"Content-Range", "bytes */4"}}},
    };
    for (const auto& [status, headers] : unfit) {
        SCOPED_TRACE(headers.back().second);
        ScriptedServer server;
        server.On(kTarget)
            .Head(200, {{"ETag", "\"a\""}, {"Content-Length", "10"}})
            .Send("0123")
            .Close();
        server.On(kTarget).Reply(status, headers, "XXXXXX");
        server.On(kTarget).Reply(200, {}, "abcdefghij");
        const Queue queue = MakeQueue(Narrow(server.Url("/")));
        const TransferPtr transfer = StartDownload(queue, "id", m_destination);
        EXPECT_EQ(Outcome(transfer).state, BREVINT_TRANSFER_FINISHED) << Outcome(transfer).text;
        EXPECT_EQ(Contents(m_destination), "abcdefghij");
    }
}

TEST_F(Resume, LeavesAPartForALaterTransferAndTheOldFileAsItWas) {
    const Queue queue = MakeQueue(Narrow(m_server.Url("/")));
    LeavePart(queue);
    m_server.On(kTarget).Reply(206, {{"ETag", "\"a\""}, {"Content-Range", "bytes 4-9/10"}},
                               "456789");
    const TransferPtr transfer = StartDownload(queue, "id", m_destination);
    EXPECT_EQ(Outcome(transfer).state, BREVINT_TRANSFER_FINISHED);
    EXPECT_EQ(Resumed(transfer), 4U);
    EXPECT_EQ(Contents(m_destination), "0123456789");
    EXPECT_EQ(FileCount(m_folder.Folder()), 1);
}

TEST_F(Resume, MayBeCancelledByItsListenerBeforeItGoesOn) {
    const Queue queue = MakeQueue(Narrow(m_server.Url("/")));
    LeavePart(queue);
    Listener listener = [](brevint_transfer* transfer, const brevint_progress& now) {
        if (now.bytes_done > 0) {
            brevint_transfer_cancel(transfer);
        }
    };
    const TransferPtr transfer =
        StartDownload(queue, "id", m_destination, BREVINT_UNKNOWN_SIZE, &listener);
    EXPECT_EQ(Outcome(transfer).state, BREVINT_TRANSFER_CANCELLED);
    EXPECT_EQ(Contents(m_destination), "old");
    EXPECT_EQ(FileCount(m_folder.Folder()), 1);
}

TEST_F(Resume, RefusesWhatIsNotTheFile) {
    struct Case {
        const char* name;
        int status;
        Headers headers;
        std::string body;
        std::uint64_t listed;
        int code;
    };
    constexpr std::uint64_t kAny = BREVINT_UNKNOWN_SIZE;
    std::string endless;
    endless.resize(0x1010000, ' ');
    const Case cases[] = {
        {"page", 200, {{"Content-Type", "text/html; charset=utf-8"}}, "<html></html>", kAny, 1104},
        {"page, loudly", 200, {{"Content-Type", "Text/HTML"}}, "<p>", kAny, 1104},
        {"page of no type", 200, {}, " <!DOCTYPE html><p>", kAny, 1104},
        {"longer than listed",
         200,
         {{"Transfer-Encoding", "chunked"}},
         "3\r\nabc\r\n0\r\n\r\n",
         2,
         1102},
        {"other size", 200, {}, "abc", 2, 1102},
        {"redirect", 302, {{"Location", "http://example.invalid/x"}}, "", kAny, 1104},
        {"missing",
         404,
         {},
         "<ResponseData><Message>Requested item not found.</Message></ResponseData>",
         kAny,
         1300},
        {"no message", 404, {}, "<html></html>", kAny, 1100},
        {"endless refusal",
         404,
         {{"Transfer-Encoding", "chunked"}},
         "1010000\r\n" + endless,
         kAny,
         1100},
        {"rest unasked", 206, {{"Content-Range", "bytes 0-2/3"}}, "abc", kAny, 1100},
    };
    m_server.On("/application/identity")
        .Reply(200, {},
               "<ResponseData><IdentifyingPartyUri>u</IdentifyingPartyUri><Name>n</Name>"
               "<IsAdmin>true</IsAdmin></ResponseData>");
    Store(m_destination, "old");
    const Queue queue = MakeQueue(Narrow(m_server.Url("/")));
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        if (test.headers.empty() || test.headers.front().first != "Transfer-Encoding") {
            m_server.On(kTarget).Reply(test.status, test.headers, test.body);
        } else {
            m_server.On(kTarget).Head(test.status, test.headers).Send(test.body);
        }
        const TransferPtr transfer = StartDownload(queue, "id", m_destination, test.listed);
        const brevint_outcome outcome = Outcome(transfer);
        EXPECT_EQ(outcome.state, BREVINT_TRANSFER_FAILED);
        EXPECT_EQ(outcome.code, test.code) << outcome.text;
        EXPECT_EQ(Contents(m_destination), "old");
        EXPECT_EQ(FileCount(m_folder.Folder()), 1);
    }
}

} // namespace
} // namespace brevint::test
