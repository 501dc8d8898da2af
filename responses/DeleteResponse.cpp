#include "brevint/DeleteResponse.h"

#include "brevint/ErrorCodes.h"
#include "responses/ErrorMessages.h"

CDeleteResponse::CDeleteResponse() {
    InitErrorMaps();
}

CDeleteResponse::~CDeleteResponse() = default;

void CDeleteResponse::InitErrorMaps() {
    static constexpr ErrorRow kExact[] = {
        {ErrorMessage::AuthorizationFailed, ErrorCode::AuthorizationFailed},
    };
    AddExactMessages(kExact);
    static constexpr ErrorRow kPrefixes[] = {
        {ErrorMessage::ConversionPrefix, ErrorCode::DeleteInvalidId},
    };
    AddMessagePrefixes(kPrefixes);
}
