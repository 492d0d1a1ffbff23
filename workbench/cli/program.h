/// The whole program.
#pragma once

/// Runs the program and gives its exit status: 0 done, 1 a command was refused or failed, 2 wrong
/// usage, unreadable data or unwritable output.
[[gnu::visibility("default")]] int runProgram(int argc, const char* const* argv);
