#include "bench/Task.h"

#include "bench/PeakMemory.h"

#include <cstdio>
#include <exception>
#include <string_view>

namespace {

TaskArguments ReadArguments(int argc, char** argv) {
    TaskArguments arguments;
    if (argc > 2) {
        arguments.size = std::stoull(argv[2]);
    }
    if (argc > 3) {
        arguments.count = std::stoull(argv[3]);
    }
    if (argc > 4) {
        arguments.url = argv[4];
    }
    if (argc > 5) {
        arguments.file = argv[5];
    }
    if (argc > 6) {
        arguments.atOnce = std::stoull(argv[6]);
    }
    return arguments;
}

} // namespace

int RunTask(std::span<const Task> tasks, int argc, char** argv) {
    const std::string_view name = argc > 1 ? argv[1] : "";
    for (const Task& task : tasks) {
        if (name != task.name) {
            continue;
        }
        try {
            Stopwatch watch;
            task.run(ReadArguments(argc, argv), watch);
            std::printf("%.9f %zu\n", watch.Seconds(), PeakMemoryKib());
            return 0;
        } catch (const std::exception& failure) {
            std::fprintf(stderr, "%s: %s\n", task.name, failure.what());
            return 1;
        }
    }
    std::fprintf(stderr, "usage: %s TASK [SIZE [COUNT [URL [FILE [AT-ONCE]]]]]\nTasks:", argv[0]);
    for (const Task& task : tasks) {
        std::fprintf(stderr, " %s", task.name);
    }
    std::fprintf(stderr, "\n");
    return 2;
}
