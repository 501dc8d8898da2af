#include "service/ReferenceService.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"
#include "tests/transfers/Group.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <random>
#include <set>
#include <string>

namespace brevint::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kProjects = "00000000-0000-0000-0000-000000000001";
constexpr bool kIsWindows = fs::path::preferred_separator == '\\';

class Folders : public testing::Test {
protected:
    Folders() : m_service({.unfinishedPolls = 0, .manyFiles = 80}) {
        m_service.Start();
        m_client.reset(brevint_client_new(m_service.Url().c_str(), nullptr, nullptr));
        SignIn();
    }

    void SignIn() {
        ASSERT_EQ(brevint_sign_in(m_client.get(), "ada", "ada-secret", nullptr, nullptr), 1);
    }

    std::string ItemId(const char* path) {
        brevint_items* items = nullptr;
        EXPECT_EQ(brevint_find(m_client.get(), kProjects, path, nullptr, &items, nullptr), 1);
        brevint_item item;
        brevint_item_init(&item, sizeof item);
        std::string id = items && brevint_items_get(items, 0, &item) ? item.id : "";
        brevint_items_free(items);
        return id;
    }

    service::ReferenceService m_service;
    Client m_client;
    TempFolder m_folder;
};

/// Everything below a folder, with the content of files.
std::map<fs::path, std::string> Tree(const fs::path& folder) {
    std::map<fs::path, std::string> tree;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        tree[entry.path().lexically_relative(folder)] =
            entry.is_directory() ? "(folder)" : Contents(entry.path());
    }
    return tree;
}

