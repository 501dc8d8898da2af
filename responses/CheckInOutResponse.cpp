#include "brevint/CheckInOutResponse.h"

#include "brevint/ErrorCodes.h"
#include "responses/ErrorMessages.h"

CCheckInOutResponse::CCheckInOutResponse() {
    InitErrorMaps();
}

CCheckInOutResponse::~CCheckInOutResponse() = default;

void CCheckInOutResponse::InitErrorMaps() {
    // Checking in what is checked in already has the outcome that was asked for: a success.
    static constexpr ErrorRow kExact[] = {
        {ErrorMessage::AlreadyCheckedOut, ErrorCode::CheckInOutAlreadyCheckedOut},
        {ErrorMessage::AuthorizationFailed, ErrorCode::AuthorizationFailed},
        {ErrorMessage::ItemNotFound, ErrorCode::CheckInOutItemNotFound},
        {ErrorMessage::CannotLockFolders, ErrorCode::CheckInOutOfFolder},
        {ErrorMessage::AlreadyCheckedIn, ErrorCode::Success},
        {ErrorMessage::CheckedOutToAnotherUser, ErrorCode::CheckInOutByAnotherUser},
    };
    AddExactMessages(kExact);
    static constexpr ErrorRow kPrefixes[] = {
        {ErrorMessage::ConversionPrefix, ErrorCode::CheckInOutInvalidId},
    };
    AddMessagePrefixes(kPrefixes);
}
