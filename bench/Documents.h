#pragma once

#include <cstddef>
#include <vector>

/// A listing of so many items of about 600 bytes, with all fields; a third of the items hold
/// escaped characters, one in twenty text beyond ASCII.
std::vector<char> ListingDocument(std::size_t items);

/// What the service answers to an upload that it refuses.
std::vector<char> ErrorDocument();
