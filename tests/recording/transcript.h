/// What a recording host saw: one entry per call, in order.
#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace recording {

/// One call. `operation` is "Class.operation" or the name of a free function; constructors and
/// destructors are the operations `new` and `delete`.
struct Entry {
  std::string operation;
  std::string text;  ///< "BpProcedure#1.new("Proportions", 10)", "CdfBin(...) = 0.5"
};

/// Picks entries by a class ("BpProcedure"), an operation of any class ("Position") or both
/// ("BpProcedure.new"). An empty list picks nothing.
bool matches(const std::vector<std::string>& patterns, const std::string& operation);

class Transcript {
 public:
  void add(Entry entry) { entries_.push_back(std::move(entry)); }
  const std::vector<Entry>& entries() const { return entries_; }
  /// The entries that `show` picks (all of them when it is empty) and `hide` does not, one per
  /// line.
  std::string text(const std::vector<std::string>& show = {},
                   const std::vector<std::string>& hide = {}) const;
  /// Number of entries of that operation.
  int count(std::string_view operation) const;

 private:
  std::vector<Entry> entries_;
};

/// Arguments and answers as the transcript shows them: numbers with 17 significant digits, the
/// system-missing value as `missing`, texts in quotes.
std::string shown(double value);
std::string shown(bool value);
std::string shown(const std::string& text);
std::string shown(const char* text);
template <class Integer>
std::enable_if_t<std::is_integral_v<Integer>, std::string> shown(Integer value) {
  return std::to_string(value);
}
template <class Element>
std::string shown(const std::vector<Element>& values) {
  std::string text = "[";
  for (const auto& value : values) {
    if (text.size() > 1) text += ", ";
    text += shown(static_cast<const Element&>(value));
  }
  return text + "]";
}

/// A text that is shown as it stands.
struct Raw {
  std::string text;
};
inline std::string shown(const Raw& raw) { return raw.text; }

}  // namespace recording
