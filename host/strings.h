/// Text functions of the host, on UTF-8 strings that end in a zero byte.
#pragma once

#include <cstddef>

#pragma GCC visibility push(default)

/// Removes trailing blanks in place and gives `text` back. Leading blanks are part of a value.
char* ZELKMBstrtrim_A(char* text);
/// Folds in place; what would grow beyond its room is left as it is.
char* ZELKMBstrupr_A(char* text);
char* ZELKMBstrlwr_A(char* text);
/// Compares at most n bytes of each, in the order of the host's locale and, where the locale sees
/// no difference, byte by byte, so that only equal bytes compare equal. Only the sign of the answer
/// has a meaning.
int ZELKMBstrncoll_A(const char* a, const char* b, size_t n);

#pragma GCC visibility pop
