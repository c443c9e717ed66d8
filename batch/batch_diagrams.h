// The timing diagrams a batch run may write beside its trace: a VCD file
// written as the steps go, an SVG chronogram written at the end. Neither
// changes a byte of the trace.
#pragma once

#include <memory>
#include <optional>

#include "engine/step_cycle.h"
#include "history/run_history.h"
#include "history/vcd_writer.h"
#include "support/file_handle.h"

class BatchDiagrams {
 public:
  /// Null paths write nothing.
  BatchDiagrams(const char* vcd_path, const char* svg_path);

  /// Opens the files and starts watching `cycle`; false, after a message on
  /// standard error, when a file cannot be written.
  bool start(SimProgram& program, StepCycle& cycle);
  /// Writes what is left; false, after a message, when a write failed.
  bool finish();

 private:
  bool open(const char* path, FileHandle* file);
  bool close(const char* path, FileHandle* file);

  const char* vcd_path_;
  const char* svg_path_;
  FileHandle vcd_file_;
  FileHandle svg_file_;
  std::optional<RunHistory> history_;
  std::optional<VcdWriter> vcd_;
};
