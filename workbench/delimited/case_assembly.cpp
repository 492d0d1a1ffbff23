#include "workbench/delimited/case_assembly.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

/// The values of one column in all shares, and the codes that they get.
class ColumnMerger {
 public:
  ColumnMerger(const std::vector<ReadShare>& shares, size_t column, DeclaredType type)
      : column_(column) {
    KindSet kinds;
    for (const ReadShare& share : shares) {
      coders_.push_back(&share.columns[column]);
      values_.push_back(coders_.back()->interpretFields());
      for (const FieldValue& value : values_.back()) kinds.add(value);
      kinds.add(coders_.back()->otherKinds());
    }
    kind_ = kinds.columnKind(type);
    declared_ = type != DeclaredType::kNone;
    findContradiction(type);
  }

  FieldKind kind() const { return kind_; }
  const std::optional<Contradiction>& contradiction() const { return contradiction_; }

  /// Whether some share has numbers that the column must not have.
  bool hasWrongForm() const {
    return kind_ == FieldKind::kText && std::any_of(coders_.begin(), coders_.end(), isWide);
  }

  /// Finds the codes; with them, or with the numbers in their place, the column is filled.
  void chooseCodes(CodedColumn& column) {
    column.kind = kind_;
    column.declared = declared_;
    if (kind_ == FieldKind::kText) {
      codeTexts(column);
    } else {
      wide_ = std::any_of(coders_.begin(), coders_.end(), isWide) || hasTooManyFields();
      if (!wide_) codeNumbers(column);
    }
  }

  bool isWideColumn() const { return wide_; }
  double numberOf(size_t share, uint32_t code) const {
    const FieldValue& value = values_[share][code];
    return isMissingIn(kind_, value) ? kNoNumber : value.number;
  }
  uint32_t codeOf(size_t share, uint32_t code) const { return codes_[share][code]; }
  /// The same by code of the share.
  const std::vector<uint32_t>& codesOf(size_t share) const { return codes_[share]; }

 private:
  struct Entry {
    uint32_t share = 0;
    uint32_t code = 0;
    double number = 0.0;  // or
    std::string_view text;
  };

  static bool isWide(const ColumnCoder* coder) { return coder->isWide(); }

  void findContradiction(DeclaredType type) {
    const auto consider = [&](const Contradiction& found) {
      if (!contradiction_ || found < *contradiction_) contradiction_ = found;
    };
    if (kind_ == FieldKind::kText) return;
    for (size_t share = 0; share < coders_.size(); ++share) {
      if (coders_[share]->contradiction()) consider(*coders_[share]->contradiction());
      for (uint32_t code = 0; code < values_[share].size(); ++code) {
        const std::string_view reason = workbench::contradiction(kind_, type, values_[share][code]);
        if (reason.empty()) continue;
        consider({coders_[share]->fields().place(code), column_, coders_[share]->textOf(code),
                  std::string(reason)});
      }
    }
  }

  /// As if all had been read by one share.
  bool hasTooManyFields() const {
    std::vector<std::string_view> fields;
    for (const ColumnCoder* coder : coders_) {
      for (size_t code = 0; code < coder->fields().size(); ++code) {
        fields.push_back(coder->fields()[code]);
      }
    }
    if (fields.size() <= kMostCodedFields) return false;
    std::sort(fields.begin(), fields.end());
    const auto different = std::unique(fields.begin(), fields.end()) - fields.begin();
    return static_cast<size_t>(different) > kMostCodedFields;
  }

  /// Missing values get code 0, the others 1, 2, ... in the order of the entries.
  template <class Same, class Add>
  void assignCodes(CodedColumn& column, const std::vector<Entry>& entries, Same same, Add add) {
    const Entry* before = nullptr;
    for (const Entry& entry : entries) {
      const DelimitedPlace place = coders_[entry.share]->fields().place(entry.code);
      if (before == nullptr || !same(*before, entry)) {
        add(entry);
        column.places.push_back(place);
      }
      before = &entry;
      codes_[entry.share][entry.code] = static_cast<uint32_t>(column.places.size() - 1);
      keepFirst(column.places.back(), place);
    }
  }

  static void keepFirst(DelimitedPlace& first, const DelimitedPlace& place) {
    if (std::pair(place.part, place.line) < std::pair(first.part, first.line)) first = place;
  }

  std::vector<Entry> entriesThatAreThere() {
    std::vector<Entry> entries;
    for (uint32_t share = 0; share < coders_.size(); ++share) {
      codes_.emplace_back(values_[share].size(), 0);
      for (uint32_t code = 0; code < values_[share].size(); ++code) {
        if (!isMissingIn(kind_, values_[share][code])) {
          entries.push_back({share, code, values_[share][code].number, {}});
        }
      }
    }
    return entries;
  }

  void codeNumbers(CodedColumn& column) {
    std::vector<Entry> entries = entriesThatAreThere();
    std::sort(entries.begin(), entries.end(),
              [](const Entry& a, const Entry& b) { return a.number < b.number; });
    column.numbers.push_back(kNoNumber);
    column.places.emplace_back();
    assignCodes(
        column, entries, [](const Entry& a, const Entry& b) { return a.number == b.number; },
        [&](const Entry& entry) { column.numbers.push_back(entry.number); });
  }

