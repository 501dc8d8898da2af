#pragma once

#include "brevint/IResponse.h"

#include <atomic>
#include <functional>
#include <string>
#include <vector>

namespace brevint::test {

/// A response that keeps what it is filled with, and tells how often.
class RecordingResponse : public IResponse {
public:
    /// Called last in every filling, on the thread that fills. It may end the life of this object.
    std::function<void()> onFilled;

    int Fillings() const { return m_fillings; }

    /// What the last filling brought; to be asked after it.
    std::string Bytes() const { return {m_bytes.begin(), m_bytes.end()}; }

    void SetServerResponse(const std::vector<char>& bytes, unsigned long status) override {
        m_bytes = bytes;
        m_status = status;
        ++m_fillings;
        if (const auto last = onFilled) {
            last();
        }
    }
    unsigned long GetStatusCode() const override { return m_status; }

    // Judging replies is not what the transport's tests are about.
    const std::vector<char>& GetServerResponse() const override { return m_bytes; }
    std::wstring GetServerResponseAsString() const override { return {}; }
    std::wstring GetServerErrorMessage() const override { return {}; }
    void ParseServerResponse() override {}
    void ProcessErrorMessage(const wchar_t*) override {}
    bool GetSucceeded() const override { return false; }
    double GetErrorCode() const override { return 0; }

private:
    std::atomic<int> m_fillings = 0;
    std::vector<char> m_bytes;
    unsigned long m_status = 0;
};

} // namespace brevint::test
