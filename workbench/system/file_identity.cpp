#include "workbench/system/file_identity.h"

#include <filesystem>
#include <system_error>

namespace workbench {
namespace {

std::optional<FileIdentity> identityOf(const struct stat& status) {
  if (!S_ISREG(status.st_mode)) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

}  // namespace

std::optional<FileIdentity> identityOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return identityOf(status);
}

std::optional<FileIdentity> identityOf(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) return std::nullopt;
  return identityOf(status);
}

bool isUnchanged(const struct stat& before, const struct stat& now) {
  return now.st_dev == before.st_dev && now.st_ino == before.st_ino &&
         now.st_size == before.st_size && now.st_mtim.tv_sec == before.st_mtim.tv_sec &&
         now.st_mtim.tv_nsec == before.st_mtim.tv_nsec &&
         now.st_ctim.tv_sec == before.st_ctim.tv_sec &&
         now.st_ctim.tv_nsec == before.st_ctim.tv_nsec;
}

std::string placeOf(const std::string& path) {
  std::error_code error;
  const std::filesystem::path place =
      std::filesystem::weakly_canonical(std::filesystem::absolute(path, error), error);
  return error ? path : place.string();
}

}  // namespace workbench
