#include "workbench/dataset/typed_cases.h"

#include <fmt/format.h>

#include <utility>

#include "workbench/dataset/case_collector.h"

namespace workbench {

TypedCases::TypedCases(FieldRules rules) : rules_(std::move(rules)) {
  if (!rules_.missingGiven) rules_.missingTexts.clear();
}

void TypedCases::add(TypedColumnFacts facts, SourceVariable variable) {
  columns_.push_back(std::move(facts));
  variables_.push_back(std::move(variable));
}

TypedBlocks TypedCases::openBlocks(const CaseRequest& request) {
  return {label(), columns_, request, rules_, openRows(request)};
}

CodedCases TypedCases::read(const CaseRequest& request) {
  TypedBlocks blocks = openBlocks(request);
  CaseCollector collector(blocks.kinds(), request.collapse, request.memoryLimit);
  bool keeping = true;
  bool allSeen = true;
  while (allSeen && blocks.next()) {
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
        collector.addBytes(i, bytes, TypedRows::kMissingByte, blocks.cases());
      } else {
        collector.addNumbers(i, blocks.numbers(i), blocks.cases());
      }
    }
    if (!collector.endBlock(blocks.cases(), texts) && keeping) {
      keeping = false;
      blocks.forgetTexts();
      allSeen = blocks.anySpelled();  // else all kinds are known
    }
  }
  CodedCases cases = collector.finish();
  if (!allSeen) cases.cases = -1;
  for (size_t i = 0; i < request.columns.size(); ++i) {
    SourceVariable& variable = variables_[request.columns[i].column];
    if (blocks.isSpelled(i)) blocks.finish(i, cases.complete, cases.columns[i]);
    variable.variable.kind = cases.columns[i].kind;
    variable.kindKnown = true;
  }
  understood_ = blocks.takeSpelled();
  return cases;
}

void TypedCases::forEachBlock(const CaseRequest& request,
                              const std::function<void(const CaseBlock&)>& take) {
  TypedBlocks blocks = openBlocks(request);
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
}

}  // namespace workbench
