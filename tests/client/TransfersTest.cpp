#include "brevint/client.h"
#include "service/ReferenceService.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace brevint::test {
namespace {

constexpr std::uint64_t kSize = 3'000'001;

void Store(const std::filesystem::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

std::string Contents(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// An application's own loop, which the thread of the test runs.
class Loop {
public:
    void Post(std::function<void()> function) {
        const std::lock_guard lock(m_mutex);
        m_posted.push_back(std::move(function));
        m_changed.notify_all();
    }

    /// Runs what is posted until it is over.
    void RunUntil(const std::function<bool()>& isOver) {
        while (!isOver()) {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [&] { return !m_posted.empty(); });
            const std::function<void()> next = std::move(m_posted.front());
            m_posted.pop_front();
            lock.unlock();
            next();
        }
    }

    /// Runs what is there now.
    void RunRest() {
        while (!m_posted.empty()) {
            m_posted.front()();
            m_posted.pop_front();
        }
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_posted;
};

class Transfers : public testing::Test {
protected:
    Transfers() : m_service({.unfinishedPolls = 0, .patternFiles = {{"Big.bin", kSize}}}) {
        m_service.Start();
    }

    Client MakeClient(Executor executor = {}) {
        Client client(m_service.Url(), {.transfers = {.firstPause = std::chrono::milliseconds(1),
                                                      .longestPause = std::chrono::milliseconds(1)},
                                        .executor = std::move(executor)});
        client.SignIn("ada", "ada-secret");
        return client;
    }
    Executor Poster() {
        return [this](std::function<void()> posted) {
            m_loop.Post(std::move(posted));
        };
    }

    service::ReferenceService m_service;
    TempFolder m_folder;
    Loop m_loop;
    const ItemRef m_big{kProjects, "Big.bin"};
    const std::filesystem::path m_destination = m_folder.Folder() / "Big.bin";
};

TEST_F(Transfers, TakeEveryNameThereAndBack) {
    Client client = MakeClient();
    for (const char8_t* name :
         {u8"Überblick — 概要 📷.txt", u8".leading", u8"100% #1.txt", u8"a 'b' & {c};d=e+f.txt"}) {
        const std::filesystem::path local = m_folder.Folder() / name;
        Store(local, "one");
        const Outcome sent = client.Upload(local, kProjects).Wait();
        ASSERT_TRUE(sent) << sent.error.text;
        EXPECT_EQ(sent.localPath, local);
        const std::u8string u8name = local.filename().u8string();
        const std::string path(u8name.begin(), u8name.end());
        EXPECT_EQ(client.Find(kProjects, path).id, sent.itemId);
        Store(local, "other");
        EXPECT_TRUE(client.Replace({kProjects, path}, local).Wait());
        Store(local, "");
        const Outcome fetched = client.Download({kProjects, path}, local).Wait();
        EXPECT_TRUE(fetched) << fetched.error.text;
        EXPECT_EQ(Contents(local), "other");
    }
    Error error;
    EXPECT_FALSE(client.Download({kProjects, "none"}, m_destination, {}, {.error = &error}));
    EXPECT_EQ(error.failure, Failure::NotFound);
    EXPECT_EQ(client.Upload(m_folder.Folder() / "none", kProjects, {}, {.error = &error})
                  .Wait()
                  .error.failure,
              Failure::LocalFile);
    EXPECT_FALSE(error); // of the call
    Store(m_destination, "");
    const Outcome wrong = client.Download(m_big, m_destination, {.listedSize = 1}).Wait();
    EXPECT_EQ(wrong.state, TransferState::Failed);
}

TEST_F(Transfers, TellTheExecutorsThread) {
    Client client = MakeClient(Poster());
    m_service.Misbehave({.bytesPerSecond = 10 * kSize});
    std::vector<Progress> told;
    const auto thread = std::this_thread::get_id();
    Transfer transfer =
        client.Download(m_big, m_destination, {.onChange = [&](const Progress& now) {
                            EXPECT_EQ(std::this_thread::get_id(), thread);
                            EXPECT_TRUE(told.empty() || now.bytesDone >= told.back().bytesDone);
                            told.push_back(now);
                        }});
    EXPECT_TRUE(transfer.Wait()); // though the loop stands still
    EXPECT_TRUE(told.empty());
    m_loop.RunUntil([&] { return !told.empty() && IsFinal(told.back().state); });
    EXPECT_GT(told.size(), 2U);
    EXPECT_EQ(told.back().bytesDone, kSize);
    EXPECT_EQ(told.back().bytesTotal, kSize);
    EXPECT_EQ(std::filesystem::file_size(m_destination), kSize);
}

TEST_F(Transfers, TellNothingOnceTheyAreDestroyed) {
    for (const bool posts : {false, true}) {
        SCOPED_TRACE(posts);
        Client client = MakeClient(posts ? Poster() : Executor());
        m_service.Misbehave(
            {.breakOff = service::Misbehaviour::Break::Silence, .breakAfter = kSize / 2});
        struct Seen { // by the callback, which may return after the end of this round
            std::mutex mutex;
            std::condition_variable changed;
            std::optional<Transfer> transfer;
            int after = 0;
            bool isDestroyed = false;
        };
        const auto seen = std::make_shared<Seen>();
        const auto onChange = [seen](const Progress& now) {
            const std::shared_ptr<Seen> kept = seen;
            const std::lock_guard lock(kept->mutex); // the transfer is there
            kept->after += kept->isDestroyed ? 1 : 0;
            if (now.state == TransferState::Running && kept->transfer) {
                kept->transfer.reset();
                kept->isDestroyed = true;
                kept->changed.notify_all();
            }
        };
        std::unique_lock lock(seen->mutex);
        seen->transfer = client.Download(m_big, m_destination, {.onChange = onChange});
        if (posts) {
            lock.unlock();
            m_loop.RunUntil([&] { return seen->isDestroyed; });
            m_loop.RunRest();
            lock.lock();
        }
        seen->changed.wait(lock, [&] { return seen->isDestroyed; });
        EXPECT_EQ(seen->after, 0);
        EXPECT_FALSE(std::filesystem::exists(m_destination));
    }
}

TEST_F(Transfers, AreCancelledByWhatACallbackThrows) {
    const auto onChange = [](const Progress& now) {
        if (now.state == TransferState::Running) {
            throw std::domain_error("thrown by the callback");
        }
    };
    const Executor cases[] = {{}, Poster(), [](const std::function<void()>&) {
                                  throw std::domain_error("thrown by the executor");
                              }};
    for (const Executor& executor : cases) {
        Client client = MakeClient(executor);
        m_service.Misbehave(
            {.breakOff = service::Misbehaviour::Break::Silence, .breakAfter = kSize / 2});
        const Transfer transfer = client.Download(m_big, m_destination, {.onChange = onChange});
        if (&executor == &cases[1]) {
            m_loop.RunUntil([&] { return IsFinal(transfer.GetProgress().state); });
        }
        EXPECT_THROW(transfer.Wait(), std::domain_error);
        EXPECT_EQ(transfer.GetOutcome().state, TransferState::Cancelled);
    }
}

TEST_F(Transfers, AreWaitedForAndGoOnAfterASignIn) {
    Client client = MakeClient();
    const Item big = client.Find(kProjects, "Big.bin");
    m_service.Misbehave({.breakOff = service::Misbehaviour::Break::Cut,
                         .breakAfter = kSize / 2,
                         .endsSession = true,
                         .requests = 1});
    std::atomic<bool> hasStopped = false;
    Transfer another; // begun by a callback of the sign-in, on its thread
    Transfer transfer =
        client.Download(big, m_destination, {.onChange = [&](const Progress& now) {
                            if (now.state == TransferState::Waiting && hasStopped) {
                                another = client.Download(m_big, m_folder.Folder() / "another");
                            }
                        }});
    EXPECT_EQ(transfer.Wait().state, TransferState::NeedsSignIn);
    hasStopped = true;
    client.SignIn("ada", "ada-secret");
    EXPECT_TRUE(transfer.Wait());
    ASSERT_TRUE(another);
    EXPECT_TRUE(another.Wait());

    m_service.Misbehave({.breakOff = service::Misbehaviour::Break::Silence});
    transfer = client.Download(m_big, m_destination, {.keepsPart = true});
    EXPECT_FALSE(transfer.Wait({}, std::chrono::milliseconds(1)));
    StopSource stop;
    std::thread stopper([&] { stop.request_stop(); });
    EXPECT_FALSE(IsFinal(transfer.Wait(stop.get_token()).state));
    stopper.join();
    Transfer other = client.Download(m_big, m_folder.Folder() / "other");
    other.Cancel();
    EXPECT_EQ(other.Wait().error.failure, Failure::Cancelled);
    client = Client("http://127.0.0.1"); // the one before goes, and its transfers end
    EXPECT_EQ(transfer.Wait().state, TransferState::Cancelled);
}

TEST_F(Transfers, MoveFoldersThereAndBack) {
    Client client = MakeClient(Poster());
    const std::filesystem::path source = m_folder.Folder() / "source";
    std::filesystem::create_directories(source / "below");
    Store(source / "below" / u8"Überblick 📷.txt", "content");
    Store(source / "empty.txt", "");
    const std::string target = client.CreateFolder(kProjects, "Target");
    std::vector<GroupProgress> told;
    TransferGroup sent = client.UploadFolder(source, {kProjects, "Target"},
                                             {.onChange = [&](const GroupProgress& now) {
                                                 told.push_back(now);
                                             }});
    EXPECT_EQ(sent.Wait().state, TransferState::Failed); // one of its entries has
    m_loop.RunUntil([&] { return !told.empty() && IsFinal(told.back().state); });
    EXPECT_EQ(told.back().entryCount, 3U);
    EXPECT_EQ(told.back().filesDone, 1U);
    EXPECT_EQ(told.back().filesFailed, 1U);
    EXPECT_EQ(told.back().bytesTotal, 7U);
    for (std::size_t index = 0; index < told.back().entryCount; ++index) {
        const GroupEntry entry = sent.GetEntry(index);
        EXPECT_EQ(entry.action, entry.path == "empty.txt" ? EntryAction::Refuse
                                : entry.path == "below"   ? EntryAction::MakeFolder
                                                          : EntryAction::Transfer);
        EXPECT_EQ(!sent.GetEntryOutcome(index), entry.path == "empty.txt");
    }
    EXPECT_THROW(std::ignore = sent.GetEntry(3), std::out_of_range);

    const std::filesystem::path back = m_folder.Folder() / "back";
    const FolderOptions plan{.planOnly = true};
    TransferGroup fetched = client.DownloadFolder(target, back, plan);
    EXPECT_TRUE(fetched.Wait());
    EXPECT_FALSE(std::filesystem::exists(back));
    fetched = client.DownloadFolder(target, back, {.existing = Existing::Update});
    EXPECT_TRUE(fetched.Wait());
    EXPECT_EQ(Contents(back / "below" / u8"Überblick 📷.txt"), "content");
    EXPECT_EQ(client.DownloadFolder(target, back).Wait().error.failure, Failure::Exists);
}

} // namespace
} // namespace brevint::test
