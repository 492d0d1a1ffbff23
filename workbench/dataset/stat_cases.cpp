#include "workbench/dataset/stat_cases.h"

#include <fmt/format.h>

#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

#include "workbench/dataset/stat_labels.h"
#include "workbench/dataset/stat_rows.h"
#include "workbench/dataset/typed_cases.h"
#include "workbench/engine/file_stamp.h"
#include "workbench/text/text_fold.h"
#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"
#include "workbench/values/extended_missing.h"

namespace workbench {
namespace {

StatFormat statFormat(FileFormat format) {
  if (format == FileFormat::kDta) return StatFormat::kDta;
  return format == FileFormat::kSas7bdat ? StatFormat::kSas7bdat : StatFormat::kXport;
}

ValueKind kindOf(const StatColumn& column) {
  if (column.isText) return ValueKind::kString;
  switch (column.unit) {
    case StatUnit::kDays:
      return ValueKind::kDate;
    case StatUnit::kSeconds:
    case StatUnit::kMilliseconds:
    case StatUnit::kMillisecondsWithLeaps:
      return ValueKind::kDateTime;
    case StatUnit::kSecondsOfDay:
      return ValueKind::kTime;
    case StatUnit::kNumber:
      break;
  }
  return ValueKind::kNumber;
}

class StatCases final : public TypedCases {
 public:
  StatCases(const DataFiles& files, const std::string& encoding, const FieldRules& rules,
            const std::atomic<bool>* interrupted, ProgressCallback progress);

  const std::string& label() const override { return files_.label; }
  void refuseChanged() const override {
    for (const FileStamp& stamp : stamps_) stamp.refuseChanged();
  }

 private:
  void open(const DataFile& file, const std::string& encoding);
  void readCatalogue(const DataFile& file, const StatSource& source, StatHead& head);
  void declare();
  void declarePathColumns();
  void match(const StatPart& part) const;
  void addLabels(const StatPart& part, SourceVariable& source, size_t column);
  std::unique_ptr<TypedRows> openRows(const CaseRequest& request) override;

