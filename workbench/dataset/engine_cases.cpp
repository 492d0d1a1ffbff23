#include "workbench/dataset/engine_cases.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "workbench/dataset/case_collector.h"
#include "workbench/dataset/engine_blocks.h"
#include "workbench/engine/read_problem.h"
#include "workbench/engine/typed_values.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

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

class EngineCases final : public CaseSource {
 public:
  EngineCases(std::unique_ptr<Relation> relation, const FieldRules& rules)
      : relation_(std::move(relation)), rules_(rules) {
    if (!rules_.missingGiven) rules_.missingTexts.clear();
    for (const RelationColumn& column : relation_->columns()) {
      variables_.push_back(declared(column));
    }
  }

  const std::string& label() const override { return relation_->label(); }
  const std::vector<SourceVariable>& variables() const override { return variables_; }
  CodedCases read(const CaseRequest& request) override;
  void forEachBlock(const CaseRequest& request,
                    const std::function<void(const CaseBlock&)>& take) override;
  void requestInterrupt() override { relation_->engine().requestInterrupt(); }
  bool interruptRequested() const override { return relation_->engine().interruptRequested(); }
  void setProgress(ProgressCallback callback) override {
    relation_->engine().setProgress(std::move(callback));
  }
  void refuseChanged() const override { relation_->refuseChanged(); }

 private:
  std::unique_ptr<Relation> relation_;
  FieldRules rules_;
  std::vector<SourceVariable> variables_;
  std::vector<SpelledColumn> understood_;  // of the last read
};

CodedCases EngineCases::read(const CaseRequest& request) {
  try {
    EngineBlocks blocks(*relation_, request, rules_);
    CaseCollector collector(blocks.kinds(), request.collapse, request.memoryLimit);
    bool keeping = true;
    while (blocks.next()) {
      size_t texts = 0;
      for (size_t i = 0; i < request.columns.size(); ++i) {
        if (!keeping) {
          blocks.note(i);
        } else if (blocks.isSpelled(i)) {
          collector.addCodes(i, blocks.codes(i), blocks.cases());
          texts += blocks.spelled(i).memory();
        } else if (blocks.isText(i)) {
          collector.addTexts(i, blocks.texts(i), blocks.cases());
        } else if (const uint8_t* bytes = blocks.bytes(i); bytes != nullptr) {
          collector.addBytes(i, bytes, TypedColumn::kMissingByte, blocks.cases());
        } else {
          collector.addNumbers(i, blocks.numbers(i), blocks.cases());
        }
      }
      if (!collector.endBlock(blocks.cases(), texts) && keeping) {
        keeping = false;
        blocks.forgetTexts();
        if (!blocks.anySpelled()) break;  // all kinds are known
      }
    }
    CodedCases cases = collector.finish();
    for (size_t i = 0; i < request.columns.size(); ++i) {
      SourceVariable& variable = variables_[request.columns[i].column];
      if (blocks.isSpelled(i)) blocks.finish(i, cases.complete, cases.columns[i]);
      variable.variable.kind = cases.columns[i].kind;
      variable.kindKnown = true;
    }
    understood_ = blocks.takeSpelled();
    return cases;
  } catch (const EngineError& error) {
    throw DataError(readProblem(error.what(), label()));
  }
}

void EngineCases::forEachBlock(const CaseRequest& request,
                               const std::function<void(const CaseBlock&)>& take) {
  try {
    EngineBlocks blocks(*relation_, request, rules_);
    blocks.understandAs(understood_);
    CaseBlock block;
    block.columns.resize(request.columns.size());
    int64_t before = 0;
    block.placeOf = [&](size_t row) {
      return fmt::format("{}, case {}", label(), before + static_cast<int64_t>(row) + 1);
    };
    while (blocks.next()) {
      block.cases = blocks.cases();
      for (size_t i = 0; i < request.columns.size(); ++i) {
        blocks.values(i, block.columns[i].numbers, block.columns[i].texts);
      }
      take(block);
      before += static_cast<int64_t>(block.cases);
    }
  } catch (const EngineError& error) {
    throw DataError(readProblem(error.what(), label()));
  }
}

}  // namespace

std::unique_ptr<CaseSource> openEngineCases(std::unique_ptr<Relation> relation,
                                            const FieldRules& rules) {
  return std::make_unique<EngineCases>(std::move(relation), rules);
}

}  // namespace workbench
