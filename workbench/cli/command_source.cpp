#include "workbench/cli/command_source.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "workbench/cli/options.h"

namespace workbench {
namespace {

constexpr size_t kLongestText = size_t{64} << 20;
constexpr size_t kBlock = size_t{1} << 16;

[[noreturn]] void cannotRead(const std::string& path, int error) {
  throw UsageError("the command file " + path + " cannot be read: " + std::strerror(error));
}

std::string readAll(int descriptor, const std::string& path) {
  std::string text;
  for (;;) {
    const size_t have = text.size();
    text.resize(have + kBlock);
    const ssize_t read = ::read(descriptor, text.data() + have, kBlock);
    if (read < 0 && errno != EINTR) cannotRead(path, errno);
    text.resize(have + static_cast<size_t>(read < 0 ? 0 : read));
    if (read == 0) return text;
    if (text.size() > kLongestText) {
      throw UsageError("the command file " + path +
                       " is longer than 64 MiB; divide it into several");
    }
  }
}

}  // namespace

std::string readCommandFile(const std::string& path) {
  if (path == "-") return readAll(STDIN_FILENO, "(standard input)");
  if (path.empty()) throw UsageError("-f names no file; give a path, or - for standard input");
  if (std::filesystem::is_directory(path)) {
    throw UsageError("the command file " + path + " is a directory; name a text file");
  }
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) cannotRead(path, errno);
  try {
    std::string text = readAll(descriptor, path);
    ::close(descriptor);
    return text;
  } catch (...) {
    ::close(descriptor);
    throw;
  }
}

std::string withLineFeeds(const std::string& text) {
  std::string result;
  result.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    const bool isPair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (!isPair) result += text[i] == '\r' ? '\n' : text[i];
  }
  return result;
}

}  // namespace workbench
