#pragma once

#include <brevint/client/StopToken.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The program's standard streams and command line, in UTF-8 on every target.
namespace brevint::cli::Terminal {

enum class Stream { Input, Output, Error };

/// Sees to it, before any file is opened, that none takes the place of a stream that the program
/// was started without.
void Prepare();

/// The arguments that `main` was given, without the program's name.
std::vector<std::string> Arguments(int argc, char** argv);

/// Whether a person sits at the other end of the stream.
bool IsTerminal(Stream stream);

/// Whether it is a terminal that can take a line back: not one that TERM calls dumb.
bool IsCapable(Stream stream);

/// Whether it shows colours, and NO_COLOR does not forbid them.
bool HasColours(Stream stream);

/// How many columns a line of the terminal has; 80 where that is not known.
std::size_t Width(Stream stream);

/// Whether writing to that file would be writing to standard output, as with /dev/stdout.
bool IsOutput(const std::filesystem::path& path);

/// How long whoever reads the stream is waited for after a stop.
std::chrono::milliseconds PatienceWith(Stream stream);

/// Writes all of `text`, byte for byte unless it goes to a console of Windows, which takes
/// characters. Throws std::system_error when it cannot be written. A full pipe is waited for until
/// the token is stopped, and for PatienceWith after that; then the error is
/// std::errc::operation_canceled.
void Write(Stream stream, std::string_view text, const StopToken& stop = {});

/// Writes to standard error, likewise. That it cannot be written is no failure.
void Tell(std::string_view text, const StopToken& stop);

/// Whether what is typed is shown.
enum class Echo { Shown, Hidden };

/// Tells `prompt` and reads one line from standard input. Nothing when the token was stopped or the
/// input has ended. What stands last in a file or pipe is a line without a line end too; at a
/// terminal only what was sent off with one is. What is typed can be hidden on a terminal only. The
/// terminal is as before in every case, also while the program is stopped; it asks again when it
/// goes on.
std::optional<std::string> ReadLine(const std::string& prompt, Echo echo, const StopToken& stop);

} // namespace brevint::cli::Terminal
