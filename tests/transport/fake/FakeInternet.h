#pragma once

#include "platform/WinInet.h"

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brevint::test {

/// Stands in for the platform's internet client: this folder's test program is linked with it in
/// the platform layer's place. It plays what a test scripts. One at a time exists; the calls reach
/// it without being told.
struct FakeInternet {
    /// How a send or a read goes.
    enum class How {
        AtOnce,        ///< TRUE, everything is there
        Fails,         ///< FALSE with an error
        Pends,         ///< FALSE, ERROR_IO_PENDING; ends when the test calls Complete
        EndsInTheCall, ///< pends, and has ended on the calling thread before the call returns
        ToldTwice,     ///< TRUE, everything is there; and a completion comes when the test says so
    };
    struct Step {
        How how = How::AtOnce;
        std::string bytes = {}; ///< of a read: what it brings
        bool succeeded = true;  ///< the verdict of the completion
    };

    FakeInternet() { current = this; }
    FakeInternet(const FakeInternet&) = delete;

    // The script.
    DWORD status = 200;
    DWORD contentLength = 0;          ///< 0: not announced
    bool hasLocation = false;         ///< what is asked for its length has one
    std::deque<std::wstring> cookies; ///< what the jar holds, from one call to the next
    bool closingTellsAtOnce = true;   ///< whether closing the request brings its last callback
    Step send;
    std::deque<Step> reads; ///< one after the other; afterwards reads bring nothing at once

    // What the calls have told.
    std::map<DWORD, DWORD> options;
    std::vector<std::string> bodies; ///< one for each send
    std::vector<DWORD> readSizes;
    std::string closed; ///< the handles, each with a blank
    DWORD_PTR context = 0;
    INTERNET_STATUS_CALLBACK callback = nullptr;

    /// Ends the send or read that is pending, on a thread of its own, which has done its work on
    /// return.
    void Complete();
    /// Makes the callback run on this thread.
    void Notify(DWORD_PTR itsContext, DWORD statusCode, bool succeeded = true) const;

    // The platform's side.
    struct Pending {
        Step step;
        LPVOID buffer;
        LPDWORD count;
    };
    std::optional<Pending> pending;
    BOOL Begin(const Step& step, LPVOID buffer, LPDWORD count);
    void End();
    static inline FakeInternet* current = nullptr;
};

} // namespace brevint::test
