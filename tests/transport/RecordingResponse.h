#pragma once

#include "brevint/IResponse.h"

#include <atomic>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace brevint::test {

/// A response that keeps what it is filled with, and tells how often. Judging replies is not what
/// the transport's tests are about.
struct RecordingResponse : IResponse {
    /// Called last in every filling, on the thread that fills. It may end the life of this object.
    std::function<void()> onFilled;
    std::atomic<int> fillings = 0;
    // What the last filling brought; to be asked after it.
    std::string bytes;
    unsigned long status = 0;

    void SetServerResponse(const std::vector<char>& reply, unsigned long itsStatus) override {
        bytes.assign(reply.begin(), reply.end());
        status = itsStatus;
        ++fillings;
        if (const auto last = onFilled) {
            last();
        }
    }
    const std::vector<char>& GetServerResponse() const override { std::abort(); }
    std::wstring GetServerResponseAsString() const override { return {}; }
    std::wstring GetServerErrorMessage() const override { return {}; }
    unsigned long GetStatusCode() const override { return status; }
    void ParseServerResponse() override {}
    void ProcessErrorMessage(const wchar_t*) override {}
    bool GetSucceeded() const override { return false; }
    double GetErrorCode() const override { return 0; }
};

} // namespace brevint::test
