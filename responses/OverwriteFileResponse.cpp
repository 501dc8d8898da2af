#include "brevint/OverwriteFileResponse.h"

#include "brevint/ErrorCodes.h"
#include "responses/ErrorMessages.h"

COverwriteFileResponse::COverwriteFileResponse() {
    InitErrorMaps();
}

COverwriteFileResponse::~COverwriteFileResponse() = default;

void COverwriteFileResponse::InitErrorMaps() {
    static constexpr ErrorRow kExact[] = {
        {ErrorMessage::AuthorizationFailed, ErrorCode::AuthorizationFailed},
        {ErrorMessage::InvalidId, ErrorCode::OverwriteInvalidId},
        {ErrorMessage::ItemNotFound, ErrorCode::OverwriteItemNotFound},
        {ErrorMessage::NotAFile, ErrorCode::OverwriteNotAFile},
        {ErrorMessage::CheckedOutToAnotherUser, ErrorCode::OverwriteCheckedOutByAnotherUser},
        {ErrorMessage::NoFilesFound, ErrorCode::OverwriteNoFile},
    };
    AddExactMessages(kExact);
}
