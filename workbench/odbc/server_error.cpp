#include "workbench/odbc/server_error.h"

#include <algorithm>
#include <string_view>

#include "workbench/text/text_fold.h"

namespace workbench {
namespace {

constexpr const char* kHidden = "***";
/// A shorter secret is looked for in attributes only: it would be found everywhere.
constexpr size_t kShortSecret = 3;

/// "[unixODBC][Driver]text" without what stands in brackets, on one line.
std::string essence(std::string text) {
  while (!text.empty() && text.front() == '[') {
    const size_t end = text.find(']');
    if (end == std::string::npos) break;
    text.erase(0, text.find_first_not_of(' ', end + 1));
  }
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

void hide(const std::string& secret, std::string& text) {
  for (size_t at = text.find(secret); at != std::string::npos; at = text.find(secret, at)) {
    text.replace(at, secret.size(), kHidden);
    at += std::string_view(kHidden).size();
  }
}

/// Hides what follows PWD= or password=.
void hideAttributes(std::string& text) {
  for (const std::string_view name : {"pwd=", "password="}) {
    std::string folded = foldCase(text);
    if (folded.size() != text.size()) return;  // places would differ; drivers write no such letters
    for (size_t at = folded.find(name); at != std::string::npos; at = folded.find(name, at)) {
      at += name.size();
      const size_t end = std::min(text.find_first_of("; \"'", at), text.size());
      text.replace(at, end - at, kHidden);
      folded = foldCase(text);
    }
  }
}

}  // namespace

ServerError serverError(DriverText form, SQLSMALLINT type, SQLHANDLE handle,
                        const std::string& secret) {
  const Diagnostic found = diagnostic(form, type, handle);
  if (found.state.empty()) return {"HY000", 0, "the driver gives no reason"};
  std::string text = essence(found.text);
  if (secret.size() >= kShortSecret) hide(secret, text);
  hideAttributes(text);
  return {found.state, found.native, text};
}

}  // namespace workbench
