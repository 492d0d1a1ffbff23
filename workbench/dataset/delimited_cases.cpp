#include "workbench/dataset/delimited_cases.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "workbench/dataset/file_cases.h"
#include "workbench/dataset/spelled_column.h"
#include "workbench/dataset/value_coder.h"
#include "workbench/delimited/delimited_data.h"
#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

/// Codes of numbers that have become equal (minus zero is zero) are made one.
void normalise(CaseColumn& column) {
  for (double& value : column.numbers) value = normalNumber(value);
  if (!column.coded) return;
  NumberCoder coder;
  std::vector<double> values;
  std::vector<uint32_t> codes;
  for (const double value : column.numbers) codes.push_back(coder.code(value, values));
  if (values.size() == column.numbers.size()) return;
  column.numbers = std::move(values);
  column.codes.recode(codes);
}

class DelimitedCaseSource final : public FileCases {
 public:
  DelimitedCaseSource(const DataFiles& files, const TextLayout& layout, const FieldRules& rules,
                      const std::atomic<bool>* interrupted, ProgressCallback progress);

  CodedCases read(const CaseRequest& request) override;
  void forEachBlock(const CaseRequest& request,
                    const std::function<void(const CaseBlock&)>& take) override;

 private:
  DelimitedOptions optionsFor(const TextLayout& layout, const FieldRules& rules);
  DelimitedRequest requestFor(const CaseRequest& request) const;
  CaseColumn converted(CodedColumn read, const ColumnRequest& wanted) const;
  /// `place` is called for a refusal alone.
  template <class Place>
  double categoryOf(std::string_view text, const ColumnRequest& wanted, Place place) const;
  std::string placeOf(const CodedColumn& column, size_t code) const;
  std::string placeText(const DelimitedPlace& place) const {
    return lineText(place.part, place.line);
  }
  std::optional<OddText> oddTextOf(const CodedColumn& column, const DelimitedCases& cases) const;
  [[noreturn]] void refuse(const std::string& place, const ColumnRequest& wanted,
                           std::string_view text, const std::string& why) const;

  const std::atomic<bool>* interrupted_;
  ProgressCallback progress_;
  std::unique_ptr<DelimitedData> data_;
  std::vector<size_t> columns_;  // by variable: its column in the data
  DelimitedCases incomplete_;    // of the last read, when the cases took too much memory
};

DelimitedCaseSource::DelimitedCaseSource(const DataFiles& files, const TextLayout& layout,
                                         const FieldRules& rules,
                                         const std::atomic<bool>* interrupted,
                                         ProgressCallback progress)
    : FileCases(files),
      interrupted_(interrupted),
      progress_(std::move(progress)),
      data_(std::make_unique<DelimitedData>(optionsFor(layout, rules))) {
  for (size_t i = 0; i < data_->names().size(); ++i) {
    if (data_->names()[i].empty()) continue;  // nobody could name it
    variables_.push_back(untypedVariable(data_->names()[i]));
    columns_.push_back(i);
  }
}

DelimitedOptions DelimitedCaseSource::optionsFor(const TextLayout& layout,
                                                 const FieldRules& rules) {
  DelimitedOptions options;
  for (const DataFile& file : files_.files) {
    options.parts.push_back({file.path, file.label, file.pathValues});
  }
  options.constants = files_.pathNames;
  options.delimiter = layout.delimiter;
  if (options.delimiter == 0 && files_.format == FileFormat::kTabbed) options.delimiter = '\t';
  options.rules = rules;
  options.encoding = layout.encoding;
  options.interrupted = interrupted_;
  return options;
}

DelimitedRequest DelimitedCaseSource::requestFor(const CaseRequest& request) const {
  DelimitedRequest made;
  for (const ColumnRequest& wanted : request.columns) {
    const bool ordered = !wanted.type.codes.empty();
    made.columns.push_back({columns_[wanted.column],
                            ordered ? DeclaredType::kString : declaredType(wanted.type),
                            wanted.type.missingTexts});
  }
  made.counting = request.collapse == CollapseMode::kAlways  ? Counting::kAlways
                  : request.collapse == CollapseMode::kNever ? Counting::kNever
                                                             : Counting::kAuto;
  made.memoryLimit = request.memoryLimit;
  if (progress_) {
    made.progress = [this](double percent, int64_t cases) {
      progress_(Phase::kReading, percent, cases);
    };
  }
  return made;
}

std::string DelimitedCaseSource::placeOf(const CodedColumn& column, size_t code) const {
  return code < column.places.size() ? placeText(column.places[code]) : files_.label;
}

void DelimitedCaseSource::refuse(const std::string& place, const ColumnRequest& wanted,
                                 std::string_view text, const std::string& why) const {
  throw DataError(fmt::format("{}: {}: '{}' {}", place, variables_[wanted.column].variable.name,
                              excerpt(text), why));
}

template <class Place>
double DelimitedCaseSource::categoryOf(std::string_view text, const ColumnRequest& wanted,
                                       Place place) const {
  if (text.empty()) return kSystemMissing;
  for (const auto& [known, code] : wanted.type.codes) {
    if (known == text) return code;
  }
  refuse(place(), wanted, text,
         "is not among the ordered categories that the dictionary lists; add it.");
}

