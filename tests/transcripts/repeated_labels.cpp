#include "tests/transcripts/repeated_labels.h"

#include <functional>
#include <map>
#include <string_view>

namespace {

constexpr std::string_view kStart = "composite \"";

/// Behind the closing quote of the text that opens at `at`.
size_t endOfQuoted(const std::string& text, size_t at) {
  for (size_t i = at + 1; i < text.size(); ++i) {
    if (text[i] == '\\') {
      ++i;
    } else if (text[i] == '"') {
      return i + 1;
    }
  }
  return text.size();
}

/// Behind the bracket that closes the one at `at`.
size_t endOfBracketed(const std::string& text, size_t at) {
  int depth = 0;
  size_t i = at;
  while (i < text.size()) {
    if (text[i] == '"') {
      i = endOfQuoted(text, i);
      continue;
    }
    depth += text[i] == '[' ? 1 : text[i] == ']' ? -1 : 0;
    ++i;
    if (depth == 0) return i;
  }
  return i;
}

/// A label is its template in quotes and any number of items in brackets.
size_t endOfLabel(const std::string& text, size_t start) {
  size_t end = endOfQuoted(text, start + kStart.size() - 1);
  while (text.compare(end, 2, " [") == 0) end = endOfBracketed(text, end + 1);
  return end;
}

/// The text with every composite label replaced by what `shown` makes of it.
std::string replaceLabels(const std::string& text,
                          const std::function<std::string(const std::string&)>& shown) {
  std::string result;
  size_t at = 0;
  for (size_t start = text.find(kStart); start != std::string::npos;
       start = text.find(kStart, at)) {
    const size_t end = endOfLabel(text, start);
    result += text.substr(at, start - at) + shown(text.substr(start, end - start));
    at = end;
  }
  return result + text.substr(at);
}

}  // namespace

std::string withRepeatedLabelsNamed(const std::string& transcript) {
  std::map<std::string, int> occurrences;
  replaceLabels(transcript, [&](const std::string& label) {
    ++occurrences[label];
    return std::string();
  });
  std::map<std::string, std::string> names;
  return replaceLabels(transcript, [&](const std::string& label) {
    if (occurrences[label] == 1) return label;
    const auto [name, isNew] =
        names.try_emplace(label, "label#" + std::to_string(names.size() + 1));
    return isNew ? name->second + " = " + label : name->second;
  });
}
