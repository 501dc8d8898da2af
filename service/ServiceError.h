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

ServiceError AuthorizationFailed();
ServiceError ItemNotFound();
ServiceError MalformedGuid();
ServiceError NotAFolder();
ServiceError NotAFile();
ServiceError InvalidName();
ServiceError FolderExists(const std::string& name);
ServiceError ItemExists();
ServiceError AlreadyCheckedOut();
ServiceError AlreadyCheckedIn();
ServiceError CheckedOutToAnother();
ServiceError CannotLockFolders();
ServiceError NoFilesFound();
ServiceError NoProjectsInTemplates();
ServiceError NoTemplatesInProjects();

/// `reason` completes the sentence "The provided file ('name') …".
ServiceError BadProvidedFile(const std::string& name, const std::string& reason);

/// A JSON value that is not what the call expects; `value` is its JSON text.
ServiceError ConversionError(const std::string& value, const std::string& type,
                             const std::string& path);

/// A request that no client should ever send.
ServiceError BadRequest(const std::string& message);

} // namespace brevint::service
