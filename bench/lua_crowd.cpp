#include "bench/lua_crowd.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

namespace bench {

LuaCrowd::LuaCrowd(int count) {
  if (std::system("command -v luajit >/dev/null 2>&1") != 0) return;
  std::signal(SIGPIPE, SIG_IGN);
  int to_child[2], from_child[2];
  if (pipe(to_child) != 0 || pipe(from_child) != 0) return;
  process_ = fork();
  if (process_ == 0) {
    dup2(to_child[0], STDIN_FILENO);
    dup2(from_child[1], STDOUT_FILENO);
    for (const int end : {to_child[0], to_child[1], from_child[0], from_child[1]}) close(end);
    execlp("luajit", "luajit", ARENA_SOURCE "/bench/crowd.lua", std::to_string(count).c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  close(to_child[0]);
  close(from_child[1]);
  requests_ = fdopen(to_child[1], "w");
  times_ = fdopen(from_child[0], "r");
}

LuaCrowd::~LuaCrowd() {
  if (requests_ == nullptr) return;
  std::fclose(requests_);
  std::fclose(times_);
  waitpid(process_, nullptr, 0);
}

double LuaCrowd::step() {
  double time = 0;
  if (requests_ == nullptr) return 0;
  std::fputs("step\n", requests_);
  std::fflush(requests_);
  return std::fscanf(times_, "%lf", &time) == 1 ? time : 0;
}

}  // namespace bench
