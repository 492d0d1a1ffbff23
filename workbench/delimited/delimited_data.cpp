#include "workbench/delimited/delimited_data.h"

#include <fmt/format.h>

#include <algorithm>
#include <deque>
#include <limits>
#include <thread>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "workbench/delimited/block_reader.h"
#include "workbench/delimited/case_assembly.h"
#include "workbench/delimited/column_coder.h"
#include "workbench/delimited/field_text.h"
#include "workbench/delimited/reading_pass.h"
#include "workbench/values/column_names.h"
#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

std::string withoutBlanks(const std::string& text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// Hands the texts of a block over, where they stand or, unescaped, in a buffer of its own.
class BlockTexts {
 public:
  void clear() { buffers_.clear(); }
  std::string_view textOf(std::string_view field) {
    std::string buffer;
    const std::string_view text = fieldText(field, buffer);
    if (buffer.empty()) return text;
    return buffers_.emplace_back(std::move(buffer));
  }

 private:
  std::deque<std::string> buffers_;  // which do not move
};

}  // namespace

class DelimitedData::Implementation {
 public:
  explicit Implementation(DelimitedOptions options) : options_(std::move(options)) {
    refuseUnknownEncoding(options_.encoding);
    if (options_.delimiter != 0 && options_.delimiter == options_.rules.decimal) {
      throw DataError(
          fmt::format("The delimiter and the decimal sign are both '{}'. Give another --delimiter "
                      "or --decimal.",
                      options_.delimiter));
    }
    for (const DelimitedPart& part : options_.parts) open(part);
    names_ = parts_.front().head.names;
    names_.insert(names_.end(), options_.constants.begin(), options_.constants.end());
    refuseEqualNames(names_, options_.parts.front().label);
    for (const OpenPart& part : parts_) fields_.push_back(fieldsOf(part));
  }

  const std::vector<std::string>& names() const { return names_; }
  char delimiter() const { return parts_.front().head.delimiter; }

  int64_t bytes() const {
    int64_t sum = 0;
    for (const OpenPart& part : parts_) {
      const int64_t size = part.input->size();
      if (size < 0) return -1;
      sum += size;
    }
    return sum;
  }

  DelimitedCases read(const DelimitedRequest& request) {
    std::vector<ColumnPlan> plans = plansOf(request);
    for (;;) {
      try {
        return readOnce(request, plans);
      } catch (const WrongForm& wrong) {
        for (const size_t column : wrong.columns) plans[column].onlyCodes = true;
      }
    }
  }

  void forEachBlock(const DelimitedRequest& request, const DelimitedCases& cases,
                    const std::function<void(const DelimitedBlock&)>& take) {
    const std::vector<ColumnPlan> plans = plansOf(request);
    BlockReader reader = newReader();
    TextBlock block;
    BlockTexts texts;
    DelimitedBlock decoded;
    decoded.columns.resize(plans.size());
    decoded.placeOf = [&block](size_t record) {
      return DelimitedPlace{block.part, block.lineOf(record)};
    };
    int64_t count = 0;
    while (reader.next(block)) {
      texts.clear();
      decoded.cases = block.index().records();
      for (size_t i = 0; i < plans.size(); ++i) {
        decode(block, plans[i], cases.columns[i].kind, texts, decoded.columns[i]);
      }
      take(decoded);
      if (block.problem) throw DataError(*block.problem);
      count += static_cast<int64_t>(decoded.cases);
      if (request.progress) request.progress(percentAt(reader.position()), count);
    }
    refuseChanged();
  }

 private:
  void open(const DelimitedPart& part) {
    OpenPart opened;
    opened.path = part.path;
    opened.label = part.label;
    opened.input = openInput(part.path, part.label, options_.interrupted);
    // All files are divided as the first one is.
    const char delimiter = parts_.empty() ? options_.delimiter : parts_.front().head.delimiter;
    const auto text = openText(*opened.input, part.path, part.label, options_.encoding);
    opened.head =
        readHead(*text, part.label, delimiter, options_.rules.decimal, options_.longestRecord);
    opened.columns = opened.head.names.size();
    opened.input->release();
    parts_.push_back(std::move(opened));
  }

  /// Where the columns of the first part stand in another one.
  std::vector<size_t> fieldsOf(const OpenPart& part) const {
    const std::vector<std::string>& first = parts_.front().head.names;
    const std::unordered_set<std::string_view> known(first.begin(), first.end());
    std::unordered_map<std::string_view, size_t> found;
    for (size_t i = 0; i < part.head.names.size(); ++i) {
      const std::string& name = part.head.names[i];
      if (name.empty()) continue;
      if (!known.contains(name)) {
        refuseColumns(part, fmt::format("has the column {}, which is not in", excerpt(name)));
      }
      found.emplace(name, i);
    }
    std::vector<size_t> fields(first.size());
    for (size_t i = 0; i < first.size(); ++i) {
      if (first[i].empty()) {
        fields[i] = std::min(i, part.columns - 1);  // no one can name it
        continue;
      }
      const auto place = found.find(first[i]);
      if (place == found.end()) {
        refuseColumns(part, fmt::format("lacks the column {} of", excerpt(first[i])));
      }
      fields[i] = place->second;
    }
    return fields;
  }

  [[noreturn]] void refuseColumns(const OpenPart& part, const std::string& difference) const {
    throw DataError(fmt::format("{} {} {}. Give all files the same columns, or name fewer files.",
                                part.label, difference, parts_.front().label));
  }

