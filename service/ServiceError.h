#pragma once

#include <stdexcept>
#include <string>

namespace brevint::service {

/// A refused call: becomes an error document with this status and message.
class ServiceError : public std::runtime_error {
public:
    ServiceError(int status, const std::string& message)
        : std::runtime_error(message), m_status(status) {}

    int Status() const { return m_status; }

private:
    int m_status;
};

inline ServiceError AuthorizationFailed() {
    return {403, "Authorization failed."};
}

inline ServiceError ItemNotFound() {
    return {404, "Requested item not found."};
}

inline ServiceError MalformedGuid() {
    return {400,
            "Guid should contain 32 digits with 4 dashes (xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx)."};
}

inline ServiceError NotAFolder() {
    return {400, "Requested item is not a folder."};
}

inline ServiceError NotAFile() {
    return {400, "Specified item is not a file."};
}

inline ServiceError InvalidName() {
    return {400, "Please specify a name that does not contain the following characters:  "
                 "\\ / : * ? \" < > |"};
}

inline ServiceError FolderExists(const std::string& name) {
    return {409, "The destination already contains a folder named '" + name + "'."};
}

inline ServiceError ItemExists() {
    return {409, "There is an item with the same name already in this location."};
}

inline ServiceError AlreadyCheckedOut() {
    return {409, "Item already checked out."};
}

inline ServiceError AlreadyCheckedIn() {
    return {409, "Item already checked in."};
}

inline ServiceError CheckedOutToAnother() {
    return {409, "Item checked out to another user."};
}

inline ServiceError CannotLockFolders() {
    return {400, "Cannot check-out or check-in folders."};
}

inline ServiceError NoFilesFound() {
    return {400, "No files found."};
}

inline ServiceError NoProjectsInTemplates() {
    return {400, "Cannot add projects to template repository."};
}

inline ServiceError NoTemplatesInProjects() {
    return {400, "Cannot add templates to project repository."};
}

/// `reason` completes the sentence "The provided file ('name') …".
inline ServiceError BadProvidedFile(const std::string& name, const std::string& reason) {
    return {400, "The provided file ('" + name + "') " + reason};
}

/// A JSON value that is not what the call expects; `value` is its JSON text.
inline ServiceError ConversionError(const std::string& value, const std::string& type,
                                    const std::string& path) {
    return {400,
            "Error converting value " + value + " to type '" + type + "'. Path '" + path + "'."};
}

/// A request that no client should ever send.
inline ServiceError BadRequest(const std::string& message) {
    return {400, message};
}

} // namespace brevint::service