  DataFiles files_;
  const std::atomic<bool>* interrupted_;
  ProgressCallback progress_;
  std::vector<FileStamp> stamps_;
  std::vector<StatPart> parts_;
  StatLabels labels_;
};

StatCases::StatCases(const DataFiles& files, const std::string& encoding, const FieldRules& rules,
                     const std::atomic<bool>* interrupted, ProgressCallback progress)
    : TypedCases(rules), files_(files), interrupted_(interrupted), progress_(std::move(progress)) {
  parts_.reserve(files_.files.size());
  for (const DataFile& file : files_.files) open(file, encoding);
  declare();
  declarePathColumns();
}

void StatCases::open(const DataFile& file, const std::string& encoding) {
  stamps_.emplace_back(file.path, file.label);
  StatPart& part = parts_.emplace_back();
  part.source = {statFormat(files_.format), file.path, file.label, encoding, interrupted_};
  std::error_code ignored;
  part.bytes = std::filesystem::file_size(file.path, ignored);
  part.head = readStatHead(part.source);
  if (!file.catalogue.empty()) readCatalogue(file, part.source, part.head);
  part.pathValues = file.pathValues;
  for (size_t i = 0; i < part.head.columns.size(); ++i) {
    const std::string& name = part.head.columns[i].name;
    if (!name.empty()) part.places.emplace(name, i);
  }
}

void StatCases::readCatalogue(const DataFile& file, const StatSource& source, StatHead& head) {
  stamps_.emplace_back(file.catalogue, file.catalogue);
  StatSource catalogue = source;
  catalogue.format = StatFormat::kCatalogue;
  catalogue.path = file.catalogue;
  catalogue.label = file.catalogue;
  head.labels = readStatHead(catalogue).labels;
}

/// The columns of the first file; all others have the same.
void StatCases::declare() {
  std::map<std::string, size_t> folded;
  std::vector<SourceVariable> variables;
  std::vector<size_t> columnOf;
  const StatPart& first = parts_.front();
  for (size_t i = 0; i < first.head.columns.size(); ++i) {
    const StatColumn& column = first.head.columns[i];
    if (column.name.empty()) continue;  // no command can name it
    SourceVariable& variable = variables.emplace_back();
    columnOf.push_back(i);
    variable.variable.name = column.name;
    variable.variable.label = column.label;
    variable.variable.kind = kindOf(column);
    variable.variable.extendedMissing = !column.isText;
    if (!column.isText) {
      variable.variable.missingLow = kFirstExtendedMissing;
      variable.variable.missingHigh = kLastExtendedMissing;
    }
    variable.untyped = column.isText;
    variable.countable = column.unit != StatUnit::kNumber;
    const auto [other, isNew] = folded.emplace(foldCase(column.name), variables.size() - 1);
    if (!isNew) {
      SourceVariable& before = variables[other->second];
      variable.unusable =
          fmt::format("the columns {} and {} differ in the case of their letters alone; rename one",
                      excerpt(before.variable.name), excerpt(column.name));
      before.unusable = variable.unusable;
    }
  }
  for (const StatPart& part : parts_) {
    match(part);
    for (size_t i = 0; i < variables.size(); ++i) addLabels(part, variables[i], columnOf[i]);
  }
  for (SourceVariable& variable : variables) {
    const Variable& facts = variable.variable;
    add({facts.name, facts.kind, facts.isString(), false, {}, !facts.isString()}, variable);
  }
}

void StatCases::declarePathColumns() {
  for (const std::string& name : files_.pathNames) {
    for (const TypedColumnFacts& other : columns()) {
      if (foldCase(other.name) != foldCase(name)) continue;
      throw DataError(
          fmt::format("{}: the files have the column {}, and so has the path; rename one.",
                      files_.label, other.name));
    }
    add({name, ValueKind::kString, true, true}, untypedVariable(name));
  }
}

/// Throws DataError when a file has other columns than the first one.
void StatCases::match(const StatPart& part) const {
  const StatPart& first = parts_.front();
  const auto refuse = [&](const std::string& what) {
    throw DataError(fmt::format("{}: {}. All files need the same columns as {}.", part.source.label,
                                what, first.source.label));
  };
  for (const auto& [name, place] : first.places) {
    const auto same = part.places.find(name);
    if (same == part.places.end()) refuse(fmt::format("there is no column {}", excerpt(name)));
    const StatColumn& here = part.head.columns[same->second];
    const StatColumn& there = first.head.columns[place];
    if (kindOf(here) != kindOf(there) || here.unit != there.unit) {
      refuse(fmt::format("the column {} is of another kind", excerpt(name)));
    }
  }
  for (const auto& [name, place] : part.places) {
    if (first.places.count(name) == 0) {
      refuse(fmt::format("the column {} is not in the first file", excerpt(name)));
    }
  }
}

void StatCases::addLabels(const StatPart& part, SourceVariable& source, size_t column) {
  Variable& variable = source.variable;
  const size_t place = part.places.at(parts_.front().head.columns[column].name);
  const StatColumn& facts = part.head.columns[place];
  if (variable.label.empty()) variable.label = facts.label;
  if (labels_.add(part.source, part.head, facts, variable)) return;
  source.unusable =
      fmt::format("a value of {} has one label in {} and another in {}; make them the same",
                  excerpt(variable.name), parts_.front().source.label, part.source.label);
}

std::unique_ptr<TypedRows> StatCases::openRows(const CaseRequest& request) {
  return openStatRows(parts_, columns(), request, [this](double percent, int64_t cases) {
    if (progress_) progress_(Phase::kReading, percent, cases);
  });
}

}  // namespace

std::unique_ptr<CaseSource> openStatCases(const DataFiles& files, const std::string& encoding,
                                          const FieldRules& rules,
                                          const std::atomic<bool>* interrupted,
                                          ProgressCallback progress) {
  return std::make_unique<StatCases>(files, encoding, rules, interrupted, std::move(progress));
}

}  // namespace workbench
