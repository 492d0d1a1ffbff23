/// The order of strings.
#pragma once

#include <string>
#include <string_view>

namespace workbench {

/// From now on the whole program orders strings as a language does, given by its BCP 47 tag
/// ("de-AT", "de-u-co-phonebk"); "und", which holds until then, is the Unicode root order. Nothing
/// may be comparing strings meanwhile, and nothing that was sorted before stays in order. Throws
/// std::invalid_argument that says what is wrong when the tag is not well-formed or names a
/// language or a collation that there are no data for; then nothing changes.
void orderStringsBy(const std::string& languageTag);

/// A total order on byte strings: that of the language, and bytes where it sees no difference. The
/// environment never matters. Negative, zero (equal bytes only) or positive.
int compareStrings(std::string_view a, std::string_view b);

}  // namespace workbench
