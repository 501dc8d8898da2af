// The commands on files and folders, against the reference service.

#include "cli/output/Paths.h"
#include "service/ReferenceService.h"
#include "tests/cli/ClientFixture.h"

namespace brevint::test {
namespace {

using nlohmann::json;

std::string Pattern(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(static_cast<unsigned char>(i * 31 + i / 256));
    }
    return bytes;
}

class ClientRepositoryTest : public ClientTest {
protected:
    ClientRepositoryTest() {
        m_service.Start();
        SignIn("ada", "ada-secret\n");
    }

    void SignIn(const std::string& user, const std::string& input) {
        EXPECT_EQ(0, Run({"sign-in", "--url", m_service.Url(), "--user", user}, input).exitCode);
    }

    /// The item's record in its folder's listing; null when it is not there.
    json Record(const std::string& folder, const std::string& name) {
        const json listing = RunJson({"ls", folder});
        for (const json& item : listing["items"]) {
            if (item["name"] == name) {
                return item;
            }
        }
        return nullptr;
    }

    static service::ServiceOptions Options() {
        service::ServiceOptions options;
        options.patternFiles = {{"Big.bin", 3'000'000}};
        return options;
    }

    service::ReferenceService m_service{Options()};
};

TEST_F(ClientRepositoryTest, ListsFolders) {
    const auto table = Run({"ls", "/Projects/"});
    EXPECT_EQ(0, table.exitCode) << table.error;
    for (const char* part : {"Type", "Archive", "2.8 MiB", "2024-03-04T16:05:12Z"}) {
        EXPECT_NE(std::string::npos, table.output.find(part)) << table.output;
    }
    const json big = Record("00000000-0000-0000-0000-000000000001", "Big.bin");
    EXPECT_EQ(3'000'000, big["size"]);
    EXPECT_EQ(false, big["locked"]);
    const json photos = Record("/Projects/Bridge", "Фото 📷");
    EXPECT_EQ(nullptr, photos["size"]);
    EXPECT_EQ("Folder", photos["typeDescription"]);

    const auto all = Run({"ls", "-l", "/Projects/Bridge"});
    EXPECT_NE(std::string::npos, all.output.find(photos["id"])) << all.output;
    EXPECT_NE(std::string::npos, all.output.find("\"quoted\" & <tagged>"));
}

TEST_F(ClientRepositoryTest, DownloadsFiles) {
    const std::string notes = Record("/Projects/Bridge", "Notes.txt")["id"];
    std::filesystem::create_directory(Work() / "to");
    const json results =
        RunJson({"get", notes, "/Projects/Big.bin", "/Projects/Nothing.bin",
                 "/Projects/Bridge/Überblick — 概要.txt", "/Projects/Bridge/Empty.txt", "-d", "to"},
                1)["results"];
    ASSERT_EQ(5U, results.size());
    EXPECT_EQ(3'000'000, results[1]["size"]);
    EXPECT_EQ(false, results[2]["ok"]);
    EXPECT_EQ("Span 3 needs a second look.\n", ReadFile(Work() / "to" / "Notes.txt"));
    EXPECT_EQ(Pattern(3'000'000), ReadFile(Work() / "to" / "Big.bin"));
    EXPECT_EQ("Grüße\n", ReadFile(Work() / "to" / cli::ToPath("Überblick — 概要.txt")));
    EXPECT_TRUE(std::filesystem::is_empty(Work() / "to" / "Empty.txt"));
    const auto files = std::filesystem::directory_iterator(Work() / "to");
    EXPECT_EQ(4, std::distance(begin(files), end(files)));
}

TEST_F(ClientRepositoryTest, ReplacesALocalFileOnlyByAWholeOne) {
    WriteFile(Work() / "old", "old");
    std::filesystem::permissions(Work() / "old", std::filesystem::perms::owner_read);
    EXPECT_EQ(1, Run({"get", "00000000-0000-0000-0000-00000000ffff", "-o", "old"}).exitCode);
    EXPECT_EQ(1, Run({"get", "/Projects/Bridge", "-o", "old"}).exitCode);
    EXPECT_EQ("old", ReadFile(Work() / "old"));
    EXPECT_EQ(0, Run({"get", "/Projects/Archive/Block.bin", "-o", "old"}).exitCode);
    EXPECT_EQ(Pattern(100'000), ReadFile(Work() / "old"));
    EXPECT_EQ(std::set<std::string>{"old"}, WorkNames());
}

TEST_F(ClientRepositoryTest, DownloadsToStandardOutput) {
    const auto result = Run({"get", "/Projects/Archive/Block.bin", "-o", "-"});
    EXPECT_EQ(0, result.exitCode) << result.error;
    EXPECT_TRUE(result.output == Pattern(100'000)); // and nothing else
    EXPECT_EQ(2, RunJson({"get", "/Projects/Big.bin", "-o", "-"}, 2)["error"]["exitCode"]);
    EXPECT_EQ(std::set<std::string>(), WorkNames());

    EXPECT_EQ(0, Run({"get", "/Projects/Bridge/Notes.txt", "-o", "./-"}).exitCode);
    EXPECT_EQ(std::set<std::string>{"-"}, WorkNames());
}

TEST_F(ClientRepositoryTest, SendsFiles) {
    const std::string content = Pattern(200'000);
    WriteFile(Work() / cli::ToPath("Überblick [1].bin"), content);
    WriteFile(Work() / "Virus.exe", "x");
    const json results = RunJson(
        {"put", "Überblick [1].bin", "Virus.exe", "missing", ".", "--to", "/Projects/Bridge"},
        1)["results"];
    EXPECT_EQ(true, results[0]["finished"]);
    EXPECT_EQ("UploadFileRejected", results[1]["error"]["name"]);
    EXPECT_EQ(5, results[2]["error"]["exitCode"]);
    EXPECT_EQ(5, results[3]["error"]["exitCode"]);

    EXPECT_EQ(results[0]["id"], Record("/Projects/Bridge", "Überblick [1].bin")["id"]);
    EXPECT_EQ(0, Run({"get", results[0]["id"], "-o", "back"}).exitCode);
    EXPECT_EQ(content, ReadFile(Work() / "back"));

    const auto again = Run({"put", "Überblick [1].bin", "--to", "/Projects/Bridge"});
    EXPECT_EQ(1, again.exitCode);
    EXPECT_NE(std::string::npos, again.error.find("1600 (UploadNameExists)")) << again.error;
}

TEST_F(ClientRepositoryTest, FollowsJobs) {
    WriteFile(Work() / "a.txt", "a");
    const auto sent = Run({"put", "a.txt", "--to", "/Projects", "--no-wait"});
    EXPECT_EQ(0, sent.exitCode) << sent.error;
    const std::string job = sent.output.substr(0, sent.output.find('\n'));
    EXPECT_EQ((json{{"jobId", job}, {"finished", false}}), RunJson({"job", job}));
    const json ended = RunJson({"job", job, "--wait"});
    EXPECT_EQ(Record("/Projects", "a.txt")["id"], ended["id"]);
    EXPECT_EQ(ended, RunJson({"job", job}));
    EXPECT_EQ(1, Run({"job", "00000000-0000-0000-0000-00000000ffff", "--of", "replace"}).exitCode);
    EXPECT_EQ(2, Run({"job", "a/b"}).exitCode);
    EXPECT_EQ(2, Run({"job", job, "--of", "get"}).exitCode);
}

} // namespace
} // namespace brevint::test
