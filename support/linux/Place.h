#pragma once

#include "support/linux/Descriptor.h"

#include <filesystem>
#include <string>
#include <system_error>

#include <sys/stat.h>

/// Where a file lies once its links have been followed.
struct Place {
    Descriptor folder;
    std::string name;
    bool isStream = false; ///< It is a link of /proc, which stands for something that is open.

    std::error_code Follow(std::filesystem::path path);

    /// Gives a file the permissions of the one that lies here. Whoever could not read that one
    /// cannot read the file either.
    bool CopyPermissions(const struct stat& here, int to) const;

private:
    /// Copies the access list, if there is one: without it the permissions of the group would mean
    /// another group of people.
    bool CopyAccessList(int to) const;
};
