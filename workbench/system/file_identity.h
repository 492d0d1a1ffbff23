/// Which file a name stands for, whatever the name.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <optional>
#include <string>

namespace workbench {

/// Equal for two names exactly when they are one file: by symbolic links, hard links or mounts.
struct FileIdentity {
  dev_t device;
  ino_t inode;
  bool operator==(const FileIdentity&) const = default;
};

/// The regular file that a path leads to; nothing when there is none.
std::optional<FileIdentity> identityOf(const std::string& path);

/// The regular file that an open descriptor stands for; nothing for a pipe, a terminal and the
/// like.
std::optional<FileIdentity> identityOf(int descriptor);

/// Whether two looks at a path or descriptor saw one file with nothing written to it in between.
bool isUnchanged(const struct stat& before, const struct stat& now);

/// Where a file is or would be: the path without links and dots, as far as its folders are there.
std::string placeOf(const std::string& path);

}  // namespace workbench
