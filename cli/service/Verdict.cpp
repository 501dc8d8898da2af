#include "cli/service/Verdict.h"

#include "brevint/ErrorCodes.h"
#include "brevint/ErrorDescription.h"
#include "brevint/IResponse.h"
#include "cli/output/Failure.h"
#include "support/Utf8.h"

#include <new>

namespace brevint::cli {

namespace {

constexpr unsigned long kFound = 302;
constexpr unsigned long kUnauthorized = 401;
constexpr unsigned long kForbidden = 403;

/// Services send whoever is not signed in to the portal, or say so by the status alone.
bool IsSignInStatus(unsigned long status) {
    return status == kFound || status == kUnauthorized || status == kForbidden;
}

ExitCode ExitCodeOf(double code) {
    if (code == ErrorCode::EmptyReply) {
        return ExitCode::NoConnection;
    }
    if (code == ErrorCode::AuthorizationFailed) {
        return ExitCode::NotAuthorised;
    }
    const bool isLocal = code == ErrorCode::DownloadWriteFailed ||
                         code == ErrorCode::OverwriteNoFile || code == ErrorCode::UploadNoFile;
    return isLocal ? ExitCode::LocalFile : ExitCode::Refused;
}

std::string ServerWords(const IReadOnlyResponse& response) {
    const auto* const full = dynamic_cast<const IResponse*>(&response);
    return full ? Utf8::ToNarrow(full->GetServerErrorMessage()) : std::string();
}

} // namespace

unsigned long StatusOf(const IReadOnlyResponse& response) {
    const auto* const full = dynamic_cast<const IResponse*>(&response);
    return full ? full->GetStatusCode() : 0;
}

void RequireSuccess(const IReadOnlyResponse* response, const std::string& summary) {
    if (!response) {
        throw std::bad_alloc();
    }
    const unsigned long status = StatusOf(*response);
    const std::string words = ServerWords(*response);
    // A reply without a message counts as success for the library whatever its status. A portal's
    // page or a broken server's is not what was asked for, however well-formed.
    const bool fromService = status / 100 == 2 || !words.empty();
    if (response->GetSucceeded() && fromService) {
        return;
    }
    const bool silent = status != 0 && words.empty();
    double code = response->GetErrorCode();
    if (status == 0) {
        code = ErrorCode::EmptyReply;
    } else if (silent && IsSignInStatus(status)) {
        code = ErrorCode::AuthorizationFailed;
    } else if (response->GetSucceeded()) {
        code = ErrorCode::MessageNotRecognised;
    }
    const ErrorDescription* const description = DescribeError(code);
    Failure failure(ExitCodeOf(code), summary, description ? description->hint : "");
    failure.serverWords = words;
    failure.code = static_cast<int>(code);
    failure.codeName = description ? description->name : "";
    if (silent && status / 100 != 2) {
        failure.summary += " The service answered with HTTP status " + std::to_string(status) + ".";
        if (code == ErrorCode::EmptyReply) {
            failure.exitCode = ExitCode::Refused;
        }
    }
    throw failure;
}

} // namespace brevint::cli
