#include "service/ServiceError.h"

namespace brevint::service {

ServiceError AuthorizationFailed() {
    return {403, "Authorization failed."};
}

ServiceError ItemNotFound() {
    return {404, "Requested item not found."};
}

ServiceError MalformedGuid() {
    return {400,
            "Guid should contain 32 digits with 4 dashes (xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx)."};
}

ServiceError NotAFolder() {
    return {400, "Requested item is not a folder."};
}

ServiceError NotAFile() {
    return {400, "Specified item is not a file."};
}

ServiceError InvalidName() {
    return {400, "Please specify a name that does not contain the following characters:  "
                 "\\ / : * ? \" < > |"};
}

ServiceError FolderExists(const std::string& name) {
    return {409, "The destination already contains a folder named '" + name + "'."};
}

ServiceError ItemExists() {
    return {409, "There is an item with the same name already in this location."};
}

ServiceError AlreadyCheckedOut() {
    return {409, "Item already checked out."};
}

ServiceError AlreadyCheckedIn() {
    return {409, "Item already checked in."};
}

ServiceError CheckedOutToAnother() {
    return {409, "Item checked out to another user."};
}

ServiceError CannotLockFolders() {
    return {400, "Cannot check-out or check-in folders."};
}

ServiceError NoFilesFound() {
    return {400, "No files found."};
}

ServiceError NoProjectsInTemplates() {
    return {400, "Cannot add projects to template repository."};
}

ServiceError NoTemplatesInProjects() {
    return {400, "Cannot add templates to project repository."};
}

ServiceError BadProvidedFile(const std::string& name, const std::string& reason) {
    return {400, "The provided file ('" + name + "') " + reason};
}

ServiceError ConversionError(const std::string& value, const std::string& type,
                             const std::string& path) {
    return {400,
            "Error converting value " + value + " to type '" + type + "'. Path '" + path + "'."};
}

ServiceError BadRequest(const std::string& message) {
    return {400, message};
}

} // namespace brevint::service
