#pragma once

#include "bench/Task.h"

// The parses by libxml2 alone, of the same bytes.

void ParseListing(const TaskArguments& arguments, Stopwatch& watch);
void ParseErrorReply(const TaskArguments& arguments, Stopwatch& watch);
