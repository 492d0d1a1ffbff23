/// Dumps of a record as a table of labels and fields.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "host/display.h"

namespace proportions {

/// A line with a label and a field's value, of whatever kind.
inline void dumpField(const char* label, bool value) { ACACommonDisplay::DisplayB(label, value); }
inline void dumpField(const char* label, int32_t value) {
  ACACommonDisplay::DisplayI(label, value);
}
inline void dumpField(const char* label, double value) { ACACommonDisplay::DisplayD(label, value); }
inline void dumpField(const char* label, const std::string& value) {
  ACACommonDisplay::DisplayS(label, value);
}
inline void dumpField(const char* label, const std::vector<bool>& values) {
  ACACommonDisplay::DisplayBV(label, values);
}
inline void dumpField(const char* label, const std::vector<int32_t>& values) {
  ACACommonDisplay::DisplayIV(label, values);
}
inline void dumpField(const char* label, const std::vector<double>& values) {
  ACACommonDisplay::DisplayDV(label, values);
}
inline void dumpField(const char* label, const std::vector<std::string>& values) {
  ACACommonDisplay::DisplaySV(label, values);
}

template <typename Record>
struct Field {
  const char* label;
  std::variant<bool Record::*, int32_t Record::*, double Record::*, std::string Record::*,
               std::vector<bool> Record::*, std::vector<int32_t> Record::*,
               std::vector<double> Record::*, std::vector<std::string> Record::*>
      member;
};

/// The fields of a table in their order.
template <typename Record, size_t N>
void dumpFields(const Record& record, const Field<Record> (&fields)[N]) {
  for (const Field<Record>& field : fields) {
    std::visit([&](auto member) { dumpField(field.label, record.*member); }, field.member);
  }
}

inline void dumpLine(const std::string& text) { BP_ToFront(text.c_str()); }

/// The start and end lines around a record's fields. The end line is not left to a destructor,
/// since the display may throw.
template <typename DumpFields>
void framed(const std::string& name, const DumpFields& dumpInside) {
  dumpLine(name + " display start");
  dumpInside();
  dumpLine(name + " display end");
}

}  // namespace proportions
