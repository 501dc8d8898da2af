#include "explorer/background/Worker.h"

#include <list>
#include <system_error>
#include <thread>
#include <utility>

namespace brevint::explorer {

/// On the window's thread, but for the stop source.
struct Task::State {
    StopSource stop;
    bool isWanted = true;

    void Drop() {
        isWanted = false;
        stop.request_stop();
    }
};

Task::~Task() {
    if (m_state) {
        m_state->Drop();
    }
}

void Task::Stop() {
    if (m_state) {
        m_state->stop.request_stop();
    }
}

/// On the window's thread.
struct Worker::Threads {
    struct Running {
        std::shared_ptr<Task::State> task;
        std::thread thread;
    };
    std::list<Running> all;
};

Worker::Worker(Executor executor)
    : m_executor(std::move(executor)), m_threads(std::make_shared<Threads>()) {}

Worker::~Worker() {
    for (Threads::Running& running : m_threads->all) {
        running.task->Drop();
    }
    for (Threads::Running& running : m_threads->all) {
        if (running.thread.joinable()) { // else there was none to be had
            running.thread.join();
        }
    }
    m_threads->all.clear();
}

Task Worker::Start(std::function<void(const StopToken&)> work,
                   std::function<void(const Error*)> done) {
    const auto task = std::make_shared<Task::State>();
    m_threads->all.push_front({task, {}});
    const auto place = m_threads->all.begin();
    // After the worker's end there are no threads to join any more.
    const auto end = [task, place, done = std::move(done),
                      threads = std::weak_ptr(m_threads)](const Error* notBegun) {
        if (const auto alive = threads.lock()) {
            if (place->thread.joinable()) {
                place->thread.join();
            }
            alive->all.erase(place);
        }
        if (task->isWanted) {
            done(notBegun);
        }
    };
    try {
        place->thread = std::thread([task, end, work = std::move(work), execute = m_executor] {
            work(task->stop.get_token());
            execute([end] { end(nullptr); });
        });
    } catch (const std::system_error& failed) {
        m_executor([end, error = Error{.failure = Failure::OutOfMemory, .text = failed.what()}] {
            end(&error);
        });
    }
    return Task(task);
}

} // namespace brevint::explorer
