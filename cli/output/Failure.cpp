#include "cli/output/Failure.h"

#include "cli/output/Paths.h"

#include <filesystem>
#include <new>

namespace brevint::cli {

namespace {

using Kind = brevint::Failure;

ExitCode ExitCodeOf(const Error& error) {
    switch (error.failure) {
    case Kind::None: return ExitCode::Success;
    case Kind::Invalid: return ExitCode::Usage;
    case Kind::Cancelled: return ExitCode::Interrupted;
    case Kind::TimedOut: return ExitCode::TimedOut;
    case Kind::NoConnection:
        return error.connection == Connection::TimedOut ? ExitCode::TimedOut
                                                        : ExitCode::NoConnection;
    case Kind::Unavailable: return ExitCode::NoConnection;
    case Kind::NotSignedIn:
    case Kind::NotAllowed:
    case Kind::SignInRefused:
    case Kind::SignedInAsOther: return ExitCode::NotAuthorised;
    case Kind::LocalFile:
    case Kind::OutOfMemory: return ExitCode::LocalFile;
    case Kind::NotFound:
    case Kind::Exists:
    case Kind::Refused:
    case Kind::NotTheService: break;
    }
    return ExitCode::Refused;
}

/// Whether it lies in the session or the connection, or in the user's having had enough, and not in
/// what was asked for.
bool ConcernsAll(Kind kind) {
    switch (kind) {
    case Kind::Cancelled:
    case Kind::TimedOut:
    case Kind::NoConnection:
    case Kind::Unavailable:
    case Kind::NotSignedIn:
    case Kind::SignInRefused:
    case Kind::SignedInAsOther: return true;
    default: return false;
    }
}

/// What to try, where the client knows better than the library.
std::string HintFor(const Error& error) {
    switch (error.failure) {
    case Kind::NotSignedIn: return "Sign in with brevint sign-in --url URL --user NAME.";
    case Kind::NotAllowed: return "Ask for the right to do this.";
    case Kind::SignInRefused: return "Check the user name and the password.";
    case Kind::TimedOut: return "Allow more time with --timeout.";
    case Kind::NoConnection:
        return error.connection == Connection::NotTrusted
                   ? "Check the address; or have the service's certificate trusted by the system."
                   : "Check the address and the network connection.";
    case Kind::Unavailable: return "Try again later.";
    case Kind::NotTheService: return "Check that the address is the service's own.";
    default: return error.hint;
    }
}

} // namespace

Failure FailureOf(const std::string& summary, const Error& error) {
    Failure failure(ExitCodeOf(error), summary, HintFor(error));
    // The service's own words say more than what is known of its codes.
    const bool hasReason = error.failure == Kind::Refused && !error.serverMessage.empty();
    if (hasReason || !error.text.empty()) {
        failure.summary += hasReason ? " The service refuses it." : " " + error.text;
    }
    failure.serverWords = error.serverMessage;
    failure.speaker = error.failure == Kind::SignInRefused ? "portal" : "service";
    const char* const name = brevint_code_name(error.code);
    // What stands for a reply that never came says less than the text.
    if (name && error.connection == Connection::Fine) {
        failure.code = error.code;
        failure.codeName = name;
    }
    failure.concernsAll = ConcernsAll(error.failure);
    return failure;
}

Failure CurrentFailure() {
    try {
        throw;
    } catch (const Failure& failure) {
        return failure;
    } catch (const Exception& failed) {
        return FailureOf("It cannot be done.", failed.GetError());
    } catch (const std::filesystem::filesystem_error& error) {
        return LocalFailure("\"" + PathToUtf8(error.path1()) + "\" cannot be used", error.code());
    } catch (const std::system_error& error) {
        return LocalFailure("The system refused", error.code());
    } catch (const std::bad_alloc&) {
        return Failure(ExitCode::LocalFile, "There is not enough memory.");
    }
}

} // namespace brevint::cli
