#include "workbench/dataset/engine_cases.h"

#include <fmt/format.h>

#include <cmath>
#include <functional>
#include <optional>
#include <utility>

#include "workbench/dataset/case_collector.h"
#include "workbench/dataset/value_text.h"
#include "workbench/engine/read_problem.h"
#include "workbench/engine/typed_values.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr size_t kWidestString = 32'767;

ValueKind kindOf(ColumnForm form) {
  switch (form) {
    case ColumnForm::kBoolean:
      return ValueKind::kBoolean;
    case ColumnForm::kDate:
      return ValueKind::kDate;
    case ColumnForm::kTime:
      return ValueKind::kTime;
    case ColumnForm::kDateTime:
      return ValueKind::kDateTime;
    case ColumnForm::kNumber:
      return ValueKind::kNumber;
    default:
      return ValueKind::kString;
  }
}

/// The engine gives texts as they are, typed values as they are, and numbers that it has made of
/// texts itself.
bool isNative(const SourceColumn& column) {
  return !column.isText && column.reading.form != ColumnForm::kString;
}

std::string expressionOf(const Source& source, size_t index) {
  const SourceColumn& column = source.columns()[index];
  if (isNative(column)) return typedExpression(column.type, quotedName(column.name));
  return source.value(index);
}

/// Turns the chunks of a query into values of cases.
class BlockReader {
 public:
  BlockReader(Source& source, const CaseRequest& request);

  /// False after the last block.
  bool next();
  size_t cases() const { return chunk_.size(); }
  /// Of the block at hand, one or the other by the column's kind.
  const double* numbers(size_t column);
  const std::string_view* texts(size_t column);

 private:
  struct Column {
    std::string name;
    bool native = false;
    bool wholeOnly = false;
    TypedColumn type;
    std::vector<double> numbers;
    std::vector<std::string_view> texts;
  };
  static std::string sqlOf(const Source& source, const CaseRequest& request);
  [[noreturn]] void refuse(const Column& column, size_t row, const std::string& what) const;
  void readEngineNumbers(size_t column, double* out) const;

  const std::string& label_;
  std::vector<Column> columns_;
  Query query_;
  Chunk chunk_{nullptr};
  int64_t casesBefore_ = 0;
};

BlockReader::BlockReader(Source& source, const CaseRequest& request)
    : label_(source.label()), query_(source.database(), sqlOf(source, request)) {
  for (const ColumnRequest& wanted : request.columns) {
    const SourceColumn& column = source.columns()[wanted.column];
    columns_.push_back({column.name,
                        isNative(column),
                        wanted.type.name == ColumnType::Name::kInteger,
                        TypedColumn(column.type),
                        {},
                        {}});
  }
}

std::string BlockReader::sqlOf(const Source& source, const CaseRequest& request) {
  std::string list;
  std::vector<size_t> columns;
  for (const ColumnRequest& wanted : request.columns) {
    columns.push_back(wanted.column);
    list += fmt::format("{}{}", list.empty() ? "" : ", ", expressionOf(source, wanted.column));
  }
  // Cases count even when nothing of them is looked at.
  return fmt::format("SELECT {} FROM {}", list.empty() ? "1" : list, source.relation(columns));
}

bool BlockReader::next() {
  casesBefore_ += static_cast<int64_t>(chunk_.size());
  chunk_ = query_.fetch();
  return static_cast<bool>(chunk_);
}

void BlockReader::refuse(const Column& column, size_t row, const std::string& what) const {
  throw DataError(fmt::format("{}, case {}: {}: {}", label_,
                              casesBefore_ + static_cast<int64_t>(row) + 1, column.name, what));
}

void BlockReader::readEngineNumbers(size_t column, double* out) const {
  const auto* values = chunk_.data<double>(column);
  const uint64_t* validity = chunk_.validity(column);
  for (size_t row = 0; row < chunk_.size(); ++row) {
    out[row] = Chunk::isNull(validity, row) ? kSystemMissing : values[row];
  }
}

const double* BlockReader::numbers(size_t column) {
  Column& into = columns_[column];
  into.numbers.resize(chunk_.size());
  TypedColumn::Flaw flaw;
  if (!into.native) {
    readEngineNumbers(column, into.numbers.data());
  } else if (!into.type.numbers(chunk_, column, into.numbers.data(), flaw)) {
    refuse(into, flaw.row, fmt::format("{} {}.", flaw.value, flaw.reason));
  }
  for (double& value : into.numbers) value = normalNumber(value);
  for (size_t row = 0; into.wholeOnly && row < into.numbers.size(); ++row) {
    const double value = into.numbers[row];
    if (!std::isfinite(value) || value == std::trunc(value)) continue;
    refuse(into, row,
           fmt::format("{} is not a whole number, though the dictionary gives the type integer.",
                       shortestNumber(value)));
  }
  return into.numbers.data();
}

