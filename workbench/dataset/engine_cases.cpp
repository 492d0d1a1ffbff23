#include "workbench/dataset/engine_cases.h"

#include <fmt/format.h>

#include <utility>

#include "workbench/dataset/typed_cases.h"
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
  variable.variable.width = variable.variable.isString() ? 1 : 0;
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

/// The chunks of a query.
class EngineRows final : public TypedRows {
 public:
  EngineRows(Relation& relation, const std::vector<TypedColumnFacts>& facts,
             const CaseRequest& request)
      : label_(relation.label()), query_(relation.database(), sqlOf(relation, facts, request)) {
    for (const ColumnRequest& wanted : request.columns) {
      columns_.emplace_back(relation.columns()[wanted.column].type);
    }
  }

  /// The statement that reads a request.
  static std::string sqlOf(const Relation& relation, const std::vector<TypedColumnFacts>& facts,
                           const CaseRequest& request) {
    std::string list;
    for (const ColumnRequest& wanted : request.columns) {
      const RelationColumn& column = relation.columns()[wanted.column];
      const std::string name = quotedName(column.name);
      list += list.empty() ? "" : ", ";
      list += isMadeText(facts[wanted.column], wanted.type)
                  ? fmt::format("CAST({} AS VARCHAR)", name)
                  : typedExpression(column.type, name);
    }
    // Cases count even when nothing of them is looked at.
    return fmt::format("SELECT {} FROM {}", list.empty() ? "1" : list, relation.sql());
  }

  bool next() override {
    try {
      chunk_ = query_.fetch();
      return static_cast<bool>(chunk_);
    } catch (const EngineError& error) {
      throw DataError(readProblem(error.what(), label_));
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
  }

 private:
  const std::string& label_;
  Query query_;
  std::vector<TypedColumn> columns_;
  Chunk chunk_{nullptr};
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
    return {EngineRows::sqlOf(*relation_, columns(), request)};
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
