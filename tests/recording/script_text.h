/// The text form of a test: a script, and which part of the transcript it is about.
///
///     test: what is shown            free text
///     variables:                     one per line, strings with their width
///       smoker numeric label "Smoker" missing 9 values 0 "no" 1 "yes"
///       region string 8
///     weight: w                      names of variables
///     split: region
///     layout: tables                 or rows
///     chunk: 2                       cases per chunk at most
///     cases:                         one per line; "*4" at the end repeats it, "." is missing
///       1 "north" *4
///       --                           the mark that ends a split group
///       ==                           an empty chunk
///     command: PROPORTIONS ...       up to the next line that starts at the margin
///     answer: OPERATION K VALUE      what the k-th call answers (0: every call)
///     fatal: call K | case K | OPERATION K
///     throw: bad_alloc call K | runtime_error OPERATION K
///     show: ... / hide: ...          entries of the transcript, by class or operation
///     dump: tables                   append the tables
#pragma once

#include <string>
#include <vector>

#include "tests/recording/script.h"

namespace recording {

struct TextTest {
  std::string title;
  Script script;
  std::vector<std::string> show;
  std::vector<std::string> hide;
  bool dumpTables = false;
};

/// Throws std::runtime_error with the line number for anything it does not understand.
TextTest readTest(const std::string& text);

}  // namespace recording
