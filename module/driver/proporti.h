/// The module's only exported function.
#pragma once

/// Runs the host's current PROPORTIONS command: parses it, reads the active data set and writes
/// notes, warnings and tables into the host's output, which is where every outcome is reported.
/// Keeps no state. Throws only what an exhausted memory or the host throws, after everything made
/// has been released.
extern "C" [[gnu::visibility("default")]] void PROPORTI();
