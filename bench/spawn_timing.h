// Timing a program as a user starts it: a fresh process of the executable, its standard error
// sent away.
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <chrono>
#include <string>
#include <vector>

extern char** environ;

namespace zorvel::bench {

// Starts the program (args[0] the executable); its process id, or 0 when it could not start.
inline pid_t Spawn(std::vector<std::string> args, bool quietOutput = false) {
  std::vector<char*> argv;
  for (auto& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  // What a program says on its standard error would bury the figures.
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  posix_spawn_file_actions_addopen(&quiet, 2, "/dev/null", O_WRONLY, 0);
  if (quietOutput) posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", O_WRONLY, 0);
  pid_t pid = 0;
  const int spawned = posix_spawn(&pid, argv[0], &quiet, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&quiet);
  return spawned == 0 ? pid : 0;
}

// One run, from spawning the program to its end; 0 when it did not end with `exitCode`.
inline double RunSeconds(std::vector<std::string> args, int exitCode = 0) {
  const auto start = std::chrono::steady_clock::now();
  const pid_t pid = Spawn(std::move(args), true);
  if (pid == 0) return 0;
  int status = 0;
  waitpid(pid, &status, 0);
  const double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return WIFEXITED(status) && WEXITSTATUS(status) == exitCode ? s : 0;
}

}  // namespace zorvel::bench
