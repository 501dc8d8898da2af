#pragma once

#include "bench/Stopwatch.h"

#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

/// What follows a task's name on the command line, in this order. What a task does not need may be
/// absent.
struct TaskArguments {
    std::size_t size = 0;   ///< items of a listing, bytes of a file
    std::size_t count = 1;  ///< how often the work is done, or how many at once
    std::string url;        ///< of the bench service, with a slash at its end
    std::string file;       ///< to be sent, or to be written; several get a number each
    std::size_t atOnce = 1; ///< how many of `count` files at a time
};

/// A piece of work that one side of a comparison does. It throws when anything goes wrong: a time
/// for work that was not done would be worse than none.
struct Task {
    const char* name;
    void (*run)(const TaskArguments& arguments, Stopwatch& watch);
};

/// Runs the task that the command line names, and prints the seconds that it counted and the most
/// memory that the process has held, in KiB. Returns the exit status.
int RunTask(std::span<const Task> tasks, int argc, char** argv);

inline void Require(bool condition, const char* what) {
    if (!condition) {
        throw std::runtime_error(what);
    }
}
