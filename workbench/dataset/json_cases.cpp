#include "workbench/dataset/json_cases.h"

#include <fmt/format.h>

#include <deque>
#include <utility>

#include "workbench/dataset/case_collector.h"
#include "workbench/dataset/file_cases.h"
#include "workbench/dataset/json_members.h"
#include "workbench/dataset/json_names.h"
#include "workbench/dataset/spelled_column.h"
#include "workbench/json/json_records.h"
#include "workbench/text/text_fold.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr size_t kBlockCases = 1024;

/// Codes the records.
class CodingReader final : public JsonMembers {
 public:
  CodingReader(const std::vector<SourceVariable>& variables, const CaseRequest& request,
               const DataFile& file, std::vector<SpelledColumn>& columns, CaseCollector& collector,
               std::function<void(int64_t)> report)
      : JsonMembers(variables, request, file),
        columns_(columns),
        collector_(collector),
        report_(std::move(report)),
        codes_(columns.size()) {}

  /// To be called after the last record.
  void flush() {
    size_t texts = 0;
    for (size_t i = 0; i < codes_.size(); ++i) {
      if (keeping_) collector_.addCodes(i, codes_[i].data(), pending_);
      codes_[i].clear();
      texts += columns_[i].memory();
    }
    const bool fits = collector_.endBlock(pending_, texts);
    if (!fits && keeping_) {
      for (SpelledColumn& column : columns_) column.forget();
    }
    keeping_ = fits;
    pending_ = 0;
    report_(cases_);
  }

 private:
  void takeRecord(const std::vector<JsonMember>& members) override {
    for (size_t i = 0; i < members.size(); ++i) {
      const JsonMember& each = members[i];
      if (keeping_) {
        codes_[i].push_back(columns_[i].code(each.spelling, each.text, each.line));
      } else {
        columns_[i].note(each.spelling, each.text);
      }
    }
    ++cases_;
    if (++pending_ == kBlockCases) flush();
  }

  std::vector<SpelledColumn>& columns_;
  CaseCollector& collector_;
  std::function<void(int64_t)> report_;
  std::vector<std::vector<uint32_t>> codes_;
  size_t pending_ = 0;
  int64_t cases_ = 0;
  bool keeping_ = true;
};

/// Hands the records over in blocks.
class BlockingReader final : public JsonMembers {
 public:
  BlockingReader(const std::vector<SourceVariable>& variables, const CaseRequest& request,
                 const DataFile& from, const std::vector<SpelledColumn>& columns,
                 std::vector<KindTally>& tallies, size_t file,
                 std::function<void(const CaseBlock&)> take)
      : JsonMembers(variables, request, from),
        columns_(columns),
        take_(std::move(take)),
        tallies_(tallies),
        file_(file) {
    block_.columns.resize(columns.size());
    block_.placeOf = [this](size_t row) {
      return fmt::format("{}, line {}", label(), lines_[row]);
    };
  }

  void flush() {
    take_(block_);
    block_.cases = 0;
    texts_.clear();
    lines_.clear();
    for (CaseBlock::Column& column : block_.columns) {
      column.numbers.clear();
      column.texts.clear();
    }
  }

 private:
  void takeRecord(const std::vector<JsonMember>& members) override {
    for (size_t i = 0; i < members.size(); ++i) {
      const JsonMember& each = members[i];
      if (columns_[i].valueKind() == ValueKind::kString) {
        tallies_[i].add(columns_[i].kindOf(each.spelling, each.text), 1, {file_, each.line},
                        each.text);
        texts_.emplace_back(columns_[i].textOf(each.spelling, each.text, each.line));
        block_.columns[i].texts.emplace_back(texts_.back());
      } else {
        block_.columns[i].numbers.push_back(
            columns_[i].numberOf(each.spelling, each.text, each.line));
      }
    }
    lines_.push_back(line());
    if (++block_.cases == kBlockCases) flush();
  }

  const std::vector<SpelledColumn>& columns_;
  std::function<void(const CaseBlock&)> take_;
  std::vector<KindTally>& tallies_;  // by column
  size_t file_;
  std::vector<uint64_t> lines_;    // of the block's records
  std::deque<std::string> texts_;  // of the block
  CaseBlock block_;
};

class JsonCases final : public FileCases {
 public:
  JsonCases(const DataFiles& files, FieldRules rules, const std::atomic<bool>* interrupted,
            ProgressCallback progress);

  CodedCases read(const CaseRequest& request) override;
  void forEachBlock(const CaseRequest& request,
                    const std::function<void(const CaseBlock&)>& take) override;
  void refuseChanged() const override {
    for (const auto& input : inputs_) input->refuseChanged();
  }

