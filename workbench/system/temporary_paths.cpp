#include "workbench/system/temporary_paths.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <set>
#include <system_error>

namespace workbench {
namespace {

/// What mkdtemp and mkostemp ask for at the end of a name: they put characters there that no other
/// name has.
constexpr const char* kMadeUnique = "XXXXXX";

struct Registry {
  std::mutex mutex;
  std::set<std::string> paths;
};

/// Never destroyed: the thread that watches for signals may outlive everything else.
Registry& registry() {
  static Registry* const all = new Registry;
  return *all;
}

void removeAll(const std::string& path) {
  std::error_code ignored;  // there is nobody left to tell
  std::filesystem::remove_all(path, ignored);
}

[[noreturn]] void cannotMake(const std::string& stem) {
  throw std::system_error(errno, std::generic_category(), stem);
}

}  // namespace

std::string makeTemporaryFolder(const std::string& stem) {
  const std::lock_guard lock(registry().mutex);
  std::string path = stem + kMadeUnique;
  if (::mkdtemp(path.data()) == nullptr) cannotMake(stem);
  registry().paths.insert(path);
  return path;
}

TemporaryDescriptor makeTemporaryFile(const std::string& stem) {
  const std::lock_guard lock(registry().mutex);
  std::string path = stem + kMadeUnique;
  const int descriptor = ::mkostemp(path.data(), O_CLOEXEC);
  if (descriptor < 0) cannotMake(stem);
  registry().paths.insert(path);
  return {path, descriptor};
}

void removeTemporary(const std::string& path) noexcept {
  const std::lock_guard lock(registry().mutex);
  if (registry().paths.erase(path) != 0) removeAll(path);
}

int keepTemporary(const std::string& path, const std::string& as) {
  const std::lock_guard lock(registry().mutex);
  if (std::rename(path.c_str(), as.c_str()) != 0) return errno;
  registry().paths.erase(path);
  return 0;
}

void runToItsEnd(const std::function<void()>& step) {
  const std::lock_guard lock(registry().mutex);
  step();
}

void removeTemporariesAndExit(int status, const std::function<void()>& farewell) {
  registry().mutex.lock();
  for (const std::string& path : registry().paths) {
    // Other threads go on until the end: under another name they can put nothing into a folder.
    const std::string aside = path + "-";
    const bool moved = std::rename(path.c_str(), aside.c_str()) == 0;
    removeAll(moved ? aside : path);
  }
  farewell();
  ::_exit(status);
}

}  // namespace workbench
