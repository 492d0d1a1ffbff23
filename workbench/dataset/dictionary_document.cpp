#include "workbench/dataset/dictionary_document.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <system_error>
#include <utility>

#include "workbench/dataset/value_text.h"
#include "workbench/text/nearest.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

using Json = nlohmann::json;
using Entry = DictionaryField::Entry;

constexpr size_t kDeepest = 1000;  // of any use are six levels
constexpr size_t kLargestFile = size_t{64} << 20U;

struct TypeName {
  const char* name;
  ColumnType::Name type;
};
constexpr TypeName kTypes[] = {
    {"string", ColumnType::Name::kString},   {"number", ColumnType::Name::kNumber},
    {"integer", ColumnType::Name::kInteger}, {"year", ColumnType::Name::kInteger},
    {"boolean", ColumnType::Name::kBoolean}, {"date", ColumnType::Name::kDate},
    {"time", ColumnType::Name::kTime},       {"datetime", ColumnType::Name::kDateTime}};

/// Properties of a field that change how its values read, with the only value each may have here
/// (as JSON; empty: none).
struct Unsupported {
  const char* property;
  const char* allowed;
};
constexpr Unsupported kUnsupported[] = {{"format", R"("default")"}, {"decimalChar", R"(".")"},
                                        {"groupChar", R"("")"},     {"bareNumber", "true"},
                                        {"trueValues", ""},         {"falseValues", ""},
                                        {"delimiter", ""},          {"itemType", ""}};

/// Finds objects that have a key twice, of which a document keeps the last one only.
class KeyWatch {
 public:
  explicit KeyWatch(const std::string& file) : file_(file) {}

  /// To be called by the parser; keeps everything.
  bool see(Json::parse_event_t event, const Json& parsed) {
    using Event = Json::parse_event_t;
    switch (event) {
      case Event::object_start:
      case Event::array_start:
        if (open_.size() == kDeepest) {
          refuseDictionary(file_, "", fmt::format("it is nested more than {} deep", kDeepest));
        }
        open_.emplace_back();
        break;
      case Event::key:
        open_.back().current = parsed.get<std::string>();
        if (!open_.back().keys.insert(open_.back().current).second) {
          refuseDictionary(file_, place(), "the key stands twice in its object; leave one out");
        }
        break;
      case Event::object_end:
      case Event::array_end:
        open_.pop_back();
        countElement();
        break;
      case Event::value:
        countElement();
        break;
    }
    return true;
  }

 private:
  struct Level {
    std::set<std::string> keys;
    std::string current;  // key of an object
    size_t elements = 0;  // of a list, complete
  };

  void countElement() {
    if (!open_.empty()) ++open_.back().elements;
  }
  std::string place() const {
    std::string path;
    for (const Level& level : open_) {
      path += "/" + (level.keys.empty() ? std::to_string(level.elements) : level.current);
    }
    return path;
  }

  const std::string& file_;
  std::vector<Level> open_;
};

/// Walks the document, knowing where it is.
class Reader {
 public:
  explicit Reader(const std::string& file) : file_(file) {}

  Json load() const {
    std::error_code ignored;
    if (std::filesystem::is_directory(file_, ignored)) {
      throw DataError(fmt::format("{}: the dictionary is a folder; name a file.", file_));
    }
    std::string bytes;
    std::vector<char> block(size_t{1} << 16U);
    errno = 0;
    std::ifstream stream(file_, std::ios::binary);
    while (stream && bytes.size() <= kLargestFile) {
      stream.read(block.data(), static_cast<std::streamsize>(block.size()));
      bytes.append(block.data(), static_cast<size_t>(stream.gcount()));
    }
    if (!stream.is_open() || stream.bad()) {
      throw DataError(fmt::format("{}: the dictionary cannot be read ({}).", file_,
                                  errno == 0 ? "reading failed" : std::strerror(errno)));
    }
    if (bytes.size() > kLargestFile) {
      throw DataError(fmt::format("{}: the dictionary is larger than 64 MiB.", file_));
    }
    try {
      KeyWatch watch(file_);
      return Json::parse(bytes, [&](int, Json::parse_event_t event, const Json& parsed) {
        return watch.see(event, parsed);
      });
    } catch (const Json::parse_error& error) {
      const size_t at = std::min(error.byte == 0 ? 0 : error.byte - 1, bytes.size());
      const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(at);
      throw DataError(fmt::format("{}, line {}: this is not JSON.", file_,
                                  1 + std::count(bytes.begin(), end, '\n')));
    } catch (const Json::out_of_range&) {
      throw DataError(
          fmt::format("{}: a number is too large; numbers end at about 1.8e308.", file_));
    }
  }

  std::string text(const Json& value, const std::string& place) const {
    if (!value.is_string()) refuseDictionary(file_, place, "a text is expected");
    return value.get<std::string>();
  }

