#pragma once

#include "service/ReferenceService.h"
#include "tests/cli/ClientRun.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace brevint::test {

/// The real program with a state folder of its own and an empty folder to work in.
class ClientTest : public testing::Test {
protected:
    ClientTest();
    ~ClientTest() override;

    ClientRun Start(const std::vector<std::string>& arguments, const std::string& input = {});
    ClientRun::Result Run(const std::vector<std::string>& arguments, const std::string& input = {});
    /// The document that a run with --json prints; discarded when it printed anything else.
    nlohmann::json RunJson(std::vector<std::string> arguments, int exitCode = 0);

    /// Keeps a session, as a sign-in would.
    void KeepSession(const std::string& url, const std::string& cookies);
    std::filesystem::path SessionFile() const;

    const std::filesystem::path& Work() const { return m_work.Folder(); }
    /// Where the standard streams of runs lie: "input", "output", "error".
    const std::filesystem::path& Streams() const { return m_streams.Folder(); }
    /// The names of all that lies in the working folder, in UTF-8.
    std::set<std::string> WorkNames() const;

private:
    TempFolder m_state;
    TempFolder m_work;
    TempFolder m_streams;
};

/// The same with a reference service of the user's own.
class ClientServiceTest : public ClientTest {
protected:
    ClientServiceTest();

    ClientRun::Result SignIn(const std::string& user = "ada",
                             const std::string& input = "ada-secret\n");

    /// In the folder of the projects, of bytes as Pattern has them. More than a pipe holds.
    static constexpr std::size_t kBigSize = 3'000'000;
    static constexpr char kBig[] = "/Projects/Big.bin";
    static std::string Pattern(std::size_t size);

    service::ReferenceService m_service;
};

} // namespace brevint::test
