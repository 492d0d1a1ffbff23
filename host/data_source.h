/// The active data set as a procedure sees it: variables, cases, weights, split-file groups.
///
/// Everything in the case path (`NextCase`, `SplitGroupEnd`, `Weight`, `Case::Obs`,
/// `ZELK_Variable::IsMissing`) is inline over plain views that every host fills; all the rest is
/// behind one opaque pointer per class.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/constants.h"

#pragma GCC visibility push(default)

/// How values of a variable are written. Only `type` is fixed: 1 (and 2) are character strings, 0
/// and everything above 2 are numeric kinds. Every string variable's format has type 1.
struct ZELK_Format {
  uint8_t decimals = 0;
  uint8_t width = 0;
  uint8_t type = 0;
  uint8_t flags = 0;
};
inline constexpr uint8_t kStringFormatType = 1;

/// The name of a variable; compares byte for byte over the full length.
class ZelkVarName {
 public:
  ZelkVarName() = default;
  explicit ZelkVarName(std::string name) : name_(std::move(name)) {}
  const std::string& Str() const { return name_; }
  friend bool operator==(const ZelkVarName& name, std::string_view text) {
    return name.name_ == text;
  }

 private:
  std::string name_;
};

/// The value labels of a variable.
class ZELK_ValueLabelMap {
 public:
  struct Impl;
  explicit ZELK_ValueLabelMap(const Impl* impl) : impl_(impl) {}
  /// The label of a number or of a string without its trailing blanks; null when it has none. The
  /// text is the host's and lives as long as the data source.
  const std::string* Find(double value) const;
  const std::string* Find(std::string_view value) const;

 private:
  const Impl* impl_;
};

/// What makes a value missing, as plain data: a numeric value is user-missing when it is one of
/// `count` numbers or lies in [low, high] (an empty range has low > high).
struct NumericMissingView {
  const double* values = nullptr;
  size_t count = 0;
  double low = 1.0;
  double high = 0.0;
};

/// A variable of the active data set. Owned by the data source.
class ZELK_Variable {
 public:
  struct Impl;
  ZELK_Variable(const Impl* impl, int32_t type, NumericMissingView missing)
      : impl_(impl),
        type_(type),
        missing_(missing),
        hasUserMissing_(missing.count > 0 || missing.low <= missing.high) {}

  /// True when the observation is system- or user-missing. `obs` is what Case::Obs gave for this
  /// variable. A string is missing when it is blank or one of the user-missing strings.
  bool IsMissing(const void* obs) const {
    return type_ == 0 ? IsMissingNumber(*static_cast<const double*>(obs)) : IsMissingString(obs);
  }

  /// False for a numeric variable whose only missing value is the system-missing one.
  bool HasUserMissing() const { return hasUserMissing_; }

  /// 0 for a numeric variable, else the width of its values in bytes (1 or more, even when all are
  /// empty).
  int32_t GetType() const { return type_; }
  ZelkVarName GetName() const;
  ZelkVarName GetUpName() const;
  /// The variable's label, empty when it has none.
  std::string GetLabel() const;
  /// The format stored with definitions, and the one that tells strings from numbers; they agree
  /// here.
  ZELK_Format GetFormat() const;
  ZELK_Format GetFormatEx() const;
  ZELK_ValueLabelMap GetValueLabels() const;

 private:
  bool IsMissingNumber(double value) const {
    return IsSystemMissing(value) || (hasUserMissing_ && IsUserMissing(value));
  }
  bool IsUserMissing(double value) const {
    for (size_t i = 0; i < missing_.count; ++i) {
      if (value == missing_.values[i]) return true;
    }
    return value >= missing_.low && value <= missing_.high;
  }
  bool IsMissingString(const void* obs) const;

  const Impl* impl_;
  int32_t type_;
  NumericMissingView missing_;
  bool hasUserMissing_;
};

/// One variable's observations in the current chunk of cases: `stride` 8-byte words per case, one
/// for a numeric variable.
struct ColumnView {
  const double* words = nullptr;
  ptrdiff_t stride = 1;
};

/// The case at hand. It is a position in a chunk of columns, valid until the next NextCase.
class Case {
 public:
  /// The observation of a variable: one double, or the string's bytes padded with blanks to whole
  /// words. Only variables that the command names may be asked for.
  const double* Obs(VarIndex variable) const {
    const ColumnView& column = columns_[variable];
    return column.words + row_ * column.stride;
  }
  /// The same for a numeric variable: its value.
  double Number(VarIndex variable) const { return columns_[variable].words[row_]; }

 private:
  friend class ZELK_InputCaseIterator;
  friend class ProcDSIterator;
  const ColumnView* columns_ = nullptr;
  ptrdiff_t row_ = -1;
};

/// A run of consecutive cases of one split group.
struct CaseChunk {
  const ColumnView* columns = nullptr;  ///< indexed by variable
  const double* weights = nullptr;      ///< one per case, raw; null when the data are unweighted
  ptrdiff_t count = 0;
  bool groupEnd = false;  ///< no cases: the marker that ends a split group
};

/// Where an iterator's chunks come from.
class CaseFeed {
 public:
  virtual ~CaseFeed() = default;
  /// The next chunk; null when there are no more, and from then on. A chunk that is neither a
  /// marker nor empty holds cases of one split group. The chunk is valid until the next call.
  virtual const CaseChunk* NextChunk() = 0;
};

