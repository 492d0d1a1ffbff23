#include "workbench/odbc/connection_text.h"

#include <algorithm>

#include "workbench/text/text_fold.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr std::string_view kSecretEndings[] = {"pwd", "password", "passwd", "secret", "token"};

std::string_view withoutBlanks(std::string_view text) {
  const size_t begin = text.find_first_not_of(" \t\r\n");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t\r\n") - begin + 1);
}

[[noreturn]] void refuse(const char* what) {
  throw DataError(std::string("odbc: ") + what +
                  "; write odbc:NAME for a data source of the driver manager, or "
                  "odbc:DRIVER={NAME};SERVER=HOST;DATABASE=NAME;UID=USER.");
}

/// A value in braces, in which a closing brace is doubled; `at` moves behind it.
std::string bracedValue(std::string_view text, size_t& at) {
  std::string value;
  for (++at; at < text.size(); ++at) {
    if (text[at] == '}') {
      if (at + 1 == text.size() || text[at + 1] != '}') {
        ++at;
        return value;
      }
      ++at;
    }
    value.push_back(text[at]);
  }
  refuse("a brace of the connection string is not closed");
}

std::string nextValue(std::string_view text, size_t& at) {
  while (at < text.size() && text[at] == ' ') ++at;
  std::string value;
  if (at < text.size() && text[at] == '{') value = bracedValue(text, at);
  const size_t end = std::min(text.find(';', at), text.size());
  const std::string_view rest = withoutBlanks(text.substr(at, end - at));
  at = std::min(end + 1, text.size());
  return value + std::string(rest);
}

}  // namespace

ConnectionAttributes connectionAttributes(std::string_view text) {
  if (withoutBlanks(text).empty()) refuse("the connection string is empty");
  if (text.find('=') == std::string_view::npos) {
    return {{"DSN", std::string(withoutBlanks(text))}};
  }
  ConnectionAttributes attributes;
  for (size_t at = 0; at < text.size();) {
    const size_t end = text.find_first_of("=;", at);
    const std::string_view name = withoutBlanks(text.substr(at, end - at));
    if (name.empty() && (end == std::string_view::npos || text[end] == ';')) {
      at = end == std::string_view::npos ? text.size() : end + 1;
      continue;
    }
    if (name.empty() || end == std::string_view::npos || text[end] == ';') {
      refuse("the connection string has a part without NAME=VALUE");
    }
    at = end + 1;
    std::string value = nextValue(text, at);
    attributes.emplace_back(name, std::move(value));
  }
  return attributes;
}

const std::string* findAttribute(const ConnectionAttributes& attributes, std::string_view name) {
  const std::string folded = foldCase(name);
  for (const auto& [key, value] : attributes) {
    if (foldCase(key) == folded) return &value;
  }
  return nullptr;
}

std::string secretAttribute(const ConnectionAttributes& attributes) {
  for (const auto& [key, value] : attributes) {
    const std::string folded = foldCase(key);
    if (std::any_of(std::begin(kSecretEndings), std::end(kSecretEndings),
                    [&](std::string_view ending) { return folded.ends_with(ending); })) {
      return key;
    }
  }
  return {};
}

std::string connectionString(const ConnectionAttributes& attributes) {
  std::string text;
  for (const auto& [key, value] : attributes) {
    text += key + "=";
    // Braces only where nothing else will do: not all drivers know how one stands in them.
    const bool plain = value.empty() || (value.find(';') == std::string::npos &&
                                         value.front() != '{' && withoutBlanks(value) == value);
    if (plain && foldCase(key) != "driver") {
      text += value;
    } else {
      text += '{';
      for (const char c : value) text.append(c == '}' ? 2 : 1, c);
      text += '}';
    }
    text += ';';
  }
  return text;
}

}  // namespace workbench
