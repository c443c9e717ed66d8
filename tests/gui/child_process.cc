#include "tests/gui/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

namespace {

using Clock = std::chrono::steady_clock;

int remaining_ms(Clock::time_point deadline) {
  auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
  return left.count() > 0 ? static_cast<int>(left.count()) : 0;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& argv) {
  int out_pipe[2], err_pipe[2];
  if (pipe2(out_pipe, O_CLOEXEC) != 0 || pipe2(err_pipe, O_CLOEXEC) != 0) std::abort();
  pid_ = fork();
  if (pid_ == 0) {
    dup2(out_pipe[1], STDOUT_FILENO);
    dup2(err_pipe[1], STDERR_FILENO);
    std::vector<char*> args;
    for (const std::string& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
    args.push_back(nullptr);
    execv(args[0], args.data());
    _exit(127);
  }
  close(out_pipe[1]);
  close(err_pipe[1]);
  out_fd_ = out_pipe[0];
  err_fd_ = err_pipe[0];
}

ChildProcess::~ChildProcess() {
  if (pid_ > 0) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
  if (out_fd_ >= 0) close(out_fd_);
  if (err_fd_ >= 0) close(err_fd_);
}

bool ChildProcess::read_some(int timeout_ms) {
  pollfd fds[2] = {{out_fd_, POLLIN, 0}, {err_fd_, POLLIN, 0}};
  std::string* sinks[2] = {&out_, &err_};
  int* owners[2] = {&out_fd_, &err_fd_};
  if (out_fd_ < 0 && err_fd_ < 0) return false;
  if (poll(fds, 2, timeout_ms) <= 0) return true;
  for (int i = 0; i < 2; i++) {
    if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
    char buffer[4096];
    ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
    if (n > 0) {
      sinks[i]->append(buffer, n);
    } else {
      close(fds[i].fd);
      *owners[i] = -1;
    }
  }
  return true;
}

bool ChildProcess::wait_for_output(const std::string& text, int timeout_ms) {
  Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(timeout_ms);
  while (out_.find(text) == std::string::npos) {
    if (out_fd_ < 0 || remaining_ms(deadline) == 0) return false;
    read_some(remaining_ms(deadline));
  }
  return true;
}

int ChildProcess::wait_end(int timeout_ms) {
  Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(timeout_ms);
  while (remaining_ms(deadline) > 0 && read_some(remaining_ms(deadline))) {
  }
  // The pipes close as the child exits; its status follows shortly after.
  int status = 0;
  while (waitpid(pid_, &status, WNOHANG) != pid_) {
    if (remaining_ms(deadline) == 0) {
      kill(pid_, SIGKILL);
      waitpid(pid_, &status, 0);
      pid_ = -1;
      return -1;
    }
    usleep(5000);
  }
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
