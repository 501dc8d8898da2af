#pragma once

#include <string>

namespace brevint::cli {

/// The path of a local file that is to be sent, in the library's form. Throws a Failure unless it
/// is a file that can be read.
std::wstring CheckLocalFile(const std::string& path);

} // namespace brevint::cli
