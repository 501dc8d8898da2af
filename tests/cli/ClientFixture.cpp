#include "tests/cli/ClientFixture.h"

#include "cli/commands/Commands.h"
#include "cli/output/Paths.h"
#include "cli/session/PrivateFile.h"
#include "cli/session/Session.h"
#include "service/Blob.h"
#include "tests/support/Environment.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace brevint::test {

namespace {

/// Every member of the document, but those of failures, must stand in the table of commands.
void ExpectDocumented(const nlohmann::json& document, const std::string& names) {
    if (!document.is_structured()) {
        return;
    }
    for (const auto& [name, value] : document.items()) {
        if (name != "error") {
            EXPECT_TRUE(document.is_array() || names.find("`" + name + "`") != std::string::npos)
                << name;
            ExpectDocumented(value, names);
        }
    }
}

service::ServiceOptions OptionsWith(const char* name, std::size_t size) {
    service::ServiceOptions options;
    options.patternFiles = {{name, size}};
    return options;
}

} // namespace

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteFile(const std::filesystem::path& path, const std::string& content) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

ClientTest::ClientTest() {
    for (const char* variable : {"XDG_STATE_HOME", "LOCALAPPDATA"}) {
        SetVariable(variable, cli::PathToUtf8(m_state.Folder()));
    }
    ClearVariable("BREVINT_LOCAL_RESPONSES");
}

ClientTest::~ClientTest() = default;

ClientRun ClientTest::Start(const std::vector<std::string>& arguments, const std::string& input) {
    return ClientRun(arguments, input, Work(), m_streams.Folder());
}

ClientRun::Result ClientTest::Run(const std::vector<std::string>& arguments,
                                  const std::string& input) {
    return Start(arguments, input).Wait();
}

nlohmann::json ClientTest::RunJson(std::vector<std::string> arguments, int exitCode) {
    arguments.emplace_back("--json");
    const ClientRun::Result result = Run(arguments);
    EXPECT_EQ(exitCode, result.exitCode) << result.error;
    nlohmann::json document = nlohmann::json::parse(result.output, nullptr, false);
    const auto row = std::ranges::find(cli::AllCommands(), arguments.front(),
                                       [](const cli::CommandRow& command) { return command.name; });
    ExpectDocumented(document, row->document);
    return document;
}

void ClientTest::KeepSession(const std::string& url, const std::string& cookies) {
    cli::SaveSession({url, "ada", cookies, {}});
}

std::filesystem::path ClientTest::SessionFile() const {
    return cli::StateFolder() / "session.json";
}

std::set<std::string> ClientTest::WorkNames() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(Work())) {
        names.insert(cli::PathToUtf8(entry.path().filename()));
    }
    return names;
}

ClientServiceTest::ClientServiceTest() : m_service(OptionsWith("Big.bin", kBigSize)) {
    m_service.Start();
}

ClientRun::Result ClientServiceTest::SignIn(const std::string& user, const std::string& input) {
    return Run({"sign-in", "--url", m_service.Url(), "--user", user}, input);
}

std::string ClientServiceTest::Pattern(std::size_t size) {
    std::string bytes(size, '\0');
    service::MakePatternBlob(size)->Read(0, bytes.data(), size);
    return bytes;
}

} // namespace brevint::test