CaseColumn DelimitedCaseSource::converted(CodedColumn read, const ColumnRequest& wanted) const {
  CaseColumn column;
  column.kind = valueKindOf(read.kind);
  if (!read.codes1.empty()) column.codes = CodeList(std::move(read.codes1));
  if (!read.codes2.empty()) column.codes = CodeList(std::move(read.codes2));
  if (!read.codes4.empty()) column.codes = CodeList(std::move(read.codes4));
  if (read.isWide()) {
    column.coded = false;
    column.numbers = std::move(read.wide);
  } else if (!column.isString()) {
    column.numbers = std::move(read.numbers);
  } else if (!wanted.type.codes.empty()) {
    column.kind = ValueKind::kNumber;
    for (size_t i = 0; i < read.texts.size(); ++i) {
      column.numbers.push_back(categoryOf(read.texts[i], wanted, [&] { return placeOf(read, i); }));
    }
  } else {
    for (size_t i = 0; i < read.texts.size(); ++i) {
      if (read.texts[i].size() > kWidestString) {
        refuse(placeOf(read, i), wanted, read.texts[i],
               fmt::format("takes {} bytes; a string holds up to {}.", read.texts[i].size(),
                           kWidestString));
      }
      column.texts.add(read.texts[i]);
    }
  }
  if (!column.isString()) normalise(column);
  return column;
}

/// What made it a column of texts.
std::optional<OddText> DelimitedCaseSource::oddTextOf(const CodedColumn& column,
                                                      const DelimitedCases& cases) const {
  if (column.kind != FieldKind::kText) return {};
  std::vector<int64_t> values(column.kinds.size(), 0);
  for (size_t entry = 0; entry < cases.entries; ++entry) {
    values[column.code(entry)] += entry < cases.repeats.size() ? cases.repeats[entry] : 1;
  }
  KindTally tally;
  for (size_t code = 1; code < values.size(); ++code) {  // code 0 is a missing value
    const DelimitedPlace& place = column.places[code];
    tally.add(column.kinds[code], values[code], {place.part, place.line}, column.texts[code]);
  }
  return oddText(tally);
}

CodedCases DelimitedCaseSource::read(const CaseRequest& request) {
  DelimitedCases found = data_->read(requestFor(request));
  CodedCases cases;
  cases.rows = found.entries;
  cases.cases = found.cases;
  cases.complete = found.complete;
  cases.counts.assign(found.repeats.begin(), found.repeats.end());
  for (size_t i = 0; i < request.columns.size(); ++i) {
    SourceVariable& variable = variables_[request.columns[i].column];
    variable.zoned = found.columns[i].kind == FieldKind::kZonedDateTime;
    variable.odd.reset();
    if (found.complete) {
      variable.odd = oddTextOf(found.columns[i], found);
      cases.columns.push_back(converted(std::move(found.columns[i]), request.columns[i]));
    } else {
      const bool ordered = !request.columns[i].type.codes.empty();
      cases.columns.emplace_back().kind =
          ordered ? ValueKind::kNumber : valueKindOf(found.columns[i].kind);
    }
    variable.variable.kind = cases.columns.back().kind;
    variable.kindKnown = true;
  }
  incomplete_ = found.complete ? DelimitedCases() : std::move(found);
  return cases;
}

void DelimitedCaseSource::forEachBlock(const CaseRequest& request,
                                       const std::function<void(const CaseBlock&)>& take) {
  CaseBlock block;
  block.columns.resize(request.columns.size());
  std::vector<KindTally> tallies(request.columns.size());
  data_->forEachBlock(requestFor(request), incomplete_, [&](const DelimitedBlock& from) {
    block.cases = from.cases;
    block.placeOf = [&](size_t row) { return placeText(from.placeOf(row)); };
    for (size_t i = 0; i < request.columns.size(); ++i) {
      CaseBlock::Column& into = block.columns[i];
      into.numbers = from.columns[i].numbers;
      into.texts = from.columns[i].texts;
      for (double& value : into.numbers) value = normalNumber(value);
      if (request.columns[i].type.codes.empty()) {
        for (size_t row = 0; row < into.texts.size(); ++row) {
          const DelimitedPlace place = from.placeOf(row);
          tallies[i].add(from.columns[i].kinds[row], 1, {place.part, place.line}, into.texts[row]);
        }
        continue;
      }
      into.numbers.clear();
      for (size_t row = 0; row < into.texts.size(); ++row) {
        into.numbers.push_back(
            categoryOf(into.texts[row], request.columns[i], [&] { return block.placeOf(row); }));
      }
    }
    take(block);
  });
  for (size_t i = 0; i < request.columns.size(); ++i) {
    variables_[request.columns[i].column].odd = oddText(tallies[i]);
  }
}

}  // namespace

std::unique_ptr<CaseSource> openDelimitedCases(const DataFiles& files, const TextLayout& layout,
                                               const FieldRules& rules,
                                               const std::atomic<bool>* interrupted,
                                               ProgressCallback progress) {
  return std::make_unique<DelimitedCaseSource>(files, layout, rules, interrupted,
                                               std::move(progress));
}

}  // namespace workbench
