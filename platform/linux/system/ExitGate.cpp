#include "platform/linux/system/ExitGate.h"

#include "platform/linux/http/CurlLibrary.h"

#include <cstdlib>
#include <mutex>
#include <unistd.h>

namespace platform {

namespace {

thread_local bool guarded = false;
std::atomic<int> inside = 0;
std::atomic<bool> shut = false;

void Leave() {
    if (--inside == 0 && shut) {
        inside.notify_all();
    }
}

void Shut() {
    shut = true;
    for (int count = inside; count != 0; count = inside) {
        inside.wait(count);
    }
}

} // namespace

void ExitGate::Install() {
    static std::once_flag once;
    std::call_once(once, [] {
        InitializeCurl(); // first: what is registered last runs first
        std::atexit(Shut);
    });
}

void ExitGate::Guard() noexcept {
    guarded = true;
}

ExitGate::Passage::Passage() noexcept {
    if (!guarded) {
        return;
    }
    ++inside;
    if (shut) {
        Leave();
        for (;;) {
            pause();
        }
    }
}

ExitGate::Passage::~Passage() {
    if (guarded) {
        Leave();
    }
}

} // namespace platform
