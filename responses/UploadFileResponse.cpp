#include "brevint/UploadFileResponse.h"

#include "brevint/ErrorCodes.h"
#include "responses/ErrorMessages.h"

CUploadFileResponse::CUploadFileResponse() {
    InitErrorMaps();
}

CUploadFileResponse::~CUploadFileResponse() = default;

void CUploadFileResponse::InitErrorMaps() {
    static constexpr ErrorRow kExact[] = {
        {ErrorMessage::AuthorizationFailed, ErrorCode::AuthorizationFailed},
        {ErrorMessage::NameExists, ErrorCode::UploadNameExists},
        {ErrorMessage::InvalidId, ErrorCode::UploadInvalidId},
        {ErrorMessage::ItemNotFound, ErrorCode::UploadItemNotFound},
        {ErrorMessage::NotAFolder, ErrorCode::UploadNotAFolder},
        {ErrorMessage::ProjectToTemplates, ErrorCode::UploadProjectToTemplates},
        {ErrorMessage::TemplateToProjects, ErrorCode::UploadTemplateToProjects},
        {ErrorMessage::NoFilesFound, ErrorCode::UploadNoFile},
    };
    AddExactMessages(kExact);
}
