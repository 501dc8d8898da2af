#pragma once

#include <vector>

class IResponse;

/// Fills a response with a reply. One that cannot be held in memory ends as an empty reply, so that
/// nothing is thrown into the platform's threads or out of the library.
void DeliverReply(IResponse& response, const std::vector<char>& bytes,
                  unsigned long status) noexcept;
