#include "workbench/dataset/engine_cases.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "workbench/dataset/typed_cases.h"
#include "workbench/dataset/typed_rules.h"
#include "workbench/engine/byte_columns.h"
#include "workbench/engine/read_problem.h"
#include "workbench/engine/typed_values.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

ValueKind valueKindOf(EngineKind kind) {
  switch (kind) {
    case EngineKind::kBoolean:
      return ValueKind::kBoolean;
    case EngineKind::kDate:
      return ValueKind::kDate;
    case EngineKind::kTime:
      return ValueKind::kTime;
    case EngineKind::kDateTime:
    case EngineKind::kZonedDateTime:
      return ValueKind::kDateTime;
    case EngineKind::kText:
      return ValueKind::kString;
    case EngineKind::kNumber:
    case EngineKind::kUnusable:
      break;
  }
  return ValueKind::kNumber;
}

TypedColumnFacts factsOf(const RelationColumn& column) {
  const EngineKind kind = kindOf(column.type);
  return {column.name, valueKindOf(kind), kind == EngineKind::kText, column.fromPath,
          column.type.categories};
}

SourceVariable declared(const RelationColumn& column) {
  SourceVariable variable;
  const EngineKind kind = kindOf(column.type);
  variable.variable.name = column.name;
  variable.variable.kind = valueKindOf(kind);
  variable.untyped = kind == EngineKind::kText;
  variable.kindKnown = !column.fromPath;
  variable.categories = column.type.categories;
  if (kind == EngineKind::kUnusable) {
    variable.unusable = fmt::format(
        "{} holds lists, structures, bytes or intervals; take the part that is wanted with --query",
        column.name);
  }
  return variable;
}

/// A column of a request as the engine is asked for it.
struct Selected {
  std::string expression;
  EngineType type;
  bool inBytes = false;
  bool isMadeText = false;
};

bool isBinary(const EngineType& type) {
  return type.id == DUCKDB_TYPE_FLOAT || type.id == DUCKDB_TYPE_DOUBLE;
}

/// A column as texts. A shorter binary number is the double that it is everywhere else.
std::string textExpression(const EngineType& type, const std::string& name) {
  return fmt::format("CAST({} AS VARCHAR)",
                     type.id == DUCKDB_TYPE_FLOAT ? fmt::format("CAST({} AS DOUBLE)", name) : name);
}

std::vector<Selected> selectedColumns(const Relation& relation,
                                      const std::vector<TypedColumnFacts>& facts,
                                      const CaseRequest& request) {
  std::vector<Selected> selected;
  for (const ColumnRequest& wanted : request.columns) {
    const RelationColumn& column = relation.columns()[wanted.column];
    const std::string name = quotedName(column.name);
    const bool madeText = isMadeText(facts[wanted.column], wanted.type);
    selected.push_back(
        {madeText ? textExpression(column.type, name) : typedExpression(column.type, name),
         column.type, false, madeText});
  }
  return selected;
}

/// The same with bytes in place of longer whole numbers where all of a column's fit: the engine
/// copies what it hands over.
std::vector<Selected> inBytes(Relation& relation, std::vector<Selected> selected,
                              const std::vector<TypedColumnFacts>& facts,
                              const CaseRequest& request) {
  std::vector<size_t> columns;
  for (const ColumnRequest& wanted : request.columns) columns.push_back(wanted.column);
  const std::vector<bool> fit = fitBytes(relation, columns);
  for (size_t i = 0; i < columns.size(); ++i) {
    if (!fit[i] || isMadeText(facts[columns[i]], request.columns[i].type)) continue;
    selected[i] = {fmt::format("CAST({} AS TINYINT)", selected[i].expression), EngineType(), true,
                   false};
    selected[i].type.id = DUCKDB_TYPE_TINYINT;
  }
  return selected;
}

/// The statement that reads them.
std::string sqlOf(const Relation& relation, const std::vector<Selected>& selected) {
  std::string list;
  for (const Selected& column : selected) list += (list.empty() ? "" : ", ") + column.expression;
  // Cases count even when nothing of them is looked at.
  return fmt::format("SELECT {} FROM {}", list.empty() ? "1" : list, relation.sql());
}

