#include "brevint/PollUploadStatusResponse.h"

#include "brevint/ErrorCodes.h"
#include "responses/ErrorMessages.h"

CPollUploadStatusResponse::CPollUploadStatusResponse() {
    InitErrorMaps();
}

CPollUploadStatusResponse::~CPollUploadStatusResponse() = default;

void CPollUploadStatusResponse::InitErrorMaps() {
    static constexpr ErrorRow kExact[] = {
        {ErrorMessage::AuthorizationFailed, ErrorCode::AuthorizationFailed},
        {ErrorMessage::NameExists, ErrorCode::UploadNameExists},
        {ErrorMessage::InvalidId, ErrorCode::UploadInvalidId},
        {ErrorMessage::ItemNotFound, ErrorCode::UploadItemNotFound},
        {ErrorMessage::NotAFolder, ErrorCode::UploadNotAFolder},
        {ErrorMessage::ProjectToTemplates, ErrorCode::UploadProjectToTemplates},
        {ErrorMessage::TemplateToProjects, ErrorCode::UploadTemplateToProjects},
    };
    AddExactMessages(kExact);
    // The three beginnings are the same, so the first code stands for all of them.
    static constexpr ErrorRow kPrefixes[] = {
        {ErrorMessage::ProvidedFilePrefix, ErrorCode::UploadFileRejected},
        {ErrorMessage::ProvidedFilePrefix, ErrorCode::UploadFileRejectedSecond},
        {ErrorMessage::ProvidedFilePrefix, ErrorCode::UploadFileRejectedThird},
    };
    AddMessagePrefixes(kPrefixes);
}
