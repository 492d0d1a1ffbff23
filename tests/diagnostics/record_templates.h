/// The dumps of the records as they are made. A test changes the fields that differ in its case, so
/// that it shows these alone.
#pragma once

#include <string>
#include <vector>

namespace diagnostics {

using Lines = std::vector<std::string>;

Lines freshElement();  ///< of the values that mean success, or of those that form groups
/// With the given lines for the values that mean success.
Lines freshSpecification(const Lines& success = freshElement());
Lines freshAnalysis();
Lines freshCategories();  ///< of a numeric variable
Lines freshOneSampleRecord();
Lines freshPairedRecord();
Lines freshIndependentRecord();

/// The dump with other fields: each line of the block stands for the line with the same label
/// ("I OBS length = 2" for "I OBS length = 1"). Throws std::invalid_argument where the dump does
/// not have that label exactly once.
Lines with(Lines dump, const std::string& block);
/// The dump with other lines instead of one, which it must have exactly once. Throws as `with`.
Lines replaced(Lines dump, const std::string& line, const Lines& others);
/// The dump with more lines right after one, which it must have exactly once. Throws as `with`.
Lines inserted(Lines dump, const std::string& line, const Lines& more);
/// A specification's dump with the element of its grouping variable.
Lines withGroupElement(const Lines& specification, const Lines& element);
/// An analysis object's dump with what follows its own fields: categories, then records.
Lines withRecords(Lines analysis, const Lines& records);
/// One after the other.
Lines joined(Lines first, const Lines& second);

}  // namespace diagnostics
