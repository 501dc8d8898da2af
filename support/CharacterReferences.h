#pragma once

#include <string>
#include <string_view>

/// A page in which every numeric character reference ("&#233;") stands for the character that
/// browsers show: one that no text may hold became U+FFFD, one of 128 to 159 what it is in
/// windows-1252, and "&#" without a number a plain "&" and "#". libxml2 2.9's HTML parser ends an
/// attribute at references of the first and the last kind, and takes those between for control
/// characters. References mean the same wherever they may stand in a page, so that nothing but "&#"
/// has to be looked for.
std::string WithSoundReferences(std::string_view page);
