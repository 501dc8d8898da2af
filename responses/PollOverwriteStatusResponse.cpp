#include "brevint/PollOverwriteStatusResponse.h"

#include "brevint/ErrorCodes.h"
#include "responses/ErrorMessages.h"

CPollOverwriteStatusResponse::CPollOverwriteStatusResponse() {
    InitErrorMaps();
}

CPollOverwriteStatusResponse::~CPollOverwriteStatusResponse() = default;

void CPollOverwriteStatusResponse::InitErrorMaps() {
    static constexpr ErrorRow kExact[] = {
        {ErrorMessage::AuthorizationFailed, ErrorCode::AuthorizationFailed},
        {ErrorMessage::InvalidId, ErrorCode::OverwriteInvalidId},
        {ErrorMessage::ItemNotFound, ErrorCode::OverwriteItemNotFound},
        {ErrorMessage::NotAFile, ErrorCode::OverwriteNotAFile},
        {ErrorMessage::CheckedOutToAnotherUser, ErrorCode::OverwriteCheckedOutByAnotherUser},
    };
    AddExactMessages(kExact);
    // The three beginnings are the same, so the first code stands for all of them.
    static constexpr ErrorRow kPrefixes[] = {
        {ErrorMessage::ProvidedFilePrefix, ErrorCode::OverwriteFileRejected},
        {ErrorMessage::ProvidedFilePrefix, ErrorCode::OverwriteFileRejectedSecond},
        {ErrorMessage::ProvidedFilePrefix, ErrorCode::OverwriteFileRejectedThird},
    };
    AddMessagePrefixes(kPrefixes);
}
