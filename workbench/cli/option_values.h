/// Values of options: choices and whole numbers, refused with what would do.
#pragma once

#include <algorithm>
#include <charconv>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "workbench/cli/options.h"

namespace workbench {

template <typename Value>
using Choices = std::vector<std::pair<std::string, Value>>;

/// Sets `target` to the value of that name, whatever the case. Throws UsageError that lists the
/// names.
template <typename Value>
std::function<void(const std::string&)> choice(const std::string& option, Choices<Value> choices,
                                               Value& target) {
  return [option, choices = std::move(choices), &target](const std::string& text) {
    std::string names;
    for (const auto& [name, value] : choices) {
      if (std::equal(name.begin(), name.end(), text.begin(), text.end(),
                     [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + 32 : b); })) {
        target = value;
        return;
      }
      names += (names.empty() ? "" : ", ") + name;
    }
    throw UsageError(option + ": '" + text + "' is not one of " + names);
  };
}

/// Sets `target` to a whole number from `least` to `most`. Throws UsageError.
template <typename Target>
std::function<void(const std::string&)> wholeNumber(const std::string& option, long long least,
                                                    long long most, Target& target) {
  return [option, least, most, &target](const std::string& text) {
    long long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < least || value > most) {
      throw UsageError(option + ": '" + text + "' is not a whole number from " +
                       std::to_string(least) + " to " + std::to_string(most));
    }
    target = value;
  };
}

}  // namespace workbench
