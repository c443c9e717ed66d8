// A program run as a child process, its standard output and error
// collected through pipes.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

class ChildProcess {
 public:
  /// Starts `argv[0]` with these arguments.
  explicit ChildProcess(const std::vector<std::string>& argv);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  /// Kills the child if it is still running.
  ~ChildProcess();

  /// Reads until standard output holds `text` somewhere; false on a
  /// timeout or when the child closed its output first.
  bool wait_for_output(const std::string& text, int timeout_ms);
  /// Reads everything up to the child's end and returns its exit status,
  /// or -1 after killing a child that outlived the timeout (or died of a
  /// signal).
  int wait_end(int timeout_ms);

  const std::string& out() const { return out_; }
  const std::string& err() const { return err_; }

 private:
  /// Reads what is there within `timeout_ms`; false once both pipes are
  /// closed.
  bool read_some(int timeout_ms);

  pid_t pid_ = -1;
  int out_fd_ = -1;
  int err_fd_ = -1;
  std::string out_;
  std::string err_;
};
