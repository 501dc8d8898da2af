#pragma once

#include "platform/WinInet.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace brevint::test {

/// Stands in for the platform's internet client: this folder's test program is linked with it in
/// the platform layer's place. It writes down every call with its arguments and plays the results
/// that a test scripts. One at a time exists; the calls reach it without being told.
class FakeInternet {
public:
    /// How a send or a read goes.
    enum class How {
        atOnce,        ///< TRUE, everything is there
        fails,         ///< FALSE with an error
        pends,         ///< FALSE, ERROR_IO_PENDING; ends when the test calls Complete
        endsInTheCall, ///< pends, and has ended on the calling thread before the call returns
        toldTwice,     ///< TRUE, everything is there; and a completion comes when the test says so
    };
    struct Step {
        How how = How::atOnce;
        std::string bytes = {}; ///< of a read: what it brings
        bool succeeded = true;  ///< the verdict of the completion
    };

    FakeInternet() { current = this; }
    FakeInternet(const FakeInternet&) = delete;

    // The script.
    INTERNET_SCHEME scheme = INTERNET_SCHEME_HTTP;
    DWORD status = 200;                 ///< 0: the reply has none
    std::optional<DWORD> contentLength; ///< none: not announced
    std::deque<std::wstring> cookies;   ///< what the jar holds, from one call to the next
    bool closingTellsAtOnce = true;     ///< whether closing the request brings its last callback
    Step send;
    std::deque<Step> reads; ///< one after the other; afterwards reads bring nothing at once

    /// The calls made so far: name and arguments, one call a line.
    std::vector<std::string> calls;
    /// Only those with that name.
    std::vector<std::string> CallsTo(const std::string& name) const;
    DWORD_PTR context = 0; ///< what the request was opened with; 0 for a synchronous one

    bool IsPending() const { return pending_.has_value(); }
    /// Ends the send or read that is pending, on a thread of its own, which has done its work on
    /// return.
    void Complete();
    /// Makes the callback run on this thread, with success as what it tells.
    void Notify(DWORD_PTR itsContext, DWORD statusCode) { Tell(itsContext, statusCode, true); }

    // The platform's side.
    static inline FakeInternet* current = nullptr;
    INTERNET_STATUS_CALLBACK callback = nullptr;
    BOOL Begin(const Step& step, LPVOID buffer, LPDWORD count);

private:
    struct Pending {
        Step step;
        LPVOID buffer;
        LPDWORD count;
        void Deliver() const;
    };
    void End();
    void Tell(DWORD_PTR itsContext, DWORD statusCode, bool succeeded);

    std::optional<Pending> pending_;
};

} // namespace brevint::test
