#pragma once

#include <cstddef>
#include <cstdint>

/// What the library accepts of markup that comes from outside, and of folders that are moved as a
/// whole. Beyond the limits for markup a reply counts as not XML, and a page of the portal as
/// unreadable. docs/faults.md lists them for users.
namespace Limits {

/// Bytes of a reply that is read as XML.
inline constexpr std::size_t kLongestReply = std::size_t{512} * 1024 * 1024;
/// Bytes of a page of the portal.
inline constexpr std::size_t kLongestPage = std::size_t{8} * 1024 * 1024;
/// Bytes of the declarations that a reply begins with: libxml2 2.9 compares each value of an
/// enumerated attribute with all others.
inline constexpr std::size_t kLongestDeclarations = std::size_t{32} * 1024;

/// Elements within each other. Those of a page that stand deeper are taken as if they stood there.
inline constexpr int kDeepest = 256;
/// Namespaces in force at one place: libxml2 looks each prefix up among all of them.
inline constexpr int kMostNamespaces = 100;
/// Different names of elements and attributes: libxml2's dictionary stops growing at some 5,000,
/// and a look-up takes the longer the more there are.
inline constexpr int kMostNames = 100'000;

/// Pairs of attributes of the same element, so many and so many more per byte read: libxml2
/// compares each attribute with all others of its element. 2,000 attributes of one element are
/// 2,000,000 pairs.
inline constexpr std::uint64_t kFreeAttributePairs = 2'000'000;
inline constexpr std::uint64_t kAttributePairsPerByte = 8;

/// Faults that a parser can live with, so many and one more per that many bytes read: libxml2
/// writes a message for each.
inline constexpr std::uint64_t kFreeFaults = 200'000;
inline constexpr std::uint64_t kBytesPerFault = 16;

/// Folders within each other that are moved as a whole. A deeper one is refused.
inline constexpr int kDeepestFolder = 256;
/// Folders and files that are moved as a whole. Each takes some 200 bytes of memory, and folders
/// that are listed at several places could have them without end.
inline constexpr std::size_t kMostEntries = 1'000'000;

} // namespace Limits
