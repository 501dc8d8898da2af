#include "cli/transfer/Board.h"

#include <utility>

namespace brevint::cli {

std::size_t Board::Add(std::string name) {
    const std::scoped_lock lock(m_mutex);
    Status status;
    status.name = std::move(name);
    status.lastProgress = std::chrono::steady_clock::now();
    m_entries.push_back({std::move(status)});
    return m_entries.size() - 1;
}

Status Board::Get(std::size_t number) const {
    const std::scoped_lock lock(m_mutex);
    return m_entries[number].status;
}

std::chrono::steady_clock::time_point Board::LastProgress(std::size_t number) const {
    const std::scoped_lock lock(m_mutex);
    return m_entries[number].status.lastProgress;
}

void Board::Wait(const StopToken& stop, std::chrono::steady_clock::time_point end, Wake wake) {
    const auto onStop = [this] {
        const std::scoped_lock lock(m_mutex);
        m_changed.notify_all();
    };
    const StopCallback<decltype(onStop)> wakeUp(stop, onStop);
    std::unique_lock lock(m_mutex);
    m_changed.wait_until(lock, end, [&] {
        return stop.stop_requested() || m_hasNewState ||
               (wake == Wake::ByAllChanges && !m_changes.empty());
    });
}

std::vector<std::size_t> Board::TakeChanges() {
    const std::scoped_lock lock(m_mutex);
    for (const std::size_t number : m_changes) {
        m_entries[number].isTold = false;
    }
    m_hasNewState = false;
    return std::exchange(m_changes, {});
}

void Board::Note(std::size_t number, const Progress& now) {
    const std::scoped_lock lock(m_mutex);
    Status& status = m_entries[number].status;
    const TransferState before = status.state;
    if (IsFinal(before)) {
        return; // another thread was told of this earlier, and comes later
    }
    const bool hasProgress = now.bytesDone != status.bytesDone;
    status.state = now.state;
    status.bytesDone = now.bytesDone;
    status.bytesTotal = now.bytesTotal;
    status.bytesPerSecond = now.bytesPerSecond;
    status.timeLeft = now.timeLeft;
    status.bytesResumed = now.bytesResumed;
    status.filesDone = now.state == TransferState::Finished ? 1 : 0;
    OnChange(number, before, hasProgress);
}

void Board::Note(std::size_t number, const GroupProgress& now) {
    const std::scoped_lock lock(m_mutex);
    Status& status = m_entries[number].status;
    const TransferState before = status.state;
    if (IsFinal(before)) {
        return; // another thread was told of this earlier, and comes later
    }
    const bool hasProgress = now.bytesDone != status.bytesDone || now.filesDone != status.filesDone;
    status.state = now.state;
    status.bytesDone = now.bytesDone;
    status.bytesTotal = now.bytesTotal;
    status.bytesPerSecond = now.bytesPerSecond;
    status.timeLeft = now.timeLeft;
    status.filesDone = now.filesDone;
    status.filesTotal = now.filesTotal;
    OnChange(number, before, hasProgress);
}

void Board::OnChange(std::size_t number, TransferState before, bool hasProgress) {
    Entry& entry = m_entries[number];
    const bool hasNewState = entry.status.state != before;
    if (hasNewState || hasProgress) {
        entry.status.lastProgress = std::chrono::steady_clock::now();
    }
    m_hasNewState = m_hasNewState || hasNewState;
    if (!std::exchange(entry.isTold, true)) {
        m_changes.push_back(number);
    }
    m_changed.notify_all();
}

} // namespace brevint::cli
