/// Fields of delimited text without their quotes and blanks.
#pragma once

#include <string>
#include <string_view>

namespace workbench {

/// The text of a field as it stands between delimiters: what is inside its quotes, with doubled
/// quotes as one, or what is between the blanks around it. Either in the field itself or in
/// `buffer`.
std::string_view fieldText(std::string_view field, std::string& buffer);

}  // namespace workbench
