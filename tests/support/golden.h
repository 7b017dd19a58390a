#pragma once
// Golden runs: what a scenario did on the day that its file in tests/golden was written. Every 60 frames the file has a line with the
// hashes of the state, of the drawing calls and of the sounds, and two digits for each part of the state, so that a run that differs can
// say when and where. All of it is the same on every machine and in every build. `tests/golden/write` writes the files anew.
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "engine/gpu/recorder/recorder.h"

namespace arena::test {

class GoldenRun {
 public:
  // `scenario` names the file. The recorder keeps its vertices from here on.
  GoldenRun(const std::string& scenario, gpu::Recorder& recorder);
  // To be called after every frame. The first line that differs fails the test; the rest would tell nothing new.
  void frame();
  // The scenario is over: there must be no more lines. Where the files are written anew, it is written now.
  void finish();

 private:
  struct Line {
    int frame = 0;
    std::string state, drawing, sounds;        // hashes in hexadecimal digits
    std::map<std::string, std::string> parts;  // of the state, those that showed anything
  };
  void read();
  void write() const;
  void add_line();
  void compare(const Line& now);

  const std::string scenario_, path_;
  gpu::Recorder& recorder_;
  const bool is_written_anew_;
  std::vector<Line> expected_, lines_;
  int frames_ = 0;
  bool has_failed_ = false;
  std::uint64_t drawing_ = 0, sounds_ = 0;  // since the last line
};

}  // namespace arena::test
