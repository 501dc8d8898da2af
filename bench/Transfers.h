#pragma once

#include "bench/Task.h"

// Transfers through the plain C interface. Each throws unless every file has arrived whole.

void TransferDown(const TaskArguments& arguments, Stopwatch& watch);
void TransferDownInChunks(const TaskArguments& arguments, Stopwatch& watch);
/// Flushed to the disk before it takes its place.
void TransferDownDurably(const TaskArguments& arguments, Stopwatch& watch);
/// Counts up to the reply that names the service's job, as programs that only send do.
void TransferUp(const TaskArguments& arguments, Stopwatch& watch);
/// Counts the 99th percentile of as many cancels as `count` says, each in the midst of a reply
/// whose server has fallen silent.
void CancelSilent(const TaskArguments& arguments, Stopwatch& watch);
