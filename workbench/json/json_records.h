/// The records of a JSON file: an array of objects, or one object a line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "workbench/delimited/text_stream.h"

namespace workbench {

/// What a member of a record is.
struct JsonValue {
  enum class Type : uint8_t { kNull, kBoolean, kNumber, kString, kNested };
  Type type = Type::kNull;
  /// Of numbers as spelt, of booleans "true" or "false"; of nested values their JSON, when the
  /// visitor wants it.
  std::string_view text;
};

/// Takes the records in order.
class JsonVisitor {
 public:
  virtual ~JsonVisitor() = default;
  virtual void beginRecord(uint64_t line) = 0;
  /// `name` and the value's text are valid during the call only.
  virtual void member(const std::string& name, const JsonValue& value, uint64_t line) = 0;
  virtual void endRecord() = 0;
  /// Whether the JSON of the nested value with that name, which begins, is wanted.
  virtual bool wantsNested(const std::string& name) const = 0;
};

/// Strict JSON (RFC 8259), with or without a byte order mark. Nesting takes a bit of memory for
/// each level and nothing of the stack. Throws DataError with the line for anything else, for
/// strings with a NUL character and for numbers beyond the range of a double.
void readJsonRecords(TextStream& text, const std::string& label, JsonVisitor& visitor);

}  // namespace workbench