TEST_F(Folders, ComeBackAsTheyWereSentAndThenNeedNoUpdate) {
    const fs::path sent = m_folder.Folder() / "sent";
    const fs::path back = m_folder.Folder() / "new" / "back";
    std::size_t count = 0;
    for (const char8_t* name :
         {u8"Überblick — 概要.txt", u8" 100% + # & ; = ,.txt", u8".hidden", u8"no ending",
          u8"'a' [b] {c} ~`^!@$().x", u8"Фото 📷/👩\u200D👧.jpg", u8"a/b/c/d/e/f/deep.bin",
          u8"می\u200Cخواهم.txt", u8"%2e%2e/console.txt"}) {
        fs::create_directories((sent / name).parent_path());
        Store(sent / name, ScriptedServer::Pattern(100'000 * count++ + 1));
    }
    fs::create_directory(sent / "empty folder");
    const Queue queue = MakeQueue(m_service.Url());
    const auto run = [&](FolderFunction begin, const fs::path& path,
                         const brevint_folder_transfer& options) {
        const GroupPtr group = Start(begin, queue, ItemId("Archive"), path, options);
        EXPECT_EQ(Outcome(group).state, BREVINT_TRANSFER_FINISHED) << Outcome(group).text;
        const brevint_group_progress progress = Progress(group);
        EXPECT_EQ(progress.files_done, options.plan_only ? 0 : progress.files_total);
        return progress.files_total;
    };
    brevint_folder_transfer plan = Options();
    plan.plan_only = 1;
    brevint_folder_transfer update = Options(BREVINT_EXISTING_UPDATE);
    update.keep_times = 1;
    EXPECT_EQ(run(brevint_queue_download_folder, back, plan), 1U); // the service's own file
    EXPECT_FALSE(fs::exists(back));
    EXPECT_EQ(run(brevint_queue_upload_folder, sent, plan), count);
    EXPECT_EQ(run(brevint_queue_upload_folder, sent, Options()), count);
    EXPECT_EQ(run(brevint_queue_download_folder, back, update), count + 1);
    fs::remove(back / "Block.bin");
    EXPECT_EQ(Tree(back), Tree(sent));

    Store(sent / ".hidden", "another size");
    EXPECT_EQ(run(brevint_queue_upload_folder, sent, update), 1U);
    EXPECT_EQ(run(brevint_queue_upload_folder, sent, update), 0U);
    EXPECT_EQ(run(brevint_queue_download_folder, back, update), 2U);
    EXPECT_EQ(run(brevint_queue_download_folder, back, update), 0U);
    // The item's time, and not the time of the download.
    fs::last_write_time(back / "Block.bin",
                        fs::last_write_time(back / "Block.bin") - std::chrono::seconds(1));
    EXPECT_EQ(run(brevint_queue_download_folder, back, update), 1U);
    fs::remove(back / "Block.bin");
    EXPECT_EQ(Tree(back), Tree(sent));
}

TEST_F(Folders, LeaveOutWhatCannotBeMoved) {
    const fs::path sent = m_folder.Folder() / "sent";
    fs::create_directories(sent / "Notes.txt");
    for (const char* name : {"new.txt", "program.exe", "BRIDGE.project", "Notes.txt/x",
                             ".brevint-0123456789abcdef.part", "R&D 'plan' [draft].txt"}) {
        Store(sent / name, "x");
    }
    Store(sent / "empty.txt", "");
    const Queue queue = MakeQueue(m_service.Url());
    const std::string bridge = ItemId("Bridge");
    const GroupPtr group = Start(brevint_queue_upload_folder, queue, bridge, sent);
    const brevint_outcome outcome = Outcome(group);
    EXPECT_EQ(outcome.state, BREVINT_TRANSFER_FAILED);
    EXPECT_STREQ(outcome.text, "6 of 7 files and folders could not be moved.");
    EXPECT_EQ(Progress(group).files_failed, 6U);
    const std::map<std::string, int> expected = {
        {"new.txt", BREVINT_FAILURE_NONE},
        {"program.exe", BREVINT_FAILURE_REFUSED},
        {"BRIDGE.project", BREVINT_FAILURE_EXISTS},
        {"Notes.txt", BREVINT_FAILURE_EXISTS},
        {".brevint-0123456789abcdef.part", BREVINT_FAILURE_LOCAL_FILE},
        {"R&D 'plan' [draft].txt", BREVINT_FAILURE_EXISTS},
        {"empty.txt", BREVINT_FAILURE_LOCAL_FILE},
    };
    std::map<std::string, int> failures;
    for (const auto& [path, entry] : Entries(group)) {
        failures[path] = entry.failure;
    }
    EXPECT_EQ(failures, expected);

    // What stands in the way of a download stays; replaced is only what is a file.
    const fs::path back = m_folder.Folder() / "back";
    fs::create_directories(back / "Notes.txt");
    Store(back / "new.txt", "old");
    for (const bool replaces : {false, true}) {
        const GroupPtr download =
            Start(brevint_queue_download_folder, queue, bridge, back,
                  Options(replaces ? BREVINT_EXISTING_REPLACE : BREVINT_EXISTING_REFUSE));
        EXPECT_EQ(Outcome(download).state, BREVINT_TRANSFER_FAILED);
        EXPECT_EQ(Outcome(download).failure, BREVINT_FAILURE_EXISTS);
        EXPECT_EQ(Contents(back / "new.txt"), replaces ? "x" : "old");
        EXPECT_EQ(Contents(back / "Bridge.project"), "bridge project\n");
        EXPECT_TRUE(fs::is_empty(back / "Notes.txt"));
    }
}

std::string Item(const std::string& name, const std::string& id, bool isFolder) {
    return "<Item><UniqueId>" + id + "</UniqueId><Name>" + name + "</Name><ItemType>" +
           (isFolder ? "0</ItemType></Item>" : "1</ItemType><Data><Size>2</Size></Data></Item>");
}

TEST(HostileFolder, LeadsNowhere) {
    ScriptedServer server;
    const auto list = [&](const std::string& id, const std::string& items) {
        server.On("/Repository/Items/" + id + "/Items")
            .Reply(200, {}, "<ResponseData>" + items + "</ResponseData>");
    };
    server.On("*").Reply(200, {}, "ok");
    std::string items = Item("loop", "root", true) + Item("sub", "sub", true) +
                        Item("bad id", "../x", false) + Item("nested", "file", false);
    const std::vector<std::string> refused = {"..",
                                              ".",
                                              "",
                                              "a/b",
                                              "/etc/x",
                                              "\u202Etxt.exe",
                                              "line\u2028end",
                                              "NESTED",
                                              ".Brevint-x.part",
                                              std::string(256, 'x')};
    const std::vector<std::string> refusedOnWindows = {
        "a\\b", "C:x", "stream:x", "dot.", "blank ", "con", "Nul.txt", "COM1.x", "desktop.ini"};
    for (const auto* names : {&refused, &refusedOnWindows}) {
        for (const std::string& name : *names) {
            items += Item(name, "file", false);
        }
    }
    server.On("/Repository/Items/root/Items").Reply(503);
    list("root", items);
    // Names that a disk may take for one: by their accents, and by what nobody sees.
    list("sub", Item("again", "root", true) + Item("again2", "sub", true) +
                    Item("caf\u00E9", "1", false) + Item("cafe\u0301", "2", false) +
                    Item("x\u200Dy", "3", false) + Item("xy", "4", false));
    const TempFolder folder;
    const fs::path target = folder.Folder() / "a" / "target";
    const Queue queue = MakeQueue(Narrow(server.Url("/")));
    const GroupPtr group = Start(brevint_queue_download_folder, queue, "root", target);
    EXPECT_EQ(Outcome(group).state, BREVINT_TRANSFER_FAILED);
    std::set<std::string> moved;
    for (const auto& [path, entry] : Entries(group)) {
        if (entry.failure == BREVINT_FAILURE_NONE) {
            moved.insert(path);
        }
    }
    std::set<std::string> harmless = {"sub", "nested", "sub/caf\u00E9", "sub/x\u200Dy"};
    if (!kIsWindows) {
        harmless.insert(refusedOnWindows.begin(), refusedOnWindows.end());
    }
    EXPECT_EQ(moved, harmless);
    EXPECT_EQ(Tree(target).size(), harmless.size());
    EXPECT_EQ(FileCount(folder.Folder()), 1);
    EXPECT_EQ(FileCount(folder.Folder() / "a"), 1);
}

TEST(UploadedFolder, IsTakenAsItIsAfterItsReplyWasLost) {
    const TempFolder folder;
    fs::create_directory(folder.Folder() / "sub");
    Store(folder.Folder() / "sub" / "file", "x");
    ScriptedServer server;
    const std::string list = "GET /Repository/Items/root/Items";
    const std::string make = "POST /Repository/Items/root/Items";
    server.On(list).Reply(200, {}, "<ResponseData/>");
    server.On(list).Reply(200, {},
                          "<ResponseData>" + Item("sub", "made", true) + "</ResponseData>");
    server.On(make).Close();
    server.On(make).Reply(400, {},
                          "<ResponseData><Message>The destination already contains a folder named "
                          "'sub'.</Message></ResponseData>");
    server.On("*").Reply(200, {},
                         "<ResponseData><JobId>1</JobId><Status>2</Status>"
                         "<Details>id</Details></ResponseData>");
    const Queue queue = MakeQueue(Narrow(server.Url("/")));
    const GroupPtr group = Start(brevint_queue_upload_folder, queue, "root", folder.Folder());
    EXPECT_EQ(Outcome(group).state, BREVINT_TRANSFER_FINISHED) << Outcome(group).text;
    EXPECT_EQ(server.RequestsFor("/Repository/Items/made/Files").size(), 1U);
}

TEST_F(Folders, WaitForASignInWhenPlanningAndWhenMoving) {
    const std::string many = ItemId("Many");
    ASSERT_EQ(brevint_sign_out(m_client.get(), nullptr, nullptr), 1);
    m_service.Misbehave({.endsSession = true, .requests = 1});
    const Queue queue = MakeQueue(m_service.Url(), 1);
    const fs::path target = m_folder.Folder() / "target";
    std::atomic<bool> wasPlanning = false;
    std::atomic<bool> wasMoving = false;
    GroupListener listener = [&](brevint_group*, const brevint_group_progress& progress) {
        if (progress.state == BREVINT_TRANSFER_NEEDS_SIGN_IN) {
            (fs::exists(target) ? wasMoving : wasPlanning) = true;
            SignIn();
            brevint_queue_signed_in(queue.get());
        }
    };
    const GroupPtr group =
        Start(brevint_queue_download_folder, queue, many, target, Options(), &listener);
    while (brevint_group_wait(group.get(), kLongEnough) != 0 &&
           Progress(group).state < BREVINT_TRANSFER_FINISHED) {}
    EXPECT_TRUE(wasPlanning && wasMoving);
    EXPECT_EQ(Outcome(group).state, BREVINT_TRANSFER_FINISHED) << Outcome(group).text;
    EXPECT_EQ(Tree(target).size(), 80U);
}

TEST_F(Folders, EndAtAnyMoment) {
    enum class Ending { Free, Cancel, FreeQueue };
    const std::string many = ItemId("Many");
    const fs::path sent = m_folder.Folder() / "sent";
    for (int i = 0; i < 10; ++i) {
        fs::create_directories(sent / std::to_string(i));
        Store(sent / std::to_string(i) / "file", "content");
    }
    std::mt19937 random(7);
    std::mutex mutex;
    std::condition_variable changed;
    for (std::size_t round = 0; round < 24; ++round) {
        SCOPED_TRACE(round);
        const Ending ending =
            std::array{Ending::Free, Ending::Cancel, Ending::FreeQueue}[round % 3];
        Queue queue = MakeQueue(m_service.Url());
        const bool isUpload = round % 2 == 0;
        const std::size_t stop = random() % (isUpload ? 10 : 80);
        std::atomic<bool> isDue = false;
        bool hasEnded = false;
        GroupListener listener = [&](brevint_group* group, const brevint_group_progress& progress) {
            EXPECT_NE(progress.state, BREVINT_TRANSFER_FAILED);
            if (progress.files_done < stop || isDue.exchange(true)) {
                return;
            }
            if (ending != Ending::FreeQueue) {
                (ending == Ending::Free ? brevint_group_free : brevint_group_cancel)(group);
            }
            const std::scoped_lock lock(mutex);
            hasEnded = true;
            changed.notify_all();
        };
        const fs::path target = m_folder.Folder() / std::to_string(round);
        GroupPtr group = isUpload ? Start(brevint_queue_upload_folder, queue, ItemId("Archive"),
                                          sent, Options(BREVINT_EXISTING_REPLACE), &listener)
                                  : Start(brevint_queue_download_folder, queue, many, target,
                                          Options(), &listener);
        if (ending == Ending::Free) {
            static_cast<void>(group.release()); // the listener's
        }
        {
            std::unique_lock lock(mutex);
            changed.wait(lock, [&] { return hasEnded; });
        }
        queue.reset();
        if (group) {
            EXPECT_GE(Progress(group).state, BREVINT_TRANSFER_FINISHED);
        }
        group.reset();
        for (const auto& [path, content] : Tree(m_folder.Folder())) {
            EXPECT_FALSE(path.filename().string().starts_with(".brevint-")) << path;
        }
        fs::remove_all(target);
    }
}

} // namespace
} // namespace brevint::test