/// Reads the cases in order, one split group after the other, in file order inside a group.
class ZELK_InputCaseIterator {
 public:
  explicit ZELK_InputCaseIterator(std::unique_ptr<CaseFeed> feed) : feed_(std::move(feed)) {}
  virtual ~ZELK_InputCaseIterator() = default;
  ZELK_InputCaseIterator(const ZELK_InputCaseIterator&) = delete;
  ZELK_InputCaseIterator& operator=(const ZELK_InputCaseIterator&) = delete;

  /// The next case; null after the last one, and from then on. With split groups each group is
  /// followed by an end mark: something that is not null and not a case, for which
  /// ProcDSIterator::SplitGroupEnd is true.
  const Case* NextCase() {
    if (++case_.row_ < count_) return &case_;
    return NextOfFollowingChunk();
  }

 protected:
  Case case_;
  ptrdiff_t count_ = 0;
  const double* weights_ = nullptr;
  bool groupEnd_ = false;

 private:
  const Case* NextOfFollowingChunk() {
    do {
      const CaseChunk* chunk = feed_->NextChunk();
      count_ = 0;
      case_.row_ = 0;
      groupEnd_ = false;
      if (chunk == nullptr) return nullptr;
      case_.columns_ = chunk->columns;
      weights_ = chunk->weights;
      count_ = chunk->count;
      groupEnd_ = chunk->groupEnd;
    } while (count_ == 0 && !groupEnd_);
    return &case_;
  }

  std::unique_ptr<CaseFeed> feed_;
};

/// The iterator that procedures use.
class ProcDSIterator : public ZELK_InputCaseIterator {
 public:
  using ZELK_InputCaseIterator::ZELK_InputCaseIterator;
  /// True exactly while what NextCase gave last is an end mark.
  bool SplitGroupEnd() const { return groupEnd_; }
  /// The weight of the case at hand as it stands in the data (1 when the data are unweighted):
  /// missing, NaN, zero, negative and fractional weights are passed through.
  ///
  /// A procedure promises to round each case's weight half up to a whole number, floor(w + 0.5),
  /// and to drop a case whose weight is missing, NaN or below 0.5. A host may therefore hand
  /// identical cases over once, with the sum of their rounded weights, as long as dropped cases
  /// stay cases of their own.
  double Weight() const { return weights_ == nullptr ? 1.0 : weights_[case_.row_]; }
};

/// Variables of a data set, by index in file order.
class ZELK_DataSource {
 public:
  int32_t GetVariableCount() const;
  /// `index` must be at least 0 and below the count.
  const ZELK_Variable& GetVariable(VarIndex index) const;
  /// The index of the variable of that name, whatever the case of its letters; negative when there
  /// is none.
  VarIndex FindVariable(std::string_view name) const;

 protected:
  ZELK_DataSource() = default;
  ~ZELK_DataSource() = default;
};

/// A choice of cases and variables; null chooses all.
class ZELK_CaseSelection;

/// The active data set of the running procedure. Construction attaches to it.
class ProcedureDataSource : public ZELK_DataSource {
 public:
  ProcedureDataSource();
  ~ProcedureDataSource();
  ProcedureDataSource(const ProcedureDataSource&) = delete;
  ProcedureDataSource& operator=(const ProcedureDataSource&) = delete;

  /// Declares that the procedure can work on resampled data.
  void Bootstrapping(bool supported);
  /// True from the first read error, failed iterator or interruption on; never reset.
  bool FatalError() const;
  int32_t GetNSplitVars() const;
  /// The variable at a position of the split list, outermost first; 0 <= position <
  /// GetNSplitVars().
  VarIndex GetSplitVarIndex(int32_t position) const;
  /// True when each split group has tables of its own, false when groups are rows of shared tables.
  bool SplitLayoutSeparate() const;
  /// Negative when the data are unweighted.
  VarIndex GetWeightVarIndex() const;
  /// A new iterator (a ProcDSIterator) before the first case, owned by the caller. Null only when
  /// FatalError is set.
  ZELK_InputCaseIterator* MakeIterator(const ZELK_CaseSelection* selection = nullptr);

 private:
  friend class ZELK_DataSource;  // whose operations work on the same state
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// A map from fixed-length keys (the observations of some variables side by side) to one double.
/// Keys compare byte for byte.
class ObsVecMap {
 public:
  /// Words that an observation of each of the variables takes (ObsLength), in order.
  static std::vector<int32_t> MakeKeySpec(ProcedureDataSource& source,
                                          const std::vector<VarIndex>& variables);
  /// With `copyKeys` the map keeps keys of its own, and the caller's may go.
  ObsVecMap(const std::vector<int32_t>& widths, bool copyKeys);
  ~ObsVecMap();
  ObsVecMap(const ObsVecMap&) = delete;
  ObsVecMap& operator=(const ObsVecMap&) = delete;

  /// Words of a key and its cell together.
  int32_t CellSize() const;
  /// The address of the key's cell, or null. It stays valid as long as the map.
  double* Contains(const double* key);
  /// The address of a new cell holding 0 for a key that is not in the map yet.
  double* Insert(const double* key);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// Tells the host that the data are split by resample; the answer carries no meaning.
int QBOOTSTRAPPING();

#pragma GCC visibility pop
