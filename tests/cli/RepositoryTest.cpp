// The commands on files and folders, against the reference service.

#include "cli/output/Paths.h"
#include "support/LocalItem.h"
#include "tests/cli/ClientFixture.h"

#include <map>

namespace brevint::test {
namespace {

using nlohmann::json;

class ClientRepositoryTest : public ClientServiceTest {
protected:
    ClientRepositoryTest() { EXPECT_EQ(0, SignIn().exitCode); }

    /// The item's record in its folder's listing; null when it is not there.
    json Record(const std::string& folder, const std::string& name) {
        const json listing = RunJson({"ls", folder});
        for (const json& item : listing["folders"][0]["items"]) {
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
    EXPECT_EQ("folder", photos["kind"]);
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
    const json results = RunJson({"get", notes, kBig, "/Projects/Nothing.bin",
                                  "/Projects/Bridge/Überblick — 概要.txt",
                                  "/Projects/Bridge/Empty.txt", "-d", "to", "--keep-times"},
                                 1)["results"];
    ASSERT_EQ(5U, results.size());
    EXPECT_EQ(kBigSize, results[1]["size"]);
    EXPECT_EQ(false, results[2]["ok"]);
    EXPECT_EQ("Span 3 needs a second look.\n", ReadFile(Work() / "to" / "Notes.txt"));
    EXPECT_EQ(1'709'568'312, LookAtLocalItem(Work() / "to" / "Notes.txt").modified);
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
    WriteFile(Work() / "Virus.EXE", "x");
    const json results = RunJson(
        {"put", "Überblick [1].bin", "Virus.EXE", "missing", ".", "--to", "/Projects/Bridge"},
        1)["results"];
    EXPECT_EQ(1, results[1]["error"]["exitCode"]);
    EXPECT_FALSE(results[1].contains("jobId")); // it was not even sent
    EXPECT_EQ(5, results[2]["error"]["exitCode"]);
    EXPECT_EQ(2, results[3]["error"]["exitCode"]);
    EXPECT_EQ(results[0]["id"], Record("/Projects/Bridge", "Überblick [1].bin")["id"]);
    EXPECT_EQ(0, Run({"get", results[0]["id"], "-o", "back"}).exitCode);
    EXPECT_EQ(content, ReadFile(Work() / "back"));
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
    EXPECT_EQ(2, Run({"rm", folder}).exitCode);
    RunJson({"rm", "-r", folder});
    EXPECT_EQ(nullptr, Record("/Projects", "Übersicht"));
}

/// What the entries of the one folder that was moved say of that member.
std::set<std::string> OfEntries(const json& document, const char* member) {
    std::set<std::string> values;
    for (const json& entry : document["results"][0]["entries"]) {
        values.insert(entry[member]);
    }
    return values;
}

TEST_F(ClientRepositoryTest, MovesTrees) {
    WriteFile(Work() / "tree" / "a.txt", "a");
    WriteFile(Work() / "tree" / "sub" / cli::ToPath("Überblick.bin"), Pattern(200'000));
    EXPECT_EQ(2, Run({"put", "tree", "--to", "/Projects"}).exitCode);
    EXPECT_EQ(5, Run({"put", "-rn", "/", "--to", "/Projects"}).exitCode); // it has no name
    EXPECT_EQ((std::set<std::string>{"a.txt", "sub", "sub/Überblick.bin"}),
              OfEntries(RunJson({"put", "-rn", "tree", "--to", "/Projects"}), "path"));
    EXPECT_EQ(nullptr, Record("/Projects", "tree"));
    WriteFile(Work() / "tree" / "empty", "");
    const json sent = RunJson({"put", "-r", "tree", "--to", "/Projects"}, 5);
    EXPECT_EQ((std::set<std::string>{"move", "make-folder", "refuse"}), OfEntries(sent, "action"));
    std::filesystem::remove(Work() / "tree" / "empty");

    const std::string tree = "/Projects/tree";
    EXPECT_EQ(2, Run({"get", tree}).exitCode);
    EXPECT_EQ((std::set<std::string>{"a.txt", "sub", "sub/Überblick.bin"}),
              OfEntries(RunJson({"get", "-r", tree, "-n", "-d", "back"}), "path"));
    EXPECT_EQ(std::set<std::string>{"tree"}, WorkNames());
    const auto got = Run({"get", "-r", tree, "-o", "back/tree"});
    EXPECT_EQ(0, got.exitCode) << got.error;
    EXPECT_EQ("a", ReadFile(Work() / "back" / "tree" / "a.txt"));
    EXPECT_EQ(Pattern(200'000),
              ReadFile(Work() / "back" / "tree" / "sub" / cli::ToPath("Überblick.bin")));
    for (const json& again : {RunJson({"put", "-r", "--update", "tree", "--to", "/Projects"}),
                              RunJson({"get", "-r", "--update", tree, "-d", "back"}),
                              RunJson({"get", "-r", "--update", tree, "-o", "back/tree"})}) {
        EXPECT_EQ(std::set<std::string>{"skip"}, OfEntries(again, "action"));
    }
}

// The session ends with the first file: what has arrived stays, nothing else does.
TEST_F(ClientRepositoryTest, EndsWithTheSession) {
    WriteFile(Work() / "tree" / "a.txt", "a");
    WriteFile(Work() / "tree" / "b.txt", "b");
    for (const auto& arguments :
         {std::vector<std::string>{"get", "-r", "/Projects/Bridge", "-j", "1"},
          {"put", "-r", "tree", "--to", "/Projects", "-j", "1"}}) {
        m_service.Misbehave({.endsSession = true, .requests = 1});
        const auto run = Run(arguments);
        EXPECT_EQ(3, run.exitCode);
        EXPECT_NE(std::string::npos, run.error.find(" has ended.")) << run.error;
        EXPECT_EQ(0, SignIn().exitCode);
    }
    std::map<std::string, std::string> arrived;
    for (const auto& file : std::filesystem::directory_iterator(Work() / "Bridge")) {
        arrived[cli::PathToUtf8(file.path().filename())] =
            file.is_directory() ? "" : ReadFile(file.path());
    }
    EXPECT_EQ((std::map<std::string, std::string>{{"Bridge.project", "bridge project\n"},
                                                  {"Фото 📷", ""}}),
              arrived);
    RunJson({"put", "-r", "--update", "tree", "--to", "/Projects"});
    EXPECT_EQ("b", Run({"cat", "/Projects/tree/b.txt"}).output);
}

// A name from the service, or a file of it, gives way only where that was asked for.
TEST_F(ClientRepositoryTest, ReplacesNothingUnasked) {
    const std::string notes = "/Projects/Bridge/Notes.txt";
    WriteFile(Work() / "Notes.txt", "mine");
    EXPECT_EQ(1, Run({"get", notes}).exitCode);
    EXPECT_EQ(1, Run({"put", "Notes.txt", "--to", "/Projects/Bridge"}).exitCode);
    EXPECT_EQ("mine", ReadFile(Work() / "Notes.txt"));
    EXPECT_EQ(Record("/Projects/Bridge", "Notes.txt")["id"],
              RunJson({"put", "Notes.txt", "--to", "/Projects/Bridge", "--overwrite",
                       "-n"})["results"][0]["id"]);
    EXPECT_EQ(0, Run({"put", "Notes.txt", "--to", "/Projects/Bridge", "--overwrite"}).exitCode);
    WriteFile(Work() / "up" / "NOTES.txt", "another file");
    EXPECT_EQ(1, Run({"put", "up/NOTES.txt", "--to", "/Projects/Bridge", "--overwrite"}).exitCode);
    EXPECT_EQ("mine", Run({"cat", notes}).output);
    EXPECT_EQ("skip", RunJson({"put", "Notes.txt", "--to", "/Projects/Bridge",
                               "--update"})["results"][0]["action"]);
    WriteFile(Work() / "Notes.txt", "other");
    EXPECT_EQ(0, Run({"get", notes, "--update"}).exitCode);
    EXPECT_EQ("mine", ReadFile(Work() / "Notes.txt"));
    std::filesystem::create_directory(Work() / "to");
    EXPECT_EQ(0, Run({"get", notes, "-o", "to"}).exitCode);
    EXPECT_EQ("mine", ReadFile(Work() / "to" / "Notes.txt"));
}

TEST_F(ClientRepositoryTest, TakesPatterns) {
    const json results = RunJson({"get", "/Projects/Bridge/*.txt", "/Projects/B*/Nothing"}, 1);
    EXPECT_EQ(5U, results["results"].size());
    EXPECT_EQ(4U, WorkNames().size());
    const std::string shown = Run({"ls", "-R", "--sort", "size", "--reverse"}).output;
    EXPECT_LT(shown.find("/Projects:"), shown.find("Block.bin"));
    const json listed = RunJson({"ls", "/Projects/*.none", "/Projects"}, 1)["folders"];
    EXPECT_EQ(1, listed[0]["error"]["exitCode"]);
    EXPECT_NE(0U, listed[1]["items"].size());
}

TEST_F(ClientRepositoryTest, TellsEvents) {
    std::istringstream lines(Run({"get", kBig, "--events"}).error);
    std::string last;
    for (std::string line; std::getline(lines, line);) {
        last = json::parse(line)["event"];
    }
    EXPECT_EQ("finished", last);
    EXPECT_EQ(2, json::parse(Run({"get", "--events"}).error)["error"]["exitCode"]);
}

TEST_F(ClientRepositoryTest, TellsOfTheService) {
    EXPECT_NE(0U, RunJson({"templates", "Reports"})["templates"].size());
    EXPECT_TRUE(RunJson({"versions"})["desktop"].is_array());
}

} // namespace
} // namespace brevint::test
