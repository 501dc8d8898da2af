#pragma once

#include "brevint/client/Detail.h"

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace brevint {

/// What kind of failure it was.
enum class Failure : std::int32_t {
    None = BREVINT_FAILURE_NONE,
    Invalid = BREVINT_FAILURE_INVALID,            ///< What was given cannot be used.
    Cancelled = BREVINT_FAILURE_CANCELLED,        ///< By a stop token or a cancel.
    TimedOut = BREVINT_FAILURE_TIMED_OUT,         ///< The time limit was over.
    NoConnection = BREVINT_FAILURE_NO_CONNECTION, ///< Error::connection says why.
    Unavailable = BREVINT_FAILURE_UNAVAILABLE,    ///< The service asks to come back later.
    NotSignedIn = BREVINT_FAILURE_NOT_SIGNED_IN,  ///< There is no session, or it has ended.
    NotAllowed = BREVINT_FAILURE_NOT_ALLOWED,     ///< The user may not do this.
    NotFound = BREVINT_FAILURE_NOT_FOUND,         ///< There is no such item.
    Exists = BREVINT_FAILURE_EXISTS,              ///< The name is taken.
    Refused = BREVINT_FAILURE_REFUSED,            ///< For another reason: see Error::serverMessage.
    NotTheService = BREVINT_FAILURE_NOT_THE_SERVICE, ///< The reply is none of such a service's.
    SignInRefused = BREVINT_FAILURE_SIGN_IN_REFUSED, ///< Error::serverMessage: the portal's words.
    SignedInAsOther = BREVINT_FAILURE_SIGNED_IN_AS_OTHER, ///< Sign out first.
    LocalFile = BREVINT_FAILURE_LOCAL_FILE,     ///< A local file cannot be read or written.
    OutOfMemory = BREVINT_FAILURE_OUT_OF_MEMORY ///< Or out of threads.
};

/// Why there was no reply, or not the whole of it.
enum class Connection : std::int32_t {
    Fine = BREVINT_CONNECTION_FINE,
    NameNotResolved = BREVINT_CONNECTION_NAME_NOT_RESOLVED,
    Refused = BREVINT_CONNECTION_REFUSED,
    TimedOut = BREVINT_CONNECTION_TIMED_OUT,
    NotTrusted = BREVINT_CONNECTION_NOT_TRUSTED, ///< The certificate, or no common ground for TLS.
    BrokenOff = BREVINT_CONNECTION_BROKEN_OFF,
    Cancelled = BREVINT_CONNECTION_CANCELLED,
    SourceFailed = BREVINT_CONNECTION_SOURCE_FAILED, ///< The local file changed while it was sent.
    Other = BREVINT_CONNECTION_OTHER ///< Out of memory or threads; an address that is none.
};

/// What went wrong, if anything did. Texts are UTF-8.
struct Error {
    Failure failure = Failure::None;
    int code = 0; ///< Of docs/error-codes.md; 0: none.
    Connection connection = Connection::Fine;
    int httpStatus = 0;             ///< Of the last reply; 0: there was none.
    std::string text = {};          ///< What went wrong, for a user.
    std::string hint = {};          ///< What the user can do; may be empty.
    std::string serverMessage = {}; ///< The words of the service or the portal; may be empty.
    bool mayHaveHappened = false;   ///< The service may have carried out what was asked for.

    /// Whether something went wrong.
    [[nodiscard]] explicit operator bool() const noexcept { return failure != Failure::None; }
};

/// The one class that the calls throw, besides std::bad_alloc, and std::logic_error for misuse.
///
///     try {
///         client.Delete({folder, "Plan.xlsx"});
///     } catch (const brevint::Exception& failed) {
///         std::cerr << failed.what() << ' ' << failed.GetError().serverMessage << '\n';
///     }
class Exception : public std::runtime_error {
public:
    /// Its text is the error's.
    explicit Exception(Error error)
        : std::runtime_error(error.text), m_error(std::make_shared<const Error>(std::move(error))) {
    }

    /// Lives as long as the exception and its copies.
    [[nodiscard]] const Error& GetError() const noexcept { return *m_error; }

private:
    std::shared_ptr<const Error> m_error;
};

namespace detail {

/// What a function has stored as its error: nothing, where there was no memory for it.
inline Error ToError(const brevint_error* error) {
    if (!error) {
        return {.failure = Failure::OutOfMemory, .text = "Out of memory."};
    }
    return {.failure = static_cast<Failure>(error->failure),
            .code = error->code,
            .connection = static_cast<Connection>(error->connection),
            .httpStatus = static_cast<int>(error->http_status),
            .text = Text(error->text),
            .hint = Text(error->hint),
            .serverMessage = Text(error->server_message),
            .mayHaveHappened = error->may_have_happened != 0};
}

} // namespace detail

} // namespace brevint