  void codeTexts(CodedColumn& column) {
    std::vector<Entry> entries = entriesThatAreThere();
    std::deque<std::string> unescaped;
    std::string buffer;
    for (Entry& entry : entries) {
      std::string_view text = codedText(coders_[entry.share]->fields()[entry.code], buffer);
      if (text.data() == buffer.data()) text = unescaped.emplace_back(text);
      entry.text = withoutTrailingSpaces(text);
    }
    std::sort(entries.begin(), entries.end(),
              [](const Entry& a, const Entry& b) { return a.text < b.text; });
    column.texts.emplace_back();
    column.kinds.push_back(FieldKind::kMissing);
    column.places.emplace_back();
    assignCodes(
        column, entries, [](const Entry& a, const Entry& b) { return a.text == b.text; },
        [&](const Entry& entry) {
          column.texts.emplace_back(entry.text);
          column.kinds.push_back(values_[entry.share][entry.code].kind);
        });
  }

  size_t column_;
  FieldKind kind_ = FieldKind::kNumber;
  bool declared_ = false;
  bool wide_ = false;
  std::vector<const ColumnCoder*> coders_;       // by share
  std::vector<std::vector<FieldValue>> values_;  // by share and code
  std::vector<std::vector<uint32_t>> codes_;     // likewise: the common one
  std::optional<Contradiction> contradiction_;
};

/// The pieces of all shares by block.
struct PlacedPiece {
  size_t share = 0;
  CasePiece* piece = nullptr;
};

std::vector<PlacedPiece> orderedPieces(std::vector<ReadShare>& shares) {
  std::vector<PlacedPiece> pieces;
  for (size_t share = 0; share < shares.size(); ++share) {
    for (CasePiece& piece : shares[share].pieces) pieces.push_back({share, &piece});
  }
  std::sort(pieces.begin(), pieces.end(), [](const PlacedPiece& a, const PlacedPiece& b) {
    return a.piece->block < b.piece->block;
  });
  return pieces;
}

/// Counted combinations in common codes.
class MergedCombinations {
 public:
  MergedCombinations(const std::vector<ReadShare>& shares, const std::vector<ColumnMerger>& columns,
                     const std::vector<size_t>& codes)
      : table_(columns.size()) {
    table_.fit(codes);
    std::vector<uint64_t> combination(table_.words());
    for (size_t share = 0; share < shares.size(); ++share) {
      const CombinationTable& counted = shares[share].counted;
      counted.forEach([&](const uint64_t* own, int64_t count) {
        std::fill(combination.begin(), combination.end(), 0);
        for (size_t column = 0; column < columns.size(); ++column) {
          const uint32_t code = columns[column].codeOf(share, counted.codeIn(own, column));
          table_.pack(column, &code, 1, combination.data());
        }
        table_.add(combination.data(), count);
      });
    }
  }
  const CombinationTable& table() const { return table_; }

 private:
  CombinationTable table_;
};

/// A combination as some table has it.
struct Counted {
  const CombinationTable* table = nullptr;
  size_t share = 0;  ///< whose codes it has; those of all for kCommonCodes
  const uint64_t* words = nullptr;
  int64_t count = 0;

  uint32_t ownCode(size_t column) const { return table->codeIn(words, column); }
};

constexpr size_t kCommonCodes = std::numeric_limits<size_t>::max();

void addSorted(std::vector<Counted>& combinations, const CombinationTable& table, size_t share) {
  const auto first = static_cast<std::ptrdiff_t>(combinations.size());
  table.forEach([&](const uint64_t* words, int64_t count) {
    combinations.push_back({&table, share, words, count});
  });
  std::sort(combinations.begin() + first, combinations.end(),
            [&](const Counted& a, const Counted& b) {
              return std::lexicographical_compare(a.words, a.words + table.words(), b.words,
                                                  b.words + table.words());
            });
}

template <class Own, class Code>
void appendCodes(const std::vector<Own>& own, const std::vector<uint32_t>& common,
                 std::vector<Code>& codes) {
  const size_t before = codes.size();
  codes.resize(before + own.size());
  const uint32_t* const to = common.data();
  std::transform(own.begin(), own.end(), codes.data() + before,
                 [to](Own code) { return static_cast<Code>(to[code]); });
}

template <class Code>
void fillCodes(std::vector<Code>& codes, size_t column, const ColumnMerger& merger,
               const std::vector<Counted>& combinations, std::vector<PlacedPiece>& pieces) {
  for (const Counted& counted : combinations) {
    const uint32_t code = counted.ownCode(column);
    codes.push_back(static_cast<Code>(
        counted.share == kCommonCodes ? code : merger.codeOf(counted.share, code)));
  }
  for (const PlacedPiece& placed : pieces) {
    std::visit(
        [&](auto& own) {
          using Own = typename std::decay_t<decltype(own)>::value_type;
          if constexpr (!std::is_same_v<Own, double>) {
            appendCodes(own, merger.codesOf(placed.share), codes);
          }
          own = {};
        },
        placed.piece->columns[column]);
  }
}

