#pragma once
// What another program says on its standard output, line by line, while it runs.
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace arena::platform {

class ChildOutput {
 public:
  // Starts the program; its standard error is this one's, its input is empty. Null when it cannot be started.
  static std::unique_ptr<ChildOutput> start(const std::filesystem::path& program, const std::vector<std::string>& arguments);
  // Ends the program if it still runs.
  ~ChildOutput();
  ChildOutput(const ChildOutput&) = delete;
  ChildOutput& operator=(const ChildOutput&) = delete;

  // The next line without its end; false behind the last one.
  bool next(std::string& line);
  // Everything up to the end.
  std::string rest();
  // Waits for the program's end: its exit status; -1 when it was ended from outside.
  int wait();

 private:
  struct Process;
  explicit ChildOutput(std::unique_ptr<Process> process);
  bool read_more();
  std::unique_ptr<Process> process_;
  std::string buffer_;
  std::size_t at_ = 0;
};

}  // namespace arena::platform