  std::vector<ColumnPlan> plansOf(const DelimitedRequest& request) const {
    std::vector<ColumnPlan> plans;
    for (const DelimitedColumn& wanted : request.columns) {
      ColumnPlan plan;
      plan.name = names_[wanted.column];
      plan.type = wanted.type;
      plan.missingTexts = wanted.missingTexts;
      plan.rules = &options_.rules;
      plan.onlyCodes = wanted.type == DeclaredType::kString;
      const size_t inFiles = names_.size() - options_.constants.size();
      for (size_t part = 0; part < parts_.size(); ++part) {
        ColumnPlan::Origin& origin = plan.origins.emplace_back();
        if (wanted.column < inFiles) {
          origin.field = fields_[part][wanted.column];
        } else {
          // Blanks around a text without quotes do not count.
          origin.constant = withoutBlanks(options_.parts[part].constants[wanted.column - inFiles]);
        }
      }
      plans.push_back(std::move(plan));
    }
    return plans;
  }

  double percentAt(uint64_t position) const {
    const int64_t all = bytes();
    if (all <= 0) return -1.0;
    return std::min(100.0 * static_cast<double>(position) / static_cast<double>(all), 100.0);
  }

  /// A block of a wide file is larger: it costs something for each column, which some dozens of
  /// records should share.
  size_t blockBytes() const {
    constexpr size_t kNarrow = 4096;  // columns
    constexpr size_t kMostTimes = 16;
    return options_.blockBytes * std::clamp<size_t>(names_.size() / kNarrow, 1, kMostTimes);
  }

  BlockReader newReader() const {
    return {parts_,       options_.encoding,      delimiter(),
            blockBytes(), options_.longestRecord, options_.interrupted};
  }

  /// More would find nothing to do.
  unsigned threadsFor(int64_t bytes) const {
    unsigned threads = options_.threads;
    if (threads == 0) threads = std::max(1U, std::thread::hardware_concurrency());
    if (bytes < 0 || parts_.front().input->size() != bytes) return threads;
    const auto blocks = static_cast<uint64_t>(bytes) / blockBytes() + 1;
    return static_cast<unsigned>(std::min<uint64_t>(threads, blocks));
  }

  DelimitedCases readOnce(const DelimitedRequest& request, const std::vector<ColumnPlan>& plans) {
    BlockReader reader = newReader();
    PassOptions options;
    options.counting = request.counting;
    options.memoryLimit = request.memoryLimit;
    options.threads = threadsFor(bytes());
    options.bytes = static_cast<uint64_t>(std::max<int64_t>(0, bytes()));
    options.progress = request.progress;
    ReadingPass pass(reader, plans, std::move(options));
    pass.run();
    refuseChanged();
    std::vector<std::string> labels;
    for (const OpenPart& part : parts_) labels.push_back(part.label);
    return assembleCases(pass.shares(), plans, labels, pass.complete());
  }

  void refuseChanged() const {
    for (const OpenPart& part : parts_) part.input->refuseChanged();
  }

  /// One column of a block as values.
  void decode(const TextBlock& block, const ColumnPlan& plan, FieldKind kind, BlockTexts& texts,
              DelimitedBlock::Column& column) const {
    column.numbers.clear();
    column.texts.clear();
    column.kinds.clear();
    const ColumnPlan::Origin& origin = plan.origins[block.part];
    const auto add = [&](std::string_view text, size_t record) {
      const FieldValue value = interpretField(text, *plan.rules, plan.missingTexts);
      const bool missing = isMissingIn(kind, value);
      if (kind == FieldKind::kText) {
        column.texts.push_back(missing ? std::string_view() : withoutTrailingSpaces(text));
        column.kinds.push_back(missing ? FieldKind::kMissing : value.kind);
      } else {
        // What one thread took for the column's kind may not be what all of them found.
        const std::string_view reason = contradiction(kind, plan.type, value);
        if (!reason.empty()) {
          const uint64_t line = origin.constant ? 0 : block.lineOf(record);
          refuseContradiction({{block.part, line}, 0, std::string(text), std::string(reason)}, plan,
                              parts_[block.part].label);
        }
        column.numbers.push_back(missing ? std::numeric_limits<double>::quiet_NaN() : value.number);
      }
    };
    for (size_t record = 0; record < block.index().records(); ++record) {
      add(origin.constant ? std::string_view(*origin.constant)
                          : texts.textOf(block.field(record, origin.field)),
          record);
    }
  }

  DelimitedOptions options_;
  std::vector<OpenPart> parts_;
  std::vector<std::string> names_;
  std::vector<std::vector<size_t>> fields_;  // by part: positions of the first part's columns
};

DelimitedData::DelimitedData(DelimitedOptions options)
    : implementation_(std::make_unique<Implementation>(std::move(options))) {}

DelimitedData::~DelimitedData() = default;

const std::vector<std::string>& DelimitedData::names() const { return implementation_->names(); }

char DelimitedData::delimiter() const { return implementation_->delimiter(); }

int64_t DelimitedData::bytes() const { return implementation_->bytes(); }

DelimitedCases DelimitedData::read(const DelimitedRequest& request) {
  return implementation_->read(request);
}

void DelimitedData::forEachBlock(const DelimitedRequest& request, const DelimitedCases& cases,
                                 const std::function<void(const DelimitedBlock&)>& take) {
  implementation_->forEachBlock(request, cases, take);
}

}  // namespace workbench
