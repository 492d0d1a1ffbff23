/// Reference values kept as text.
#pragma once

#include <string>
#include <vector>

/// A row of a reference file, by column name.
class ReferenceRow {
 public:
  ReferenceRow(const std::vector<std::string>* names, std::vector<std::string> fields, int line)
      : names_(names), fields_(std::move(fields)), line_(line) {}
  const std::string& text(const std::string& column) const;
  /// "missing" is the system-missing value, "nan" a NaN.
  double number(const std::string& column) const;
  int line() const { return line_; }

 private:
  const std::vector<std::string>* names_;
  std::vector<std::string> fields_;
  int line_;
};

/// A file of tests/reference: lines that begin with # are its provenance, the last of them names
/// the columns.
class ReferenceFile {
 public:
  explicit ReferenceFile(const std::string& name);
  const std::vector<ReferenceRow>& rows() const { return rows_; }

 private:
  std::vector<std::string> names_;
  std::vector<ReferenceRow> rows_;
};

/// Fails the running test unless `got` is the wanted value: missing, NaN and 0 exactly, other
/// numbers within 1e-12 of each, or within `nothing` where that is more.
void expectClose(double got, const ReferenceRow& row, const std::string& column,
                 double nothing = 0.0);
