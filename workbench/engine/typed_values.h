/// Values of the engine's own types as the program holds them, exactly or not at all.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/engine/database.h"

namespace workbench {

/// What the values of a type are. Enumerations are numbers: 1 for the first category, and so on.
enum class EngineKind : uint8_t {
  kNumber,
  kBoolean,
  kDate,
  kTime,
  kDateTime,
  kZonedDateTime,
  kText,
  kUnusable  ///< bytes, intervals, lists, structures
};
EngineKind kindOf(const EngineType& type);

/// What to select so that TypedColumn can read a column of that type.
std::string typedExpression(const EngineType& type, const std::string& quotedColumn);

/// Reads one column of a query's result.
class TypedColumn {
 public:
  explicit TypedColumn(EngineType type) : type_(std::move(type)) {}

  /// What is wrong with a value, as the end of a sentence that begins with the value.
  struct Flaw {
    size_t row = 0;
    std::string value;
    std::string reason;
  };

  /// The chunk's values as numbers, NaN for nulls: dates and time stamps in seconds since
  /// 1970-01-01 (UTC), times in seconds since midnight, booleans 0 and 1. False at the first value
  /// that a double does not hold exactly, or that is not a moment in time; `flaw` says which.
  bool numbers(const Chunk& chunk, size_t column, double* out, Flaw& flaw) const;
  /// Column of whole numbers or booleans whose values in this chunk are all below kMissingByte: the
  /// values, kMissingByte for nulls. False for all others; `numbers` reads those.
  bool bytes(const Chunk& chunk, size_t column, uint8_t* out) const;
  static constexpr uint8_t kMissingByte = 128;
  /// The chunk's values as texts, empty for nulls, valid as long as the chunk.
  static void texts(const Chunk& chunk, size_t column, std::string_view* out);

 private:
  EngineType type_;
};

}  // namespace workbench