const std::string_view* BlockReader::texts(size_t column) {
  Column& into = columns_[column];
  into.texts.resize(chunk_.size());
  TypedColumn::texts(chunk_, column, into.texts.data());
  for (size_t row = 0; row < into.texts.size(); ++row) {
    std::string_view& text = into.texts[row];
    text = trimmed(text);
    if (text.size() > kWidestString) {
      refuse(into, row,
             fmt::format("the text takes {} bytes; a string holds up to {}.", text.size(),
                         kWidestString));
    }
    if (text.find('\0') != std::string_view::npos) {
      refuse(into, row, "the text holds a zero byte; remove it.");
    }
  }
  return into.texts.data();
}

}  // namespace

EngineCases::EngineCases(std::unique_ptr<Source> source) : source_(std::move(source)) {
  declareVariables();
}

void EngineCases::declareVariables() {
  variables_.clear();
  for (const SourceColumn& column : source_->columns()) {
    SourceVariable& declared = variables_.emplace_back();
    declared.variable.name = column.name;
    declared.variable.kind = kindOf(column.reading.form);
    declared.variable.width = declared.variable.isString() ? 1 : 0;
    declared.kindKnown = !column.guessed;
    declared.untyped = column.isText;
    declared.categories = column.type.categories;
    if (column.reading.form == ColumnForm::kUnusable) {
      declared.unusable = fmt::format(
          "{} holds lists, structures or bytes; take the part that is wanted with --query",
          column.name);
    }
  }
}

std::vector<ValueKind> EngineCases::kindsOf(const CaseRequest& request) const {
  std::vector<ValueKind> kinds;
  for (const ColumnRequest& wanted : request.columns) {
    kinds.push_back(variables_[wanted.column].variable.kind);
  }
  return kinds;
}

/// What to add to a complaint about a value of a column whose type a dictionary gives.
std::string EngineCases::typeGivenBy(const std::string& name) const {
  for (const SourceColumn& column : source_->columns()) {
    if (column.name == name && column.reading.forced) return "\nThe dictionary gives the type.";
  }
  return {};
}

/// Runs a read, again when a value far down shows that a column was taken for what it is not.
template <typename Run>
auto EngineCases::translated(const CaseRequest& request, Run&& run) {
  for (;;) {
    ReadProblem problem;
    try {
      return run();
    } catch (const EngineError& error) {
      problem = readProblem(error.what(), label());
    }
    std::vector<size_t> columns;
    for (const ColumnRequest& wanted : request.columns) columns.push_back(wanted.column);
    bool settled = false;
    try {
      settled = problem.conversion && source_->settle(columns);
    } catch (const EngineError&) {
      settled = false;  // the first complaint is the one to show
    }
    if (!settled) throw DataError(problem.text + typeGivenBy(problem.column));
    declareVariables();
  }
}

CodedCases EngineCases::read(const CaseRequest& request) {
  CodedCases cases = translated(request, [&] {
    BlockReader reader(*source_, request);
    const std::vector<ValueKind> kinds = kindsOf(request);
    CaseCollector collector(kinds, request.collapse, request.memoryLimit, source_->estimatedRows());
    while (reader.next()) {
      for (size_t i = 0; i < kinds.size(); ++i) {
        if (kinds[i] == ValueKind::kString) {
          collector.addTexts(i, reader.texts(i), reader.cases());
        } else {
          collector.addNumbers(i, reader.numbers(i), reader.cases());
        }
      }
      if (!collector.endBlock(reader.cases())) break;
    }
    return collector.finish();
  });
  for (const ColumnRequest& wanted : request.columns) variables_[wanted.column].kindKnown = true;
  return cases;
}

void EngineCases::forEachBlock(const CaseRequest& request,
                               const std::function<void(const CaseBlock&)>& take) {
  const std::vector<ValueKind> kinds = kindsOf(request);
  try {
    BlockReader reader(*source_, request);
    CaseBlock block;
    block.columns.resize(kinds.size());
    while (reader.next()) {
      block.cases = reader.cases();
      for (size_t i = 0; i < kinds.size(); ++i) {
        if (kinds[i] == ValueKind::kString) {
          const std::string_view* texts = reader.texts(i);
          block.columns[i].texts.assign(texts, texts + block.cases);
        } else {
          const double* numbers = reader.numbers(i);
          block.columns[i].numbers.assign(numbers, numbers + block.cases);
        }
      }
      take(block);
    }
  } catch (const EngineError& error) {
    throw DataError(readProblem(error.what(), label()).text);
  }
}

}  // namespace workbench
