#include "support/phase_clock.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

std::vector<std::string> recorded() {
  std::vector<std::string> names;
  for (const PhaseTime& t : phase_times()) {
    names.push_back(t.name);
    EXPECT_GE(t.seconds, 0.0);
  }
  return names;
}

// Each boundary ends the phase before it; the watcher sees the beginnings
// and a final end, and the times come in the order the phases ran. A new
// load forgets the last, so a process loading many programs keeps one.
TEST(PhaseClockTest, BoundariesEndPhasesInOrder) {
  std::vector<std::string> seen;
  watch_phases([&seen](const char* name) { seen.push_back(name ? name : "(end)"); });
  begin_first_phase("parse");
  begin_phase("normalise");
  end_phase();
  end_phase();
  begin_phase("build");
  end_phase();
  watch_phases({});
  begin_phase("unwatched");

  EXPECT_EQ(seen, (std::vector<std::string>{"parse", "normalise", "(end)", "build", "(end)"}));
  EXPECT_EQ(recorded(), (std::vector<std::string>{"parse", "normalise", "build"}));
  begin_first_phase("parse");
  end_phase();
  EXPECT_EQ(recorded(), std::vector<std::string>{"parse"});
}
