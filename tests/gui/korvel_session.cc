#include "tests/gui/korvel_session.h"

#include <cstdlib>

std::string program_path(const char* name) {
  return std::string(KORVEL_GUI_PROGRAMS) + "/" + name + ".qv";
}

ScopedEnv::ScopedEnv(const char* name, const std::string& value)
    : name_(name), had_(std::getenv(name) != nullptr) {
  if (had_) old_ = std::getenv(name);
  setenv(name, value.c_str(), 1);
}

ScopedEnv::~ScopedEnv() {
  if (had_) {
    setenv(name_, old_.c_str(), 1);
  } else {
    unsetenv(name_);
  }
}

Finished korvel_run(std::vector<std::string> args, const std::string& text) {
  const ProgramFile file(text);
  args.insert(args.begin(), KORVEL_RUN_BINARY);
  args.push_back(file.path());
  ChildProcess run(args);
  const int status = run.wait_end(kTimeoutMs);
  return {status, run.out(), run.err()};
}

void KorvelSession::open() {
  ASSERT_TRUE(screen.ok()) << "no X display with XTest";
  screen.point_off();
  ASSERT_TRUE(process_.wait_for_output(") returns (", kTimeoutMs)) << process_.err();
  const std::string& header = trace();
  ASSERT_TRUE(header.starts_with("#program ")) << header;
  const std::string node = header.substr(9, header.find('\n') - 9);
  main = screen.wait_for_window("korvel", kTimeoutMs);
  inputs = screen.wait_for_window(node + "-inputs", kTimeoutMs);
  outputs = screen.wait_for_window(node + "-outputs", kTimeoutMs);
  ASSERT_TRUE(main && inputs && outputs) << process_.err();
  ASSERT_EQ(screen.items(main).size(), 2u);
}

void KorvelSession::enter(int input, const std::string& text, bool ret) {
  screen.point_at(field(input));
  screen.key("a", true);
  screen.key("k", true);
  screen.type(text);
  if (ret) screen.key("Return");
}

bool KorvelSession::wait_lines(size_t count) {
  for (int i = 0; i < kTimeoutMs / 20; i++) {
    size_t lines = 0;
    for (char c : trace()) lines += c == '\n';
    if (lines >= count) return true;
    process_.wait_for_output("\n\n", 20);  // reads what came, never matches
  }
  return false;
}
