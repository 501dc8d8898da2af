#pragma once

#include "bench/Task.h"

// The parses by libxml2 alone, of the same bytes.

/// Makes the tree and frees it.
void Parse(const char* document, std::size_t size);
void ParseListing(const TaskArguments& arguments, Stopwatch& watch);
void ParseErrorReply(const TaskArguments& arguments, Stopwatch& watch);