 private:
  void walk(size_t file, JsonVisitor& visitor);
  std::vector<SpelledColumn> columnsFor(const CaseRequest& request) const;
  void beginPart(std::vector<SpelledColumn>& columns, size_t file) const;
  void report(Phase phase, int64_t cases) const;

  FieldRules rules_;
  const std::atomic<bool>* interrupted_;
  ProgressCallback progress_;
  std::vector<std::unique_ptr<ByteInput>> inputs_;
  std::vector<SpelledColumn> understood_;  // of the last read
};

JsonCases::JsonCases(const DataFiles& files, FieldRules rules, const std::atomic<bool>* interrupted,
                     ProgressCallback progress)
    : FileCases(files),
      rules_(std::move(rules)),
      interrupted_(interrupted),
      progress_(std::move(progress)) {
  JsonNames names([this](int64_t records) { report(Phase::kNames, records); });
  for (size_t i = 0; i < files_.files.size(); ++i) {
    inputs_.push_back(openInput(files_.files[i].path, files_.files[i].label, interrupted_));
    names.beginFile(files_.files[i].label);
    walk(i, names);
    names.endFile();
  }
  variables_ = names.take();  // of the records, before those of the paths
  for (const std::string& name : files_.pathNames) {
    for (const SourceVariable& other : variables_) {
      if (foldCase(other.variable.name) != foldCase(name)) continue;
      throw DataError(
          fmt::format("{}: the records have the key {}, and so has the path; rename one.",
                      files_.label, other.variable.name));
    }
    variables_.push_back(untypedVariable(name));
  }
}

void JsonCases::walk(size_t file, JsonVisitor& visitor) {
  const DataFile& from = files_.files[file];
  const auto text = openText(*inputs_[file], from.path, from.label, "");
  readJsonRecords(*text, from.label, visitor);
  inputs_[file]->release();
}

std::vector<SpelledColumn> JsonCases::columnsFor(const CaseRequest& request) const {
  std::vector<SpelledColumn> columns;
  for (const ColumnRequest& wanted : request.columns) {
    columns.emplace_back(files_.label, variables_[wanted.column].variable.name, rules_,
                         wanted.type);
  }
  return columns;
}

void JsonCases::beginPart(std::vector<SpelledColumn>& columns, size_t file) const {
  for (SpelledColumn& column : columns) column.beginPart(files_.files[file].label + ", line");
}

void JsonCases::report(Phase phase, int64_t cases) const {
  throwIfSet(interrupted_);
  if (progress_) progress_(phase, -1.0, cases);
}

CodedCases JsonCases::read(const CaseRequest& request) {
  std::vector<SpelledColumn> columns = columnsFor(request);
  const std::vector<ValueKind> kinds(columns.size(), ValueKind::kString);
  CaseCollector collector(kinds, request.collapse, request.memoryLimit);
  for (size_t i = 0; i < files_.files.size(); ++i) {
    beginPart(columns, i);
    CodingReader reader(variables_, request, files_.files[i], columns, collector,
                        [this](int64_t cases) { report(Phase::kReading, cases); });
    walk(i, reader);
    reader.flush();
  }
  CodedCases cases = collector.finish();
  for (size_t i = 0; i < columns.size(); ++i) {
    SourceVariable& variable = variables_[request.columns[i].column];
    variable.odd.reset();
    if (cases.complete) {
      columns[i].refuseContradictions();
      variable.odd = columns[i].odd(cases, cases.columns[i].codes);
      columns[i].finish(cases.columns[i]);
    }
    cases.columns[i].kind = columns[i].valueKind();
    variable.variable.kind = cases.columns[i].kind;
    variable.zoned = columns[i].kind() == FieldKind::kZonedDateTime;
    variable.kindKnown = true;
  }
  understood_ = std::move(columns);
  return cases;
}

void JsonCases::forEachBlock(const CaseRequest& request,
                             const std::function<void(const CaseBlock&)>& take) {
  std::vector<KindTally> tallies(request.columns.size());
  int64_t read = 0;
  for (size_t i = 0; i < files_.files.size(); ++i) {
    beginPart(understood_, i);
    BlockingReader reader(variables_, request, files_.files[i], understood_, tallies, i,
                          [&](const CaseBlock& block) {
                            take(block);
                            read += static_cast<int64_t>(block.cases);
                            report(Phase::kReading, read);
                          });
    walk(i, reader);
    reader.flush();
  }
  for (size_t k = 0; k < tallies.size(); ++k) {
    if (auto odd = oddText(tallies[k])) variables_[request.columns[k].column].odd = std::move(odd);
  }
}

}  // namespace

std::unique_ptr<CaseSource> openJsonCases(const DataFiles& files, const FieldRules& rules,
                                          const std::atomic<bool>* interrupted,
                                          ProgressCallback progress) {
  return std::make_unique<JsonCases>(files, rules, interrupted, std::move(progress));
}

}  // namespace workbench
