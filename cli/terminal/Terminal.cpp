#include "cli/terminal/Terminal.h"

#include <system_error>

namespace brevint::cli::Terminal {

void Tell(std::string_view text, const StopToken& stop) {
    try {
        Write(Stream::Error, text, stop);
    } catch (const std::system_error&) {
        return; // nobody is there to be told
    }
}

} // namespace brevint::cli::Terminal
