#include "workbench/cli/password_prompt.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "workbench/cli/console.h"
#include "workbench/cli/options.h"
#include "workbench/system/exit_steps.h"

namespace workbench {
namespace {

constexpr const char* kVariable = "PROPORTIONS_ODBC_PASSWORD";

std::string firstLine(const std::string& file) {
  std::ifstream input(file, std::ios::binary);
  std::string line;
  if (!input || (!std::getline(input, line) && !input.eof())) {
    throw UsageError("--password-file: " + file + " cannot be read: " + std::strerror(errno));
  }
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

/// Standard input may be data, so that the terminal itself is asked.
class Terminal {
 public:
  Terminal() : descriptor_(::open("/dev/tty", O_RDWR | O_CLOEXEC)) {}
  ~Terminal() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  std::optional<std::string> ask(const char* question) const;

 private:
  int descriptor_;
};

std::optional<std::string> Terminal::ask(const char* question) const {
  termios shown{};
  if (descriptor_ < 0 || ::tcgetattr(descriptor_, &shown) != 0) return std::nullopt;
  termios hidden = shown;
  hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  const auto restore = [this, shown] { ::tcsetattr(descriptor_, TCSANOW, &shown); };
  const ExitStep restoring(restore);
  ::tcsetattr(descriptor_, TCSAFLUSH, &hidden);
  bool answered = ::write(descriptor_, question, std::strlen(question)) > 0;
  std::string answer;
  for (char c = 0; answered && c != '\n';) {
    answered = ::read(descriptor_, &c, 1) == 1;
    if (answered && c != '\n') answer += c;
  }
  restore();
  answered = ::write(descriptor_, "\n", 1) == 1 && answered;
  return answered ? std::optional(answer) : std::nullopt;
}

std::optional<std::string> askForPassword() {
  clearStatus();
  return Terminal().ask("Password of the server: ");
}

}  // namespace

ServerPassword serverPassword(const std::optional<std::string>& file) {
  if (file) return {firstLine(*file), {}};
  const char* told = std::getenv(kVariable);
  if (told != nullptr) return {std::string(told), {}};
  return {std::nullopt, askForPassword};
}

}  // namespace workbench
