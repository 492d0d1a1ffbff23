/// The host's output: procedures, notes, warnings and pivot tables.
///
/// Labels and numbers are values: whatever is handed over is copied. Procedures, tables,
/// dimensions, groups and categories belong to the host's output document; the references given out
/// stay valid as long as it does. Everything is found or made: asking twice for the same thing (a
/// table by its title, a dimension, group or category by its label within its parent) gives the
/// same object. Labels are the same when they have the same structure (template, variable, value
/// bits, preference code), not when they read the same.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/data_source.h"

#pragma GCC visibility push(default)

// Codes of this library, by what they stand for here.
inline constexpr int kProcedureCode = 10;     ///< BpProcedure
inline constexpr int kTableCode = 1;          ///< BpHeading::PivotTable
inline constexpr int kDimensionCode = 2;      ///< BpPivotTable::Dimension
inline constexpr int kRowAxis = 0;            ///< BpDimension::Position
inline constexpr int kColumnAxis = 1;         ///< BpDimension::Position
inline constexpr int kGroupCode = 1;          ///< BpGroup::Group, first number
inline constexpr int kGroupStyle = 2;         ///< BpGroup::Group, second number
inline constexpr int kCatalogueKey = 1;       ///< BpString: looked up in the message catalogue
inline constexpr int kShowLabelElseName = 2;  ///< BpVariable
inline constexpr int kPreferValue = 0;        ///< BpDataValue: always the value itself
inline constexpr int kPreferValueLabel = 2;   ///< BpDataValue: the value label when it has one
inline constexpr int kDataMessage = 2;        ///< BpError
inline constexpr int kPlainWarning = 2;       ///< BpError, the level
inline constexpr int kSevereWarning = 3;      ///< BpError, the level
inline constexpr int kGeneralNotes = 0;       ///< AddNotes, the section
inline constexpr int kMissingNotes = 4;       ///< AddNotes, the section

/// How a number is shown. Asked of the procedure, passed back as it is.
struct BpFormatSpec {
  enum class Kind : uint8_t { kCount, kGeneralStat, kSigDigit };
  Kind kind = Kind::kGeneralStat;
};

/// A number with its format; NaN, infinities and the system-missing value are allowed.
struct BpNumber {
  BpNumber(double number, const BpFormatSpec& spec) : value(number), format(spec) {}
  double value;
  BpFormatSpec format;
};

/// Anything that can name a table, dimension, group, category or message.
class BpLabel {
 public:
  enum class Kind : uint8_t { kString, kVariable, kComposite };
  Kind kind() const { return kind_; }

 protected:
  explicit BpLabel(Kind kind) : kind_(kind) {}
  ~BpLabel() = default;

 private:
  Kind kind_;
};

/// A key of the message catalogue, or a text that is shown as it stands when the catalogue lacks
/// it.
class BpString : public BpLabel {
 public:
  BpString(const char* text, int flag) : BpLabel(Kind::kString), text_(text), flag_(flag) {}
  const std::string& text() const { return text_; }
  int flag() const { return flag_; }

 private:
  std::string text_;
  int flag_;
};

/// A variable, shown as the show code says.
class BpVariable : public BpLabel {
 public:
  BpVariable(VarIndex index, int showCode)
      : BpLabel(Kind::kVariable), index_(index), showCode_(showCode) {}
  VarIndex index() const { return index_; }
  int showCode() const { return showCode_; }

 private:
  VarIndex index_;
  int showCode_;
};

/// A value shown through its variable, as the preference code says.
class BpDataValue {
 public:
  BpDataValue(VarIndex variable, double number, int preference)
      : variable_(variable), number_(number), preference_(preference) {}
  BpDataValue(VarIndex variable, const std::string& text, int preference)
      : variable_(variable), isString_(true), text_(text), preference_(preference) {}
  VarIndex variable() const { return variable_; }
  bool isString() const { return isString_; }
  double number() const { return number_; }
  const std::string& text() const { return text_; }
  int preference() const { return preference_; }

 private:
  VarIndex variable_;
  bool isString_ = false;
  double number_ = kSystemMissing;
  std::string text_;
  int preference_;
};

