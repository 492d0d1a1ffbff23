#include "workbench/odbc/server_column.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "workbench/values/field.h"
#include "workbench/values/instants.h"

namespace workbench {
namespace {

constexpr size_t kExactDigits =
    15;  // every decimal with this many digits survives the way to a double
constexpr std::string_view kInexact =
    "cannot be held exactly; cast the column in a query (--query), for example to a text, or make "
    "it text in the dictionary";
constexpr std::string_view kNoNumber = "is no number; cast the column in a query (--query)";
constexpr std::string_view kNoBoolean = "is neither true nor false";
constexpr std::string_view kTooFine =
    "cannot be held to the microsecond; round it, or cast it to a text, in a query (--query)";
constexpr std::string_view kNoMoment =
    "is no moment between 0001-01-01 and 9999-12-31 that a day of 24 hours has; leave it out, or "
    "cast it, in a query (--query)";

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

/// The nearest double of a text in plain decimal digits; a flaw when it, with as many digits after
/// the point as the text has, is another number.
ServerNumber exactNumber(std::string_view text, double value) {
  const std::string_view digits = text.substr(text.starts_with('-') || text.starts_with('+'));
  const size_t point = std::min(digits.find('.'), digits.size());
  const size_t scale = point == digits.size() ? 0 : digits.size() - point - 1;
  if (digits.size() - (scale > 0 ? 1 : 0) <= kExactDigits) return {value};
  std::string back = fmt::format("{:.{}f}", std::abs(value), scale);
  std::string plain(digits.substr(std::min(digits.find_first_not_of('0'), digits.size())));
  if (plain.empty() || plain.front() == '.') plain.insert(plain.begin(), '0');
  if (back == plain) return {value};
  return {value, kInexact};
}

/// Some servers fill whole numbers up with zeros.
std::string_view withoutFilling(std::string_view text) {
  while (text.size() > 1 && text[0] == '0' && text[1] >= '0' && text[1] <= '9') {
    text.remove_prefix(1);
  }
  return text;
}

ServerNumber readNumber(const ServerColumn& column, std::string_view told) {
  const std::string_view text = withoutFilling(told);
  const FieldValue read = interpretNumber(text, '.');
  if (read.kind != FieldKind::kNumber) return {kMissing, kNoNumber};
  if (read.flaw == NumberFlaw::kOverflow) return {kMissing, kInexact};
  const bool plain = text.find_first_not_of("+-.0123456789") == std::string_view::npos;
  if (column.floating || !plain) return {read.number};
  return exactNumber(text, read.number);
}

ServerNumber readBoolean(std::string_view text) {
  if (text == "1" || text == "true" || text == "t") return {1.0};
  if (text == "0" || text == "false" || text == "f") return {0.0};
  return {kMissing, kNoBoolean};
}

bool isOfKind(ServerKind kind, Instant::Kind found) {
  switch (kind) {
    case ServerKind::kDate:
      return found == Instant::Kind::kDate;
    case ServerKind::kTime:
      return found == Instant::Kind::kTime;
    case ServerKind::kDateTime:
      return found == Instant::Kind::kDateTime;
    default:
      return found == Instant::Kind::kDateTime || found == Instant::Kind::kZonedDateTime;
  }
}

ServerNumber readMoment(ServerKind kind, std::string_view text) {
  const std::optional<Instant> moment = parseInstant(text);
  if (!moment || !isOfKind(kind, moment->kind)) return {kMissing, kNoMoment};
  return {secondsOf(moment->microseconds),
          secondsTell(moment->microseconds) ? std::string_view() : kTooFine};
}

ServerNumber readCategory(const ServerColumn& column, std::string_view text) {
  const auto found = std::find(column.categories.begin(), column.categories.end(), text);
  if (found == column.categories.end()) {
    return {kMissing, "is not among the values of the enumeration; leave it out in a query"};
  }
  return {static_cast<double>(found - column.categories.begin()) + 1.0};
}

void takeExactNumber(const ResultColumn& told, ServerColumn& column) {
  column.kind = ServerKind::kNumber;
  column.digits = static_cast<int>(std::min<size_t>(told.size, 10'000));
  column.scale = told.scale;
}

}  // namespace

ServerColumn columnByOdbcType(const ResultColumn& told) {
  ServerColumn column;
  column.name = told.name;
  column.typeName = told.typeName;
  switch (told.type) {
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
    case SQL_NUMERIC:
    case SQL_DECIMAL:
      takeExactNumber(told, column);
      break;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      column.kind = ServerKind::kNumber;
      column.floating = true;
      column.inMemory = true;
      break;
    case SQL_BIT:
      column.kind = ServerKind::kBoolean;
      break;
    case SQL_TYPE_DATE:
      column.kind = ServerKind::kDate;
      break;
    case SQL_TYPE_TIME:
      column.kind = ServerKind::kTime;
      break;
    case SQL_TYPE_TIMESTAMP:
      column.kind = ServerKind::kDateTime;
      break;
    case SQL_CHAR:
    case SQL_VARCHAR:
    case SQL_LONGVARCHAR:
    case SQL_WCHAR:
    case SQL_WVARCHAR:
    case SQL_WLONGVARCHAR:
    case SQL_GUID:
      column.kind = ServerKind::kText;
      break;
    default:
      break;
  }
  return column;
}

ServerNumber serverNumber(const ServerColumn& column, std::string_view text) {
  switch (column.kind) {
    case ServerKind::kBoolean:
      return readBoolean(text);
    case ServerKind::kDate:
    case ServerKind::kTime:
    case ServerKind::kDateTime:
    case ServerKind::kZonedDateTime:
      return readMoment(column.kind, text);
    case ServerKind::kEnumeration:
      return readCategory(column, text);
    default:
      return readNumber(column, text);
  }
}

}  // namespace workbench
