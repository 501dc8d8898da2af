#pragma once

#include <cstddef>
#include <vector>

/// A listing of so many items of some 530 bytes, with all fields; a third of the items hold escaped
/// characters, one in twenty text beyond ASCII. A million items are within what a reply may have.
std::vector<char> ListingDocument(std::size_t items);

/// What the service answers to an upload that it refuses.
std::vector<char> ErrorDocument();
