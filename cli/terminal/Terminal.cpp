#include "cli/terminal/Terminal.h"

#include <system_error>

namespace brevint::cli::Terminal {

std::chrono::milliseconds PatienceWith(Stream stream) {
    // Of results, since whoever reads them may only be slow. Of messages there may be thousands.
    return std::chrono::milliseconds(stream == Stream::Output ? 1000 : 0);
}

void Tell(std::string_view text, const StopToken& stop) {
    try {
        Write(Stream::Error, text, stop);
    } catch (const std::system_error&) {
        return; // nobody is there to be told
    }
}

} // namespace brevint::cli::Terminal
