#include "tests/recording/transcript.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "host/constants.h"

namespace recording {

bool matches(const std::vector<std::string>& patterns, const std::string& operation) {
  const size_t dot = operation.find('.');
  return std::any_of(patterns.begin(), patterns.end(), [&](const std::string& pattern) {
    if (pattern == operation) return true;
    if (dot == std::string::npos) return false;
    return operation.compare(0, dot, pattern) == 0 || operation.substr(dot + 1) == pattern;
  });
}

std::string Transcript::text(const std::vector<std::string>& show,
                             const std::vector<std::string>& hide) const {
  std::string text;
  for (const Entry& entry : entries_) {
    if (!show.empty() && !matches(show, entry.operation)) continue;
    if (matches(hide, entry.operation)) continue;
    text += entry.text + '\n';
  }
  return text;
}

int Transcript::count(std::string_view operation) const {
  return static_cast<int>(std::count_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
    return entry.operation == operation;
  }));
}

std::string shown(double value) {
  if (value == kSystemMissing) return "missing";
  if (std::isnan(value)) return "NaN";
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

std::string shown(bool value) { return value ? "true" : "false"; }

std::string shown(const std::string& text) {
  std::string quoted = "\"";
  for (const char letter : text) {
    if (letter == '"' || letter == '\\') quoted += '\\';
    if (letter == '\n') {
      quoted += "\\n";
    } else {
      quoted += letter;
    }
  }
  return quoted + '"';
}

std::string shown(const char* text) {
  return text == nullptr ? std::string("null") : shown(std::string(text));
}

}  // namespace recording
