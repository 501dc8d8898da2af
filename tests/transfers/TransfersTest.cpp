#include "brevint/brevint.h"
#include "service/ReferenceService.h"
#include "service/Text.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"
#include "tests/transfers/Group.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <random>
#include <string>
#include <vector>

namespace brevint::test {
namespace {

using service::Misbehaviour;
using service::ReferenceService;
using Break = Misbehaviour::Break;

constexpr const char* kProjects = "00000000-0000-0000-0000-000000000001";
/// What a service says to an upload and to its poll.
constexpr const char* kDone =
    "<ResponseData><JobId>1</JobId><Status>2</Status><Details>id</Details></ResponseData>";
constexpr std::uint64_t kBigSize = 3'000'001;

std::wstring Wide(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

class Transfers : public testing::Test {
protected:
    Transfers() : m_service({.patternFiles = {{"Big.bin", kBigSize}}}) {
        m_service.Start();
        SignIn();
        m_big = ItemId("Big.bin");
    }

    void SignIn() {
        const std::wstring url = Wide(m_service.Url());
        const std::unique_ptr<SignInResponse> result(
            CSignInProxy(&m_requests).SignIn(url.c_str(), L"ada", L"ada-secret"));
        ASSERT_TRUE(result->GetSucceeded());
    }

    std::string ItemId(const std::string& name) {
        CRepositoryProxy repository(&m_requests);
        const std::unique_ptr<IGetFolderContentsResponse> listing(
            repository.GetFolderContents(Wide(m_service.Url()), RootFolder::Projects));
        std::vector<CFolderItem*> items;
        listing->GetFolderContents(items);
        std::string id;
        for (CFolderItem* item : items) {
            const std::unique_ptr<CFolderItem> owned(item);
            if (item->GetName() == Wide(name)) {
                const std::wstring wide = item->GetUniqueId();
                id.assign(wide.begin(), wide.end());
            }
        }
        return id;
    }

    ReferenceService m_service;
    WebRequestFactory m_requests;
    TempFolder m_folder;
    std::string m_big;
    const std::filesystem::path m_destination = m_folder.Folder() / "Big.bin";
};

TEST_F(Transfers, ArriveWholeWhateverTheServiceDoes) {
    struct Case {
        const char* name;
        Misbehaviour misbehaviour;
    };
    const Case cases[] = {
        {"nothing", {}},
        {"cut", {.breakOff = Break::Cut, .breakAfter = 1'000'000, .requests = 3}},
        {"reset", {.breakOff = Break::Reset, .breakAfter = 1'000'000, .requests = 2}},
        {"cut at once", {.breakOff = Break::Cut, .requests = 2}},
        {"silent", {.breakOff = Break::Silence, .breakAfter = 1'000'000, .requests = 1}},
        {"silent at once", {.breakOff = Break::Silence, .requests = 1}},
        {"not now", {.retryAfter = 0, .requests = 2}},
        {"changed",
         {.breakOff = Break::Cut, .breakAfter = 500'000, .changesFile = true, .requests = 2}},
    };
    const Queue queue = MakeQueue(m_service.Url(), 4, 300);
    std::string whole;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        m_service.Misbehave(test.misbehaviour);
        std::uint64_t last = 0;
        bool wentBack = false;
        Listener listener = [&](brevint_transfer*, const brevint_progress& progress) {
            wentBack = wentBack || progress.bytes_done < last;
            last = progress.bytes_done;
        };
        TransferPtr transfer = StartDownload(queue, m_big, m_destination, kBigSize, &listener);
        const brevint_outcome outcome = Outcome(transfer);
        EXPECT_EQ(outcome.state, BREVINT_TRANSFER_FINISHED) << outcome.text;
        EXPECT_EQ(outcome.code, 1101);
        EXPECT_EQ(outcome.verified, 1);
        transfer.reset(); // the listener has been told of the end
        EXPECT_FALSE(wentBack);
        EXPECT_EQ(last, kBigSize);
        const std::string content = Contents(m_destination);
        EXPECT_EQ(content.size(), kBigSize);
        whole = whole.empty() ? content : whole;
        EXPECT_TRUE(content == whole);
        EXPECT_EQ(FileCount(m_folder.Folder()), 1);
    }
}

TEST_F(Transfers, SendAndReplaceFiles) {
    const Queue queue = MakeQueue(m_service.Url());
    const std::filesystem::path local = m_folder.Folder() / u8"Überblick — 概要.txt";
    const std::filesystem::path back = m_folder.Folder() / "back";
    std::string content(kBigSize, 'x');
    std::string id;
    for (const bool isNew : {true, false}) {
        content.back() = isNew ? '1' : '2';
        Store(local, content);
        const TransferPtr upload =
            StartUpload(queue, isNew ? kProjects : nullptr, isNew ? nullptr : id.c_str(), local);
        const brevint_outcome sent = Outcome(upload);
        ASSERT_EQ(sent.state, BREVINT_TRANSFER_FINISHED) << sent.text << sent.server_message;
        id = sent.item_id;
        EXPECT_TRUE(std::filesystem::remove(local)); // it is not open any more
        const TransferPtr download = StartDownload(queue, id, back);
        EXPECT_EQ(Outcome(download).state, BREVINT_TRANSFER_FINISHED);
        EXPECT_EQ(Contents(back), content);
    }
}

TEST(Upload, HasTheBodyOfTheCall) {
    constexpr std::size_t kSizes[] = {0, 1, 700'001};
    for (const std::size_t size : kSizes) {
        SCOPED_TRACE(size);
        ScriptedServer server;
        server.On("*").Reply(200, {}, kDone);
        const TempFolder folder;
        const std::filesystem::path local = folder.Folder() / u8"Überblick — 概要.txt";
        Store(local, ScriptedServer::Pattern(size));
        WebRequestFactory requests;
        const std::unique_ptr<CUploadFileResponse> job(CRepositoryProxy(&requests).UploadFile(
            server.Url("/"), L"folder", folder.Path(L"Überblick — 概要.txt")));
        const Queue queue = MakeQueue(Narrow(server.Url("/")));
        const TransferPtr transfer = StartUpload(queue, "folder", nullptr, local);
        EXPECT_EQ(Outcome(transfer).state, BREVINT_TRANSFER_FINISHED);
        const auto sent = server.Requests();
        ASSERT_EQ(sent.size(), 3U); // the call, the transfer and its poll
        EXPECT_EQ(sent[0].target, sent[1].target);
        EXPECT_EQ(sent[0].Header("Content-Type"), sent[1].Header("Content-Type"));
        EXPECT_EQ(sent[1].Header("Content-Length"), std::to_string(sent[0].body.size()));
        EXPECT_TRUE(sent[0].body == sent[1].body);
    }
}

TEST(Upload, NeverForgesItsForm) {
    const std::string delimiter = "\r\n-----------------------8cdfaf76df000f9";
    const std::string block(256 * 1024, 'x'); // what is read at a time
    struct Case {
        std::string content;
        bool isHarmless;
    };
    const Case cases[] = {{"x" + delimiter.substr(1), true},
                          {delimiter.substr(0, delimiter.size() - 1), true},
                          {delimiter.substr(2), false},
                          {"x" + delimiter, false},
                          {block.substr(10) + delimiter + block, false},
                          {block + "\r\n" + delimiter + "--\r\n", false}};
    const TempFolder folder;
    const std::filesystem::path local = folder.Folder() / "file";
    ScriptedServer server;
    server.On("*").Reply(200, {}, kDone);
    const Queue queue = MakeQueue(Narrow(server.Url("/")));
    for (const auto& [content, isHarmless] : cases) {
        SCOPED_TRACE(content.size());
        Store(local, content);
        const TransferPtr transfer = StartUpload(queue, "folder", nullptr, local);
        const brevint_outcome outcome = Outcome(transfer);
        EXPECT_EQ(outcome.state, isHarmless ? BREVINT_TRANSFER_FINISHED : BREVINT_TRANSFER_FAILED);
        EXPECT_EQ(outcome.code, isHarmless ? 1101 : 1611) << outcome.text;
    }
    for (const char* const name : {"a\"b", "a\nb"}) {
        const TransferPtr transfer = StartUpload(queue, "folder", nullptr, folder.Folder() / name);
        EXPECT_STREQ(Outcome(transfer).text,
                     "The file's name has a character that cannot be sent.");
    }
    // Those that failed have sent a part of the body at most, and their end not at all.
    for (const ScriptedServer::Request& request : server.Requests()) {
        const bool isWhole =
            std::to_string(request.body.size()) == request.Header("Content-Length");
        EXPECT_EQ(request.body.find(delimiter),
                  isWhole ? request.body.size() - delimiter.size() - 4 : std::string::npos);
    }
}

TEST(Upload, TakesTheServicesRepliesOnly) {
    const std::string job = "<ResponseData><JobId>1</JobId></ResponseData>";
    const std::string finished = "<ResponseData><Status>2</Status><Details>";
    const std::pair<std::string, std::string> replies[] = {
        {"<!DOCTYPE html><html><br></html>", ""},
        {"<html><JobId>1</JobId></html>", ""},
        {"<ResponseData><JobId/></ResponseData>", ""},
        {"<ResponseData><JobId>../identity</JobId></ResponseData>", ""},
        {job, "<html/>"},
        {job, finished + "</Details></ResponseData>"},
        {job, finished + "a b</Details></ResponseData>"},
    };
    const TempFolder folder;
    const std::filesystem::path local = folder.Folder() / "file";
    Store(local, "content");
    for (const auto& [accepted, polled] : replies) {
        SCOPED_TRACE(accepted + polled);
        ScriptedServer server;
        server.On("*").Reply(200, {}, accepted);
        server.On("*").Reply(200, {}, polled);
        const Queue queue = MakeQueue(Narrow(server.Url("/")));
        const TransferPtr transfer = StartUpload(queue, "folder", nullptr, local);
        const brevint_outcome outcome = Outcome(transfer);
        EXPECT_EQ(outcome.state, BREVINT_TRANSFER_FAILED);
        EXPECT_EQ(outcome.code, 1104) << outcome.text;
        EXPECT_EQ(outcome.job_goes_on, accepted == job ? 1 : 0);
    }
}

TEST_F(Transfers, SayWhyAFileWasNotSent) {
    const Queue queue = MakeQueue(m_service.Url());
    const auto make = [&](const char* name, const char* content) {
        Store(m_folder.Folder() / name, content);
        return m_folder.Folder() / name;
    };
    struct Case {
        std::filesystem::path path;
        int code;
        Misbehaviour misbehaviour;
        int connection = BREVINT_CONNECTION_FINE;
    };
    const Case cases[] = {
        {make("program.exe", "x"), 1605, {}},
        {m_folder.Folder() / "missing", 1611, {}},
        {make("Big.bin", "x"), 1600, {}},
        // The service may have had all of it, so it is not sent again.
        {make("lost", "x"),
         1102,
         {.breakOff = Break::Cut, .breakAfter = 1'000'000, .requests = 1},
         BREVINT_CONNECTION_BROKEN_OFF},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.path);
        m_service.Misbehave(test.misbehaviour);
        const TransferPtr upload = StartUpload(queue, kProjects, nullptr, test.path);
        const brevint_outcome outcome = Outcome(upload);
        EXPECT_EQ(outcome.state, BREVINT_TRANSFER_FAILED);
        EXPECT_EQ(outcome.code, test.code) << outcome.text;
        EXPECT_EQ(outcome.connection, test.connection);
    }
}

// The first download breaks off when its session ends. The next session ends amidst the queue.
TEST_F(Transfers, WaitForASignInAndGoOn) {
    constexpr int kCount = 16;
    const Queue queue = MakeQueue(m_service.Url());
    std::atomic<int> finished = 0;
    Listener listener = [&](brevint_transfer*, const brevint_progress& progress) {
        if (progress.state == BREVINT_TRANSFER_FINISHED && ++finished == kCount / 4) {
            m_service.Misbehave({.endsSession = true, .requests = 1});
        }
    };
    const auto path = [&](int number) {
        return m_folder.Folder() / std::to_string(number);
    };
    m_service.Misbehave(
        {.breakOff = Break::Cut, .breakAfter = 100'000, .endsSession = true, .requests = 1});
    std::vector<TransferPtr> transfers;
    transfers.push_back(StartDownload(queue, m_big, path(0), kBigSize, &listener));
    brevint_transfer_wait(transfers[0].get(), kLongEnough);
    for (int i = 1; i < kCount; ++i) {
        if (i % 2 == 0) {
            transfers.push_back(StartDownload(queue, m_big, path(i), kBigSize, &listener));
            continue;
        }
        Store(path(i), ScriptedServer::Pattern(1'000'000U + static_cast<unsigned>(i)));
        transfers.push_back(StartUpload(queue, kProjects, nullptr, path(i)));
    }
    int signIns = 0;
    const auto needsSignIn = [](const TransferPtr& transfer) {
        brevint_progress progress;
        brevint_progress_init(&progress, sizeof progress);
        EXPECT_EQ(brevint_transfer_wait(transfer.get(), kLongEnough), 1);
        brevint_transfer_progress(transfer.get(), &progress);
        return progress.state == BREVINT_TRANSFER_NEEDS_SIGN_IN;
    };
    while (std::ranges::any_of(transfers, needsSignIn)) {
        for (int i = 0; i < kCount; i += 2) {
            EXPECT_TRUE(!std::filesystem::exists(path(i)) ||
                        std::filesystem::file_size(path(i)) == kBigSize);
        }
        CInternetCache().DeleteCookie(Wide(m_service.Url()).c_str());
        SignIn();
        brevint_queue_signed_in(queue.get());
        ++signIns;
    }
    EXPECT_GE(signIns, 2);
    for (int i = 0; i < kCount; ++i) {
        const brevint_outcome outcome = Outcome(transfers[static_cast<std::size_t>(i)]);
        ASSERT_EQ(outcome.state, BREVINT_TRANSFER_FINISHED) << outcome.text;
        const TransferPtr again = StartDownload(queue, outcome.item_id, m_destination);
        ASSERT_EQ(Outcome(again).state, BREVINT_TRANSFER_FINISHED);
        EXPECT_TRUE(Contents(m_destination) == Contents(path(i)));
    }
}

// What was refused to the session before asks for no other sign-in.
TEST(SignIn, MayComeBeforeTheRefusalOfWhatItIsFor) {
    const TempFolder folder;
    ScriptedServer server;
    const Queue queue = MakeQueue(Narrow(server.Url("/")));
    const auto expectRefusal = [&](const char* target, const char* gate) {
        server.On(target)
            .Head(302, {{"Location", "/"}, {"Content-Length", "1"}})
            .Wait(gate)
            .Send("x");
    };
    server.On("/application/identity").Reply(302, {{"Location", "/"}});

    expectRefusal("/Repository/Files/id", "file");
    server.On("/Repository/Files/id").Reply(200, {}, "content");
    const TransferPtr file = StartDownload(queue, "id", folder.Folder() / "file");
    ASSERT_TRUE(server.AwaitArrivalAt("file"));
    brevint_queue_signed_in(queue.get());
    server.Open("file");
    EXPECT_EQ(Outcome(file).state, BREVINT_TRANSFER_FINISHED) << Outcome(file).text;

    expectRefusal("/Repository/Items/id/Items", "folder");
    server.On("/Repository/Items/id/Items").Reply(200, {}, "<ResponseData/>");
    const GroupPtr group =
        Start(brevint_queue_download_folder, queue, "id", folder.Folder() / "folder");
    ASSERT_TRUE(server.AwaitArrivalAt("folder"));
    brevint_queue_signed_in(queue.get());
    server.Open("folder");
    EXPECT_EQ(Outcome(group).state, BREVINT_TRANSFER_FINISHED) << Outcome(group).text;
}

TEST_F(Transfers, AreCancelledWhileTheServiceIsSilent) {
    m_service.Misbehave({.breakOff = Break::Silence, .breakAfter = 500'000});
    const Queue queue = MakeQueue(m_service.Url(), 1);
    std::mutex mutex;
    std::condition_variable changed;
    std::uint64_t done = 0;
    Listener listener = [&](brevint_transfer*, const brevint_progress& progress) {
        const std::scoped_lock lock(mutex);
        done = progress.bytes_done;
        changed.notify_all();
    };
    const TransferPtr first = StartDownload(queue, m_big, m_destination, kBigSize, &listener);
    const TransferPtr second = StartDownload(queue, m_big, m_folder.Folder() / "second");
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return done > 0; });
    }
    m_service.Misbehave({});
    brevint_transfer_cancel(first.get());
    EXPECT_EQ(Outcome(first).state, BREVINT_TRANSFER_CANCELLED);
    EXPECT_FALSE(std::filesystem::exists(m_destination));
    EXPECT_EQ(Outcome(second).state, BREVINT_TRANSFER_FINISHED); // it has the place of the first
    EXPECT_EQ(FileCount(m_folder.Folder()), 1);
}

// The process may end while the thread of a cancelled transfer is inside the platform.
TEST(Transfer, DoesNotHoldUpTheProcessOnceItIsCancelled) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            ScriptedServer server;
            server.On("*").Head(200, {{"Content-Length", "9"}}).Send("four").Wait("never");
            const Queue queue = MakeQueue(Narrow(server.Url("/")));
            {
                const TempFolder folder;
                const TransferPtr transfer = StartDownload(queue, "id", folder.Folder() / "file");
                server.AwaitArrivalAt("never");
            }
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(Transfers, CancelledWhileProcessedSayThatTheJobGoesOn) {
    ReferenceService slow({.unfinishedPolls = 1'000'000});
    slow.Start();
    const std::wstring url = Wide(slow.Url());
    delete CSignInProxy(&m_requests).SignIn(url.c_str(), L"ada", L"ada-secret");
    const Queue queue = MakeQueue(slow.Url());
    Store(m_destination, "content");
    std::atomic<bool> cancelled = false;
    Listener listener = [&](brevint_transfer* transfer, const brevint_progress& progress) {
        if (progress.state == BREVINT_TRANSFER_PROCESSING && !cancelled.exchange(true)) {
            brevint_transfer_cancel(transfer);
        }
    };
    brevint_upload request;
    brevint_upload_init(&request, sizeof request);
    const std::string local = Utf8(m_destination);
    request.folder_id = kProjects;
    request.local_path = local.c_str();
    request.listener = CallListener;
    request.user = &listener;
    const TransferPtr upload(brevint_queue_upload(queue.get(), &request));
    const brevint_outcome outcome = Outcome(upload);
    EXPECT_EQ(outcome.state, BREVINT_TRANSFER_CANCELLED);
    EXPECT_EQ(outcome.job_goes_on, 1);
    EXPECT_STRNE(outcome.job_id, "");
}

TEST_F(Transfers, MayBeLetGoAtAnyMoment) {
    const Queue queue = MakeQueue(m_service.Url());
    const std::filesystem::path sent = m_folder.Folder() / "sent.txt";
    Store(sent, std::string(300'000, 's'));
    std::mt19937 random(7);
    std::mutex mutex;
    std::condition_variable changed;
    for (int round = 0; round < 100; ++round) {
        const auto path = m_folder.Folder() / std::to_string(round);
        const std::uint64_t stop = random() % kBigSize;
        const bool frees = round % 2 == 0;
        bool begun = false;
        bool done = false;
        Listener listener = [&](brevint_transfer* transfer, const brevint_progress& progress) {
            {
                const std::scoped_lock lock(mutex);
                const bool isDue =
                    progress.bytes_done >= stop || progress.state >= BREVINT_TRANSFER_FINISHED;
                if (!isDue || std::exchange(begun, true)) {
                    return;
                }
            }
            EXPECT_NE(progress.state, BREVINT_TRANSFER_FAILED);
            (frees ? brevint_transfer_free : brevint_transfer_cancel)(transfer);
            const std::scoped_lock lock(mutex);
            done = true;
            changed.notify_all();
        };
        TransferPtr transfer = StartDownload(queue, m_big, path, kBigSize, &listener);
        TransferPtr other = StartUpload(queue, kProjects, nullptr, sent);
        if (round % 3 == 0) {
            other.reset();
        }
        if (frees) {
            static_cast<void>(transfer.release()); // the listener's, at the latest at the end
            std::unique_lock lock(mutex);
            changed.wait(lock, [&] { return done; });
        }
        transfer.reset();
        std::filesystem::remove(path);
    }
    std::size_t parts = 0;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder.Folder())) {
        parts += entry.path().filename().string().starts_with(".brevint-") ? 1U : 0U;
    }
    EXPECT_EQ(parts, 0U);
}

} // namespace
} // namespace brevint::test
