/// What the head of a file of delimited text says about all of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "workbench/delimited/record_index.h"
#include "workbench/delimited/text_stream.h"

namespace workbench {

struct PartHead {
  char delimiter = ',';
  std::vector<std::string> names;  ///< of the columns, without the blanks around them
  uint64_t bytes = 0;              ///< of the text up to the end of the header
  uint64_t lines = 0;              ///< that end there
};

/// Reads the beginning of a text. With `delimiter` 0 it is the one of , ; tab | (but not `decimal`)
/// that splits the header and the first 100 records into the same number, more than one, of fields;
/// where several do, the one with most fields, then in that order; where none does, the one with
/// most fields in the header. Throws DataError, also for a header of more than `longestRecord`
/// bytes.
PartHead readHead(TextStream& text, const std::string& label, char delimiter, char decimal,
                  size_t longestRecord);

/// The problem of a record as a message.
std::string messageOf(const RecordProblem& problem, const std::string& label, uint64_t firstLine,
                      size_t columns, char delimiter);

std::string longRecordMessage(const std::string& label, uint64_t line, size_t longestRecord);

/// "line 7: there is a NUL byte ..." and "line 7: there are bytes that are not UTF-8 ...".
std::string nulMessage(const std::string& label, uint64_t line);
std::string encodingMessage(const std::string& label, uint64_t line);

/// Line ends in a text, counted as an editor does.
size_t countLineEnds(std::string_view text);

}  // namespace workbench
