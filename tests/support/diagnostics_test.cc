#include "support/diagnostics.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/common/test_io.h"

// The counters and the spinner are process-wide: every test starts afresh,
// so the binary passes when its tests are repeated.
class DiagnosticsTest : public testing::Test {
 protected:
  void SetUp() override { reset_diagnostics(); }
};

// Both headers with a message are in every refusal of the process cases;
// an empty message still ends its line.
TEST_F(DiagnosticsTest, FatalReportWithAnEmptyMessage) {
  EXPECT_ENDS(error("%s", ""), 1, "^  Error :\n\n$");
}

TEST_F(DiagnosticsTest, WarningGoesOn) {
  EXPECT_EQ(stderr_of([] { warning("careful %s", "now"); }), "  Warning :\ncareful now\n");
}

TEST_F(DiagnosticsTest, CountedErrorsStopTogether) {
  EXPECT_EQ(error_stop(), 0);
  EXPECT_EQ(stderr_of([] {
              EXPECT_EQ(count_error("e%d\n", 1), 3);
              count_error("e2\n");
              count_error("e3\n");
            }),
            "e1\ne2\ne3\n");
  EXPECT_EQ(error_count(), 3);
  EXPECT_ENDS(error_stop(), 1, "\\*\\*\\* 3 Errors stop\n$");
}

TEST_F(DiagnosticsTest, VerboseLevelsAndControls) {
  set_verbose_level(0);
  EXPECT_EQ(stderr_of([] { EXPECT_EQ(verbose("quiet"), 0); }), "");

  set_verbose_level(1);
  EXPECT_EQ(stderr_of([] {
              verbose("\rabc%d", 1);
              verbose_at(2, "too deep");
              verbose_at(1, "ok");
              set_show_controls();
              verbose("\rabc");
              verbose("\bdef");
              verbose("ghi");
              set_show_controls(false);
            }),
            "\rabc1ok \n^Rabc\n^Bdefghi");
  set_verbose_level(0);
}

TEST_F(DiagnosticsTest, SpinnerIsSilentOffATerminal) {
  set_verbose_level(1);
  EXPECT_EQ(stderr_of([] {
              for (int i = 0; i < 500; ++i) spin(2);
            }),
            "");
  set_verbose_level(0);
}

TEST_F(DiagnosticsTest, SpinnerCyclesItsGlyphs) {
  set_verbose_level(1);
  const auto spins = [](int n) {
    return stderr_of([n] {
      for (int i = 0; i < n; ++i) spin_step(100, true);
    });
  };
  EXPECT_EQ(spins(99), "");
  EXPECT_EQ(spins(1), "|\b");
  EXPECT_EQ(spins(100), "");
  EXPECT_EQ(spins(1 + 3 * 101), "/\b-\b\\\b|\b");
  set_verbose_level(0);
}

TEST_F(DiagnosticsTest, TraceOnlyWithAStream) {
  set_trace_stream(nullptr);
  std::string err;
  EXPECT_EQ(stdout_of([&] { err = stderr_of([] { trace_printf("#step %d\n", 1); }); }), "");
  EXPECT_EQ(err, "");

  FILE* f = tmpfile();
  ASSERT_NE(f, nullptr);
  set_trace_stream(f);
  EXPECT_EQ(trace_printf("#step %d\n", 2), 0);
  set_trace_stream(nullptr);
  EXPECT_EQ(file_text(f), "#step 2\n");
  fclose(f);
}
