#include "workbench/engine/typed_values.h"

#include <fmt/format.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

#include "workbench/values/instants.h"
#include "workbench/values/whole_numbers.h"

namespace workbench {
namespace {

constexpr int kExactDigits =
    15;  // every decimal with this many digits survives the way to a double
constexpr double kMicroseconds = 1e6;
constexpr int64_t kDaySeconds = 86'400;
constexpr int64_t kDayMicroseconds = kDaySeconds * 1'000'000;
constexpr const char* kInexact =
    "cannot be held exactly; cast the column in a query (--query), for example to VARCHAR, or make "
    "it text in the dictionary";
constexpr const char* kInfinite = "is not a moment; leave it out, or cast it, in a query (--query)";
constexpr const char* kTooFine =
    "is finer than a microsecond; cast the column to TIMESTAMP in a query (--query)";

bool isWide(const EngineType& type) {
  switch (type.id) {
    case DUCKDB_TYPE_HUGEINT:
    case DUCKDB_TYPE_UHUGEINT:
    case DUCKDB_TYPE_BIGNUM:
      return true;
    case DUCKDB_TYPE_DECIMAL:
      return type.decimalDigits > kExactDigits;
    default:
      return false;
  }
}

/// The nearest double; false when it, rounded to the scale, is another number.
bool exactDecimal(std::string_view text, int scale, double& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return false;
  const std::string back = fmt::format("{:.{}f}", value, scale);
  return back == text || (value == 0.0 && back == "0");
}

/// Takes every value, then `null` for the nulls.
template <typename Value, typename Number>
void convertAll(const Chunk& chunk, size_t column, Number* out, Number null) {
  const auto* values = chunk.data<Value>(column);
  const size_t rows = chunk.size();
  for (size_t row = 0; row < rows; ++row) out[row] = static_cast<Number>(values[row]);
  const uint64_t* validity = chunk.validity(column);
  if (validity == nullptr) return;
  for (size_t begin = 0; begin < rows; begin += 64) {
    for (uint64_t nulls = ~validity[begin / 64]; nulls != 0; nulls &= nulls - 1) {
      const size_t row = begin + static_cast<size_t>(std::countr_zero(nulls));
      if (row < rows) out[row] = null;
    }
  }
}

template <typename Value>
void convertPlain(const Chunk& chunk, size_t column, double* out) {
  convertAll<Value>(chunk, column, out, std::numeric_limits<double>::quiet_NaN());
}

/// What stands in the place of a null counts, too: then the caller has a slower way.
template <typename Value>
bool convertBytes(const Chunk& chunk, size_t column, uint8_t* out) {
  const auto* values = chunk.data<Value>(column);
  const size_t rows = chunk.size();
  std::make_unsigned_t<Value> bits = 0;
  for (size_t row = 0; row < rows; ++row)
    bits |= static_cast<std::make_unsigned_t<Value>>(values[row]);
  if (bits >= TypedColumn::kMissingByte) return false;
  convertAll<Value>(chunk, column, out, TypedColumn::kMissingByte);
  return true;
}

/// Calls back for every row that is not null; stops when it answers false.
template <typename Value, typename Convert>
bool convert(const Chunk& chunk, size_t column, double* out, TypedColumn::Flaw& flaw,
             Convert&& convertOne) {
  const auto* values = chunk.data<Value>(column);
  const uint64_t* validity = chunk.validity(column);
  const size_t rows = chunk.size();
  for (size_t row = 0; row < rows; ++row) {
    if (Chunk::isNull(validity, row)) {
      out[row] = std::numeric_limits<double>::quiet_NaN();
      continue;
    }
    flaw.row = row;
    if (!convertOne(values[row], out[row])) return false;
  }
  return true;
}

/// False when some number, or what stands in the place of a null, is not below 2^53 in magnitude.
template <typename Value>
bool areSmall(const Value* values, size_t count) {
  constexpr auto kExact = static_cast<uint64_t>(kAllWhole);
  constexpr uint64_t kLowest = std::is_signed_v<Value> ? kExact : 0;
  uint64_t bits = 0;
  for (size_t i = 0; i < count; ++i) bits |= static_cast<uint64_t>(values[i]) + kLowest;
  return bits < kLowest + kExact;
}

template <typename Value>
bool convertWhole(const Chunk& chunk, size_t column, double* out, TypedColumn::Flaw& flaw) {
  if (areSmall(chunk.data<Value>(column), chunk.size())) {
    convertPlain<Value>(chunk, column, out);
    return true;
  }
  return convert<Value>(chunk, column, out, flaw, [&](Value value, double& number) {
    number = static_cast<double>(value);
    // 2^64 itself, the double next to the largest number, is not to be converted back.
    if (number < std::ldexp(1.0, std::numeric_limits<Value>::digits) &&
        static_cast<Value>(number) == value) {
      return true;
    }
    flaw.value = fmt::format("{}", value);
    flaw.reason = kInexact;
    return false;
  });
}

/// Ticks since midnight or 1970, `ticksPerSecond` to the second.
bool convertTicks(const Chunk& chunk, size_t column, double* out, TypedColumn::Flaw& flaw,
                  int64_t ticksPerSecond, bool canBeInfinite) {
  return convert<int64_t>(chunk, column, out, flaw, [&](int64_t ticks, double& number) {
    if (canBeInfinite && (ticks == std::numeric_limits<int64_t>::max() ||
                          ticks == -std::numeric_limits<int64_t>::max())) {
      flaw.value = ticks > 0 ? "infinity" : "-infinity";
      flaw.reason = kInfinite;
      return false;
    }
    if (ticksPerSecond < 1'000'000) {
      number = static_cast<double>(ticks) / static_cast<double>(ticksPerSecond);
      return true;
    }
    const int64_t ticksPerMicrosecond = ticksPerSecond / 1'000'000;
    if (ticks % ticksPerMicrosecond != 0) {
      flaw.value = fmt::format("a time with {} nanoseconds", ((ticks % 1000) + 1000) % 1000);
      flaw.reason = kTooFine;
      return false;
    }
    const int64_t microseconds = ticks / ticksPerMicrosecond;
    number = secondsOf(microseconds);
    if (secondsTell(microseconds)) return true;
    flaw.value = fmt::format("a time {} microseconds from 1970", microseconds);
    flaw.reason = kInexact;
    return false;
  });
}

bool convertDates(const Chunk& chunk, size_t column, double* out, TypedColumn::Flaw& flaw) {
  return convert<int32_t>(chunk, column, out, flaw, [&](int32_t days, double& number) {
    if (days == std::numeric_limits<int32_t>::max() ||
        days == -std::numeric_limits<int32_t>::max()) {
      flaw.value = days > 0 ? "infinity" : "-infinity";
      flaw.reason = kInfinite;
      return false;
    }
    number = static_cast<double>(days * kDaySeconds);
    return true;
  });
}

/// A time of day with an offset: 40 bits of microseconds, then 24 of 15:59:59 minus the offset.
bool convertZonedTimes(const Chunk& chunk, size_t column, double* out, TypedColumn::Flaw& flaw) {
  return convert<uint64_t>(chunk, column, out, flaw, [](uint64_t bits, double& number) {
    constexpr int64_t kLargestOffset = 57'599;
    const auto local = static_cast<int64_t>(bits >> 24U);
    const int64_t offset = kLargestOffset - static_cast<int64_t>(bits & 0xFFFFFFU);
    const int64_t utc = local - offset * 1'000'000;
    number = static_cast<double>((utc + 2 * kDayMicroseconds) % kDayMicroseconds) / kMicroseconds;
    return true;
  });
}

bool convertWide(const Chunk& chunk, size_t column, int scale, double* out,
                 TypedColumn::Flaw& flaw) {
  return convert<duckdb_string_t>(chunk, column, out, flaw,
                                  [&](const duckdb_string_t& text, double& number) {
                                    if (exactDecimal(textOf(text), scale, number)) return true;
                                    flaw.value = std::string(textOf(text));
                                    flaw.reason = kInexact;
                                    return false;
                                  });
}

bool convertCategories(const Chunk& chunk, size_t column, size_t categories, double* out,
                       TypedColumn::Flaw& flaw) {
  const auto number = [](auto code, double& value) {
    value = static_cast<double>(code) + 1.0;
    return true;
  };
  if (categories <= 0xFF) return convert<uint8_t>(chunk, column, out, flaw, number);
  if (categories <= 0xFFFF) return convert<uint16_t>(chunk, column, out, flaw, number);
  return convert<uint32_t>(chunk, column, out, flaw, number);
}

}  // namespace

EngineKind kindOf(const EngineType& type) {
  switch (type.id) {
    case DUCKDB_TYPE_TINYINT:
    case DUCKDB_TYPE_SMALLINT:
    case DUCKDB_TYPE_INTEGER:
    case DUCKDB_TYPE_BIGINT:
    case DUCKDB_TYPE_UTINYINT:
    case DUCKDB_TYPE_USMALLINT:
    case DUCKDB_TYPE_UINTEGER:
    case DUCKDB_TYPE_UBIGINT:
    case DUCKDB_TYPE_HUGEINT:
    case DUCKDB_TYPE_UHUGEINT:
    case DUCKDB_TYPE_BIGNUM:
    case DUCKDB_TYPE_DECIMAL:
    case DUCKDB_TYPE_FLOAT:
    case DUCKDB_TYPE_DOUBLE:
    case DUCKDB_TYPE_ENUM:
    case DUCKDB_TYPE_SQLNULL:
      return EngineKind::kNumber;
    case DUCKDB_TYPE_BOOLEAN:
      return EngineKind::kBoolean;
    case DUCKDB_TYPE_DATE:
      return EngineKind::kDate;
    case DUCKDB_TYPE_TIME:
    case DUCKDB_TYPE_TIME_TZ:
    case DUCKDB_TYPE_TIME_NS:
      return EngineKind::kTime;
    case DUCKDB_TYPE_TIMESTAMP:
    case DUCKDB_TYPE_TIMESTAMP_S:
    case DUCKDB_TYPE_TIMESTAMP_MS:
    case DUCKDB_TYPE_TIMESTAMP_NS:
      return EngineKind::kDateTime;
    case DUCKDB_TYPE_TIMESTAMP_TZ:
      return EngineKind::kZonedDateTime;
    case DUCKDB_TYPE_VARCHAR:
    case DUCKDB_TYPE_UUID:
      return EngineKind::kText;
    default:
      return EngineKind::kUnusable;
  }
}

std::string typedExpression(const EngineType& type, const std::string& quotedColumn) {
  if (isWide(type)) return fmt::format("CAST({} AS VARCHAR)", quotedColumn);
  switch (type.id) {
    case DUCKDB_TYPE_DECIMAL:
    case DUCKDB_TYPE_FLOAT:
    case DUCKDB_TYPE_SQLNULL:
      return fmt::format("CAST({} AS DOUBLE)", quotedColumn);
    case DUCKDB_TYPE_UUID:
      return fmt::format("CAST({} AS VARCHAR)", quotedColumn);
    default:
      return quotedColumn;
  }
}

bool TypedColumn::numbers(const Chunk& chunk, size_t column, double* out, Flaw& flaw) const {
  if (isWide(type_)) return convertWide(chunk, column, type_.decimalScale, out, flaw);
  switch (type_.id) {
    case DUCKDB_TYPE_TINYINT:
      convertPlain<int8_t>(chunk, column, out);
      return true;
    case DUCKDB_TYPE_SMALLINT:
      convertPlain<int16_t>(chunk, column, out);
      return true;
    case DUCKDB_TYPE_INTEGER:
      convertPlain<int32_t>(chunk, column, out);
      return true;
    case DUCKDB_TYPE_BIGINT:
      return convertWhole<int64_t>(chunk, column, out, flaw);
    case DUCKDB_TYPE_UTINYINT:
      convertPlain<uint8_t>(chunk, column, out);
      return true;
    case DUCKDB_TYPE_USMALLINT:
      convertPlain<uint16_t>(chunk, column, out);
      return true;
    case DUCKDB_TYPE_UINTEGER:
      convertPlain<uint32_t>(chunk, column, out);
      return true;
    case DUCKDB_TYPE_UBIGINT:
      return convertWhole<uint64_t>(chunk, column, out, flaw);
    case DUCKDB_TYPE_BOOLEAN:
      convertPlain<uint8_t>(chunk, column, out);
      return true;
    case DUCKDB_TYPE_DATE:
      return convertDates(chunk, column, out, flaw);
    case DUCKDB_TYPE_TIME:
      return convertTicks(chunk, column, out, flaw, 1'000'000, false);
    case DUCKDB_TYPE_TIME_NS:
      return convertTicks(chunk, column, out, flaw, 1'000'000'000, false);
    case DUCKDB_TYPE_TIME_TZ:
      return convertZonedTimes(chunk, column, out, flaw);
    case DUCKDB_TYPE_TIMESTAMP_S:
      return convertTicks(chunk, column, out, flaw, 1, true);
    case DUCKDB_TYPE_TIMESTAMP_MS:
      return convertTicks(chunk, column, out, flaw, 1000, true);
    case DUCKDB_TYPE_TIMESTAMP:
    case DUCKDB_TYPE_TIMESTAMP_TZ:
      return convertTicks(chunk, column, out, flaw, 1'000'000, true);
    case DUCKDB_TYPE_TIMESTAMP_NS:
      return convertTicks(chunk, column, out, flaw, 1'000'000'000, true);
    case DUCKDB_TYPE_ENUM:
      return convertCategories(chunk, column, type_.categories.size(), out, flaw);
    default:
      convertPlain<double>(chunk, column, out);
      return true;
  }
}

bool TypedColumn::bytes(const Chunk& chunk, size_t column, uint8_t* out) const {
  switch (type_.id) {
    case DUCKDB_TYPE_TINYINT:
      return convertBytes<int8_t>(chunk, column, out);
    case DUCKDB_TYPE_SMALLINT:
      return convertBytes<int16_t>(chunk, column, out);
    case DUCKDB_TYPE_INTEGER:
      return convertBytes<int32_t>(chunk, column, out);
    case DUCKDB_TYPE_BIGINT:
      return convertBytes<int64_t>(chunk, column, out);
    case DUCKDB_TYPE_UTINYINT:
    case DUCKDB_TYPE_BOOLEAN:
      return convertBytes<uint8_t>(chunk, column, out);
    case DUCKDB_TYPE_USMALLINT:
      return convertBytes<uint16_t>(chunk, column, out);
    case DUCKDB_TYPE_UINTEGER:
      return convertBytes<uint32_t>(chunk, column, out);
    case DUCKDB_TYPE_UBIGINT:
      return convertBytes<uint64_t>(chunk, column, out);
    default:
      return false;
  }
}

void TypedColumn::texts(const Chunk& chunk, size_t column, std::string_view* out) {
  const auto* values = chunk.data<duckdb_string_t>(column);
  const uint64_t* validity = chunk.validity(column);
  for (size_t row = 0; row < chunk.size(); ++row) {
    out[row] = Chunk::isNull(validity, row) ? std::string_view() : textOf(values[row]);
  }
}

}  // namespace workbench
