// The commands on files and folders, against the reference service.

#include "cli/output/Paths.h"
#include "tests/cli/ClientFixture.h"

namespace brevint::test {
namespace {

using nlohmann::json;

class ClientRepositoryTest : public ClientServiceTest {
protected:
    ClientRepositoryTest() { EXPECT_EQ(0, SignIn().exitCode); }

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
};

TEST_F(ClientRepositoryTest, ListsFolders) {
    const json photos = Record("/Projects/Bridge", "Фото 📷");
    EXPECT_EQ(nullptr, photos["size"]);
    EXPECT_EQ("Folder", photos["typeDescription"]);
    const json big = Record("00000000-0000-0000-0000-000000000001", "Big.bin");
    EXPECT_EQ(kBigSize, big["size"]);
    EXPECT_EQ(false, big["locked"]);

    const auto shown =
        Run({"ls", "/Projects/"}).output + Run({"ls", "-l", "/Projects/Bridge"}).output;
    for (const std::string part :
         {"Type", "Archive", "2.8 MiB", "2024-03-04T16:05:12Z", "\"quoted\" & <tagged>",
          photos["id"].get_ref<const std::string&>().c_str()}) {
        EXPECT_NE(std::string::npos, shown.find(part)) << part << shown;
    }
}

TEST_F(ClientRepositoryTest, DownloadsFiles) {
    const std::string notes = Record("/Projects/Bridge", "Notes.txt")["id"];
    std::filesystem::create_directory(Work() / "to");
    const json results =
        RunJson({"get", notes, kBig, "/Projects/Nothing.bin",
                 "/Projects/Bridge/Überblick — 概要.txt", "/Projects/Bridge/Empty.txt", "-d", "to"},
                1)["results"];
    ASSERT_EQ(5U, results.size());
    EXPECT_EQ(kBigSize, results[1]["size"]);
    EXPECT_EQ(false, results[2]["ok"]);
    EXPECT_EQ("Span 3 needs a second look.\n", ReadFile(Work() / "to" / "Notes.txt"));
    EXPECT_EQ(Pattern(kBigSize), ReadFile(Work() / "to" / "Big.bin"));
    EXPECT_EQ("Grüße\n", ReadFile(Work() / "to" / cli::ToPath("Überblick — 概要.txt")));
    EXPECT_TRUE(std::filesystem::is_empty(Work() / "to" / "Empty.txt"));
    const auto files = std::filesystem::directory_iterator(Work() / "to");
    EXPECT_EQ(4, std::distance(begin(files), end(files)));
}

TEST_F(ClientRepositoryTest, DownloadsToStandardOutput) {
    EXPECT_TRUE(Run({"get", kBig, "-o", "-"}).output == Pattern(kBigSize)); // and nothing else
    EXPECT_EQ(2, RunJson({"get", kBig, "-o", "-"}, 2)["error"]["exitCode"]);
    EXPECT_EQ(0, Run({"get", kBig, "-o", "./-"}).exitCode);
    EXPECT_EQ(std::set<std::string>{"-"}, WorkNames());
}

TEST_F(ClientRepositoryTest, SendsFiles) {
    const std::string content = Pattern(200'000);
    WriteFile(Work() / cli::ToPath("Überblick [1].bin"), content);
    WriteFile(Work() / "Virus.exe", "x");
    const json results = RunJson(
        {"put", "Überblick [1].bin", "Virus.exe", "missing", ".", "--to", "/Projects/Bridge"},
        1)["results"];
    EXPECT_EQ("UploadFileRejected", results[1]["error"]["name"]);
    EXPECT_EQ(5, results[2]["error"]["exitCode"]);
    EXPECT_EQ(5, results[3]["error"]["exitCode"]);
    EXPECT_EQ(results[0]["id"], Record("/Projects/Bridge", "Überblick [1].bin")["id"]);
    EXPECT_EQ(0, Run({"get", results[0]["id"], "-o", "back"}).exitCode);
    EXPECT_EQ(content, ReadFile(Work() / "back"));
    const auto again = Run({"put", "Überblick [1].bin", "--to", "/Projects/Bridge"});
    EXPECT_NE(std::string::npos, again.error.find("1600 (UploadNameExists)")) << again.error;
}

TEST_F(ClientRepositoryTest, FollowsJobs) {
    WriteFile(Work() / "a.txt", "a");
    const auto sent = Run({"put", "a.txt", "--to", "/Projects", "--no-wait"});
    const std::string job = sent.output.substr(0, sent.output.find('\n'));
    EXPECT_EQ((json{{"jobId", job}, {"finished", false}}), RunJson({"job", job}));
    const json ended = RunJson({"job", job, "--wait"});
    EXPECT_EQ(Record("/Projects", "a.txt")["id"], ended["id"]);
    EXPECT_EQ(ended, RunJson({"job", job}));
    EXPECT_EQ(1, Run({"job", "00000000-0000-0000-0000-00000000ffff", "--of", "replace"}).exitCode);
    EXPECT_EQ(2, Run({"job", "a/b"}).exitCode);
    EXPECT_EQ(2, Run({"job", job, "--of", "get"}).exitCode);
}

TEST_F(ClientRepositoryTest, ChangesItems) {
    EXPECT_EQ("CreateFolderInvalidName",
              RunJson({"mkdir", "/Projects", "a\"b"}, 1)["error"]["name"]);
    const std::string folder = RunJson({"mkdir", "/Projects", "Übersicht"})["id"];
    WriteFile(Work() / "a.txt", "first");
    WriteFile(Work() / "b.txt", "second");
    EXPECT_EQ(0, Run({"put", "a.txt", "--to", folder}).exitCode);
    const std::string file = "/Projects/Übersicht/a.txt";
    EXPECT_EQ(0, Run({"checkout", file}).exitCode);
    EXPECT_EQ(true, Record(folder, "a.txt")["locked"]);
    RunJson({"replace", file, "b.txt"});
    EXPECT_EQ(0, Run({"checkin", file}).exitCode);
    EXPECT_EQ(false, Record(folder, "a.txt")["locked"]);
    EXPECT_EQ("second", Run({"get", file, "-o", "-"}).output);
    EXPECT_EQ(file,
              RunJson({"path", Record(folder, "a.txt")["id"]})["results"][0].value("path", ""));
    RunJson({"rm", folder});
    EXPECT_EQ(nullptr, Record("/Projects", "Übersicht"));
}

TEST_F(ClientRepositoryTest, TellsOfTheService) {
    EXPECT_NE(0U, RunJson({"templates", "Reports"})["templates"].size());
    EXPECT_TRUE(RunJson({"versions"})["desktop"].is_array());
}

} // namespace
} // namespace brevint::test
