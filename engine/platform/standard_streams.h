#pragma once
// Standard input and output as lines. An end request interrupts whoever waits here.
#include <string>
#include <string_view>

namespace arena::platform {

// Streams that are closed at start stay so: no file that is opened later gets their place. Input and output pass
// byte by byte on every system. Called first of all.
void hold_standard_streams();

class InputLines {
 public:
  enum class Result { kLine, kNothing, kEnd, kFailed, kEndRequest };
  // Of a longer line only this many bytes and one are given.
  explicit InputLines(std::size_t longest) : longest_(longest) {}
  // The line without its end; what stands behind the last line end is a line, too, unless it is empty.
  Result next(std::string& line);
  // The same without waiting: kNothing while no whole line is there.
  Result next_if_there(std::string& line);

 private:
  Result take(std::string& line, bool waits);
  Result fill();
  std::size_t longest_;
  std::string buffer_, begun_;  // begun_: what is there of the next line
  std::size_t at_ = 0;
};

// False when not all of it could be written.
bool write_output(std::string_view text);

}  // namespace arena::platform
