#include "tests/faults/Calls.h"
#include "tests/faults/Faults.h"

#include "brevint/brevint.h"
#include "tests/library/Helpers.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/RefusedPort.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <exception>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace brevint::test {
namespace {

constexpr std::size_t kLargestAllocation = 1'000'000;

/// Whether the fault can be told from a healthy reply on this target.
bool Shows(const Fault& fault) {
    const bool isLinux = std::string_view(BREVINT_TARGET) == "Linux";
    return fault.shows == Fault::Shows::Everywhere ||
           (fault.shows == Fault::Shows::OnLinux && isLinux);
}

/// The outcomes of a call on this target, by the names of the faults: a column of the table in the
/// documentation, whose second column says for which target a row holds.
std::map<std::string, std::string> Documented(const std::string& call) {
    std::map<std::string, std::string> outcomes;
    std::ptrdiff_t column = 0;
    std::ifstream file(BREVINT_OUTCOMES);
    for (std::string line; std::getline(file, line);) {
        std::vector<std::string> cells;
        for (std::size_t at = 2, end = 0; (end = line.find(" |", at)) != std::string::npos;
             at = end + 3) {
            cells.push_back(line.substr(at, end - at));
        }
        if (line.starts_with("| the server | on |")) {
            column = std::ranges::find(cells, call) - cells.begin();
        } else if (column && cells.size() > 2 &&
                   (cells[1] == "both" || cells[1] == BREVINT_TARGET)) {
            outcomes[cells[0]] = cells.at(static_cast<std::size_t>(column));
        }
    }
    return outcomes;
}

struct RemoteFaults : testing::TestWithParam<std::size_t> {
    RemoteFaults() { WriteFile(folder.Path(L"source"), ScriptedServer::Pattern(200'000)); }

    /// The outcome of a call whose server has that fault.
    std::string Try(const Fault& fault, const Call& call) {
        // The jar is the process's, so the cookies of each sign-in have a path of their own.
        const std::string path = "/" + std::to_string(++tries);
        ScriptedServer victim;
        const std::string after = "/after";
        victim.On(after + "/Repository/Items/id/Path")
            .Reply(200, {}, "<ResponseData><Path>/p</Path></ResponseData>");
        const std::wstring bad = fault.where == Fault::Where::Refused   ? refused.Url()
                                 : fault.where == Fault::Where::Unknown ? unknown
                                                                        : victim.Url("/");
        std::string addresses[4];
        for (int step = 0; step < 4; ++step) {
            addresses[step] = Narrow(step == call.step ? bad : healthy.Url("/")) + path.substr(1) +
                              '/' + std::to_string(step);
        }
        for (int step = 0; step < 3; ++step) {
            const auto reply = HealthyReply(call, step, addresses[step + 1], path);
            healthy.On(path + '/' + std::to_string(step)).Send(reply.Text());
        }
        Misbehave(victim, fault, HealthyReply(call, call.step, addresses[call.step + 1], path),
                  Narrow(refused.Url()));
        const std::string& service = addresses[0];
        Outcome outcome;
        try {
            const MemoryLimit limit(kLargestAllocation);
            outcome =
                call.make(std::wstring(service.begin(), service.end()), folder.Folder().wstring());
        } catch (const std::exception& error) {
            outcome.text = std::string("exception: ") + error.what();
        }
        EXPECT_TRUE(outcome.isClear || (outcome.succeeded && !Shows(fault))) << outcome.text;
        if (fault.where == Fault::Where::Request) {
            WebRequestFactory factory;
            const std::unique_ptr<CPathResponse> next(
                CRepositoryProxy(&factory).GetPath(victim.Url(after), L"id"));
            EXPECT_EQ(next->GetErrorCode(), 1101) << "the next call has suffered";
        }
        return outcome.text;
    }

    ScriptedServer healthy; // for all: to start one takes long under Wine
    const RefusedPort refused;
    const TempFolder folder;
    int tries = 1000;
    // No name server is asked for a name of which a part is this long.
    const std::wstring unknown = L"http://" + std::wstring(70, L'x') + L".test/";
};

TEST_P(RemoteFaults, EndTheCallAsDocumented) {
    const Call& call = Calls()[GetParam()];
    auto documented = Documented(call.name);
    for (const Fault& fault : Faults()) {
        SCOPED_TRACE(fault.name);
        EXPECT_EQ(Try(fault, call), documented[fault.name]);
    }
    EXPECT_EQ(documented.size(), Faults().size());
}

INSTANTIATE_TEST_SUITE_P(Call, RemoteFaults, testing::Range(std::size_t{0}, Calls().size()),
                         [](const auto& test) {
                             std::string name = Calls()[test.param].name;
                             std::erase_if(name, [](char c) { return c < 'a' || c > 'z'; });
                             return name;
                         });

} // namespace
} // namespace brevint::test