void fillNumbers(std::vector<double>& numbers, size_t column, const ColumnMerger& merger,
                 const std::vector<Counted>& combinations, std::vector<PlacedPiece>& pieces) {
  for (const Counted& counted : combinations) {
    numbers.push_back(merger.numberOf(counted.share, counted.ownCode(column)));
  }
  for (const PlacedPiece& placed : pieces) {
    std::visit(
        [&](auto& own) {
          using Own = typename std::decay_t<decltype(own)>::value_type;
          if constexpr (std::is_same_v<Own, double>) {
            numbers.insert(numbers.end(), own.begin(), own.end());
          } else {
            for (const Own code : own) numbers.push_back(merger.numberOf(placed.share, code));
          }
          own = {};
        },
        placed.piece->columns[column]);
  }
}

void fill(CodedColumn& column, size_t position, const ColumnMerger& merger,
          const std::vector<Counted>& combinations, std::vector<PlacedPiece>& pieces,
          size_t entries) {
  const size_t different = column.places.size();
  if (merger.isWideColumn()) {
    column.wide.reserve(entries);
    fillNumbers(column.wide, position, merger, combinations, pieces);
  } else if (different <= size_t{1} << 8U) {
    column.codes1.reserve(entries);
    fillCodes(column.codes1, position, merger, combinations, pieces);
  } else if (different <= size_t{1} << 16U) {
    column.codes2.reserve(entries);
    fillCodes(column.codes2, position, merger, combinations, pieces);
  } else {
    column.codes4.reserve(entries);
    fillCodes(column.codes4, position, merger, combinations, pieces);
  }
}

std::vector<ColumnMerger> mergeColumns(const std::vector<ReadShare>& shares,
                                       const std::vector<ColumnPlan>& plans,
                                       const std::vector<std::string>& labels, bool complete) {
  std::vector<ColumnMerger> mergers;
  WrongForm wrong;
  std::optional<Contradiction> first;
  for (size_t i = 0; i < plans.size(); ++i) {
    mergers.emplace_back(shares, i, plans[i].type);
    if (complete && mergers.back().hasWrongForm()) wrong.columns.push_back(i);
    const auto& found = mergers.back().contradiction();
    if (found && (!first || *found < *first)) first = found;
  }
  if (!wrong.columns.empty()) throw wrong;
  if (first) refuseContradiction(*first, plans[first->column], labels[first->place.part]);
  return mergers;
}

}  // namespace

void refuseContradiction(const Contradiction& found, const ColumnPlan& plan,
                         const std::string& label) {
  const std::string place =
      found.place.line == 0 ? label : fmt::format("{}, line {}", label, found.place.line);
  const bool declared = plan.type != DeclaredType::kNone;
  throw DataError(fmt::format(
      "{}, column {}: {} {}. {}", place, plan.name, excerpt(found.text), found.reason,
      declared
          ? "Correct the value, or give the column another type in the dictionary (string takes "
            "any value)."
          : "Correct the value, or give the column the type string in a dictionary."));
}

DelimitedCases assembleCases(std::vector<ReadShare>& shares, const std::vector<ColumnPlan>& plans,
                             const std::vector<std::string>& labels, bool complete) {
  DelimitedCases cases;
  for (const ReadShare& share : shares) cases.cases += share.cases;
  cases.complete = complete;
  cases.columns.resize(plans.size());
  std::vector<ColumnMerger> mergers = mergeColumns(shares, plans, labels, complete);
  if (!complete) {
    for (size_t i = 0; i < plans.size(); ++i) {
      cases.columns[i].kind = mergers[i].kind();
      cases.columns[i].declared = plans[i].type != DeclaredType::kNone;
    }
    return cases;
  }
  bool common = true;
  std::vector<size_t> codes;
  for (size_t i = 0; i < plans.size(); ++i) {
    mergers[i].chooseCodes(cases.columns[i]);
    common = common && !mergers[i].isWideColumn();
    codes.push_back(cases.columns[i].places.size());
  }
  // Where a column has no codes, the combinations of different shares stay apart.
  std::optional<MergedCombinations> merged;
  std::vector<Counted> combinations;
  if (common) {
    merged.emplace(shares, mergers, codes);
    addSorted(combinations, merged->table(), kCommonCodes);
  } else {
    for (size_t share = 0; share < shares.size(); ++share) {
      addSorted(combinations, shares[share].counted, share);
    }
  }
  std::vector<PlacedPiece> pieces = orderedPieces(shares);
  cases.entries = combinations.size();
  for (const PlacedPiece& placed : pieces) cases.entries += placed.piece->records;
  for (const Counted& counted : combinations) cases.repeats.push_back(counted.count);
  for (size_t i = 0; i < plans.size(); ++i) {
    fill(cases.columns[i], i, mergers[i], combinations, pieces, cases.entries);
  }
  return cases;
}

}  // namespace workbench
