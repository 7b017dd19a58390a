#pragma once
// Going through a recording: what the snapshots take that share unchanged memory, and how long a seek lasts.
namespace bench {

// A game of its own from `data_file`; the current session is the same again at the end.
void run_seeking(const char* data_file);

}  // namespace bench