/// The chunks of a query.
class EngineRows final : public TypedRows {
 public:
  EngineRows(Relation& relation, const std::vector<TypedColumnFacts>& facts,
             const CaseRequest& request)
      : relation_(relation),
        plain_(selectedColumns(relation, facts, request)),
        made_(plain_.size()) {
    try {
      open(inBytes(relation, plain_, facts, request));
    } catch (const EngineError&) {
      goOnPlainly();
    }
  }

  bool next() override {
    try {
      fetch();
      return static_cast<bool>(chunk_);
    } catch (const EngineError& error) {
      throw DataError(readProblem(error.what(), relation_.label()));
    }
  }
  size_t cases() const override { return chunk_.size(); }
  bool numbers(size_t column, double* out, ValueFlaw& flaw) override {
    TypedColumn::Flaw found;
    if (columns_[column].numbers(chunk_, column, out, found)) return true;
    flaw = {found.row, found.value, found.reason};
    return false;
  }
  bool bytes(size_t column, uint8_t* out) override {
    static_assert(kMissingByte == TypedColumn::kMissingByte);
    return columns_[column].bytes(chunk_, column, out);
  }
  void texts(size_t column, std::string_view* out) override {
    TypedColumn::texts(chunk_, column, out);
    const EngineType& type = plain_[column].type;
    const bool spelt = isBinary(type) || type.id == DUCKDB_TYPE_DECIMAL;
    if (!plain_[column].isMadeText || !spelt) return;
    std::vector<std::string>& made = made_[column];
    made.clear();
    for (size_t row = 0; row < cases(); ++row) {
      made.push_back(numberAsText(out[row], isBinary(type)));
    }
    std::copy(made.begin(), made.end(), out);
  }

 private:
  void open(const std::vector<Selected>& selected) {
    columns_.clear();
    for (const Selected& column : selected) columns_.emplace_back(column.type);
    isPlain_ = std::none_of(selected.begin(), selected.end(),
                            [](const Selected& column) { return column.inBytes; });
    std::string sql = sqlOf(relation_, selected);
    if (delivered_ > 0) sql += fmt::format(" OFFSET {}", delivered_);
    query_.emplace(relation_.database(), sql);
  }

  void fetch() {
    try {
      chunk_ = query_->fetch();
    } catch (const EngineError&) {
      if (isPlain_) throw;
      goOnPlainly();
      chunk_ = query_->fetch();
    }
    delivered_ += chunk_.size();
  }

  /// Statistics may be wrong, and then a value does not fit its byte. Whatever else went wrong will
  /// go wrong again.
  void goOnPlainly() { open(plain_); }

  Relation& relation_;
  std::vector<Selected> plain_;
  std::vector<std::vector<std::string>> made_;  // by column: texts of numbers, of the block
  bool isPlain_ = false;
  std::optional<Query> query_;
  std::vector<TypedColumn> columns_;
  Chunk chunk_{nullptr};
  size_t delivered_ = 0;
};

class EngineCases final : public TypedCases {
 public:
  EngineCases(std::unique_ptr<Relation> relation, const FieldRules& rules)
      : TypedCases(rules), relation_(std::move(relation)) {
    for (const RelationColumn& column : relation_->columns()) {
      add(factsOf(column), declared(column));
    }
  }

  const std::string& label() const override { return relation_->label(); }
  std::vector<std::string> statements(const CaseRequest& request) const override {
    try {
      return {sqlOf(*relation_, inBytes(*relation_, selectedColumns(*relation_, columns(), request),
                                        columns(), request))};
    } catch (const EngineError& error) {
      throw DataError(readProblem(error.what(), label()));
    }
  }
  void refuseChanged() const override { relation_->refuseChanged(); }

 private:
  std::unique_ptr<TypedRows> openRows(const CaseRequest& request) override {
    try {
      return std::make_unique<EngineRows>(*relation_, columns(), request);
    } catch (const EngineError& error) {
      throw DataError(readProblem(error.what(), label()));
    }
  }
  std::unique_ptr<Relation> relation_;
};

}  // namespace

std::unique_ptr<CaseSource> openEngineCases(std::unique_ptr<Relation> relation,
                                            const FieldRules& rules) {
  return std::make_unique<EngineCases>(std::move(relation), rules);
}

}  // namespace workbench
