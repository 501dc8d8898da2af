#include "tests/faults/Calls.h"
#include "tests/faults/Faults.h"
#include "tests/faults/OutcomeTable.h"

#include "brevint/brevint.h"
#include "tests/library/Helpers.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/RefusedPort.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <exception>
#include <memory>

namespace brevint::test {
namespace {

constexpr std::size_t kLargestAllocation = 1'000'000;

/// Whether the fault can be told from a healthy reply on this target.
bool Shows(const Fault& fault) {
    const bool isLinux = std::string_view(BREVINT_TARGET) == "Linux";
    return fault.shows == Fault::Shows::everywhere ||
           (fault.shows == Fault::Shows::onLinux && isLinux);
}

class RemoteFaults : public testing::Test {
protected:
    RemoteFaults() { WriteFile(folder.Path(L"source"), ScriptedServer::Pattern(200'000)); }

    /// The outcome of a call whose server has that fault.
    std::string Try(const Fault& fault, const Call& call) {
        // The jar is the process's, so the cookies of each sign-in have a path of their own.
        const std::string path = "/" + std::to_string(++tries);
        ScriptedServer victim;
        const std::string after = "/after";
        victim.On(after + "/Repository/Items/id/Path")
            .Reply(200, {}, "<ResponseData><Path>/p</Path></ResponseData>");
        const std::wstring bad = fault.where == Fault::Where::refused   ? refused.Url()
                                 : fault.where == Fault::Where::unknown ? kUnknown
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
        if (fault.where == Fault::Where::request) {
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
    const std::wstring kUnknown = L"http://" + std::wstring(70, L'x') + L".test/";
};

TEST_F(RemoteFaults, EndEveryCallAsDocumented) {
    OutcomeRow headings{"the server"};
    for (const Call& call : Calls()) {
        headings.push_back(call.name);
    }
    std::vector<OutcomeRow> rows;
    for (const Fault& fault : Faults()) {
        SCOPED_TRACE(fault.name);
        OutcomeRow& row = rows.emplace_back(OutcomeRow{fault.name});
        for (const Call& call : Calls()) {
            SCOPED_TRACE(call.name);
            row.push_back(Try(fault, call));
        }
    }
    ExpectDocumented(headings, rows);
}

} // namespace
} // namespace brevint::test