  /// A number, text or truth value as text.
  std::string plain(const Json& value, const std::string& place) const {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_boolean()) return value.get<bool>() ? "true" : "false";
    if (value.is_number_integer()) return value.dump();  // a double could be another one
    if (value.is_number()) return shortestNumber(value.get<double>());
    refuseDictionary(file_, place, "a number or a text is expected");
  }

  const Json& list(const Json& value, const std::string& place) const {
    if (!value.is_array()) refuseDictionary(file_, place, "a list is expected");
    return value;
  }

  /// A value, or an object of value and label.
  Entry entry(const Json& value, const std::string& place) const {
    Entry entry;
    entry.place = place;
    if (!value.is_object()) {
      entry.text = plain(value, place);
      return entry;
    }
    if (!value.contains("value")) refuseDictionary(file_, place, "a value is expected");
    entry.place += "/value";
    entry.text = plain(value.at("value"), entry.place);
    if (value.contains("label")) {
      entry.label = text(value.at("label"), place + "/label");
      entry.labelled = true;
    }
    return entry;
  }

  std::vector<Entry> entries(const Json& holder, const char* property,
                             const std::string& place) const {
    std::vector<Entry> entries;
    const std::string at = place + "/" + property;
    for (const Json& each : list(holder.at(property), at)) {
      entries.push_back(entry(each, fmt::format("{}/{}", at, entries.size())));
    }
    return entries;
  }

  std::vector<Entry> missingValues(const Json& holder, const std::string& place) const {
    std::vector<Entry> values = entries(holder, "missingValues", place);
    values.erase(std::remove_if(values.begin(), values.end(),
                                [](const Entry& each) { return trimmed(each.text).empty(); }),
                 values.end());
    return values;
  }

  std::unique_ptr<DictionaryField> field(const Json& entry, const std::string& place) const {
    auto field = std::make_unique<DictionaryField>();
    field->place = place;
    refuseUnsupported(entry, place);
    if (entry.contains("title")) field->title = text(entry.at("title"), place + "/title");
    if (entry.contains("type")) readType(entry.at("type"), place + "/type", *field);
    if (entry.contains("categories")) field->categories = entries(entry, "categories", place);
    if (entry.contains("categoriesOrdered")) {
      const Json& ordered = entry.at("categoriesOrdered");
      const std::string at = place + "/categoriesOrdered";
      if (!ordered.is_boolean()) refuseDictionary(file_, at, "true or false is expected");
      field->ordered = ordered.get<bool>();
    }
    return field;
  }

 private:
  void refuseUnsupported(const Json& entry, const std::string& place) const {
    for (const Unsupported& each : kUnsupported) {
      if (!entry.contains(each.property)) continue;
      if (*each.allowed != '\0' && entry.at(each.property) == Json::parse(each.allowed)) continue;
      refuseDictionary(
          file_, fmt::format("{}/{}", place, each.property),
          fmt::format("{} is not supported; leave it out, and write the values as numbers with "
                      "a point, dates as 2026-01-31 and times as 12:30:00",
                      each.property));
    }
  }

  void readType(const Json& value, const std::string& place, DictionaryField& field) const {
    const std::string name = text(value, place);
    if (name == "any") return;
    std::vector<std::string> known;
    for (const TypeName& type : kTypes) {
      known.emplace_back(type.name);
      if (name != type.name) continue;
      field.typeName = name;
      field.type = type.type;
      return;
    }
    const std::string guess = nearest(name, known);
    refuseDictionary(file_, place,
                     fmt::format("the type '{}' is not known{}; types are {}", name,
                                 guess.empty() ? "" : " (did you mean '" + guess + "'?)",
                                 fmt::join(known, ", ")));
  }

  std::string file_;
};

}  // namespace

void refuseDictionary(const std::string& file, const std::string& place, const std::string& what) {
  throw DataError(fmt::format("{}: {}: {}.", file, place.empty() ? "/" : place, what));
}

DictionaryFields readDictionary(const std::string& file) {
  DictionaryFields fields;
  const Reader reader(file);
  const Json document = reader.load();
  if (!document.is_object())
    refuseDictionary(file, "", "a Table Schema (an object with fields) is expected");
  if (!document.contains("fields")) refuseDictionary(file, "", "there are no fields");
  std::vector<Entry> missingForAll;
  if (document.contains("missingValues")) missingForAll = reader.missingValues(document, "");
  size_t index = 0;
  for (const Json& entry : reader.list(document.at("fields"), "/fields")) {
    const std::string place = fmt::format("/fields/{}", index++);
    if (!entry.is_object()) refuseDictionary(file, place, "an object is expected");
    if (!entry.contains("name")) refuseDictionary(file, place, "the field has no name");
    const std::string name = reader.text(entry.at("name"), place + "/name");
    auto field = reader.field(entry, place);
    field->missing =
        entry.contains("missingValues") ? reader.missingValues(entry, place) : missingForAll;
    if (!fields.emplace(name, std::move(field)).second) {
      refuseDictionary(file, place + "/name", fmt::format("the field '{}' is listed twice", name));
    }
  }
  return fields;
}

}  // namespace workbench
