/// Codes of the host's output library, by what they stand for here.
#pragma once

namespace proportions {

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

}  // namespace proportions