/// A template with items: ^n stands for item n; [F:R:]n runs over the elements of item n, a
/// sublist, the first through F and each further one through R, which carries its own separator
/// (%1, %2 are an element's parts).
class BpComposite : public BpLabel {
 public:
  explicit BpComposite(const char* templateText);
  BpComposite(BpComposite&& other) noexcept;
  BpComposite& operator=(BpComposite&& other) noexcept;
  ~BpComposite();

  void Add(const BpVariable& variable);
  void Add(const BpDataValue& value);
  void Add(const BpNumber& number);
  /// Opens and closes a sublist; all that is added between the two is one item.
  void Sublist();
  void EndSublist();
  /// Adds, inside a sublist, variable and value of each split variable of the current split group.
  void SplitList();
  /// Ends the filling.
  void Finish();

  struct Impl;
  const Impl& impl() const { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};

/// The text of a cell note; owned by the output library from its creation.
class BpCellText {
 public:
  static BpCellText* Replicate(const BpString& text);
  BpCellText(const BpCellText&) = delete;
  BpCellText& operator=(const BpCellText&) = delete;
  ~BpCellText();

  struct Impl;
  const Impl& impl() const { return *impl_; }

 private:
  explicit BpCellText(std::unique_ptr<Impl> impl);
  std::unique_ptr<Impl> impl_;
};

/// A note on a cell.
struct BpCellNote {
  BpCellText* text = nullptr;
  int32_t first = -1;
  int32_t second = 0;
};

/// A leaf of a dimension.
class BpCategory {
 public:
  /// Sets the cell at this category and the current category of every other dimension of the table.
  /// A second write to the same place replaces the first.
  void Cell(const BpNumber& number);
  /// Attaches a note to the cell that Cell would write now.
  void CellNote(const BpCellNote& note);
  /// Attaches a footnote to this category; the same footnote is kept once.
  void Note(const BpLabel& label);

  struct Impl;
  explicit BpCategory(Impl* impl) : impl_(impl) {}

 private:
  Impl* impl_;
};

/// An inner node of a dimension.
class BpGroup {
 public:
  /// The group of that label in this one. The numbers are presentation codes of the host.
  BpGroup& Group(const BpLabel& label, int first, int second);
  /// The leaf of that label in this group; it becomes the current category of its dimension.
  BpCategory& Category(const BpLabel& label);

  struct Impl;
  explicit BpGroup(Impl* impl) : impl_(impl) {}

 protected:
  Impl* impl_;
};

/// A dimension of a table; categories may be added to it directly.
class BpDimension : public BpGroup {
 public:
  using BpGroup::BpGroup;
  /// Axis 0 is rows, 1 columns. Level 2 stands outside level 1. The other numbers are presentation
  /// codes.
  void Position(int axis, int level, int first, int second);
};

class BpPivotTable {
 public:
  BpDimension& Dimension(const BpLabel& label, int code);

  struct Impl;
  explicit BpPivotTable(Impl* impl) : impl_(impl) {}

 private:
  Impl* impl_;
};

/// The part of the document under which a procedure's tables stand.
class BpHeading {
 public:
  /// The table of that lookup name; with separate split layout, that of the current split group.
  BpPivotTable& PivotTable(const BpString& title, const char* lookupName, int code);

  struct Impl;
  explicit BpHeading(Impl* impl) : impl_(impl) {}

 private:
  Impl* impl_;
};

/// The output of one run of a command.
class BpProcedure {
 public:
  BpProcedure(const char* title, int code);
  ~BpProcedure();
  BpProcedure(const BpProcedure&) = delete;
  BpProcedure& operator=(const BpProcedure&) = delete;

  /// Looks up the split group of the case at hand and remembers it for the tables and messages
  /// that follow.
  void SplitChange();
  BpHeading& Heading();
  /// Formats: whole counts; all other statistics; a number in a label, in the shortest form
  /// that reads back the same.
  BpFormatSpec Count() const;
  BpFormatSpec GeneralStat() const;
  BpFormatSpec SigDigit(double number) const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// Issues a warning about the data; `level` is 2 or 3.
void BpError(const BpLabel& text, int code, int level);

/// Adds a row to the procedure's notes.
void AddNotes(int section, const BpString& label, const BpString& value);

#pragma GCC visibility pop
