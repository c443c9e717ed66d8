#include "batch/batch_run.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "batch/batch_diagrams.h"
#include "batch/batch_inputs.h"
#include "batch/initial_inputs.h"
#include "batch/load_progress.h"
#include "batch/run_stats.h"
#include "engine/step_cycle.h"

namespace {

/// Headless: the trace is the only display.
struct TraceOnly : StepOutputs {
  void update() override {}
  void reset() override {}
};

/// Under --check, "showing" the outputs compares them with the recorded
/// ones and keeps the first difference.
class RecordedOutputs : public StepOutputs {
 public:
  explicit RecordedOutputs(const SimProgram& program) : program_(program) {}

  void expect(int step, std::vector<std::string_view> words) {
    step_ = step;
    expected_ = std::move(words);
  }
  void update() override {
    const size_t n = program_.output_items.size();
    if (expected_.size() != n) {
      difference_ = "step " + std::to_string(step_) + ": " + std::to_string(expected_.size()) +
                    " outputs recorded, the program has " + std::to_string(n);
      return;
    }
    char buffer[kValueTextSize];
    for (size_t i = 0; i < n && difference_.empty(); ++i) {
      const std::string_view actual = value_text(*program_.output_items[i], buffer);
      if (actual == expected_[i]) continue;
      difference_ = "step " + std::to_string(step_) + ": output '" +
                    program_.net->strings->text(program_.output_names[i]) + "' expected " +
                    std::string(expected_[i]) + ", got " + std::string(actual);
    }
  }
  void reset() override {}

  const std::string& difference() const { return difference_; }

 private:
  const SimProgram& program_;
  int step_ = 0;
  std::vector<std::string_view> expected_;
  std::string difference_;
};

bool read_lines(const char* path, std::vector<std::string>* lines) {
  std::ifstream file;
  if (path) {
    file.open(path);
    if (!file) return false;
  }
  std::istream& in = path ? static_cast<std::istream&>(file) : std::cin;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines->push_back(line);
  }
  return true;
}

/// The error lines a step record may hold between its inputs and outputs.
bool is_error_record(std::string_view text) {
  return text == "error Assertion takes on nil" || text == "error : Assertion takes on false" ||
         (text.starts_with("error Output \"") && text.ends_with("\" takes on nil"));
}

bool is_blank(std::string_view text) {
  return text.find_first_not_of(" \t\n\r\f\v") == std::string_view::npos;
}

/// The recorded output values of the step read at `line`: after the '#' of
/// that line, past any error lines. False when the record is cut short.
bool recorded_outputs(const std::vector<std::string>& lines, size_t line,
                      std::vector<std::string_view>* words) {
  std::string_view text = lines[line];
  const size_t hash = text.find('#');
  if (hash == std::string_view::npos) return false;
  text = text.substr(hash + 1);
  while (is_error_record(text)) {
    if (++line >= lines.size() || !lines[line].starts_with('#')) return false;
    text = std::string_view(lines[line]).substr(1);
  }
  *words = split_words(text);
  return true;
}

int run_steps(const BatchOptions& options) {
  SymbolTable table;
  LoadProgress progress;
  SimProgram program(options.program, &table, options.load);
  progress.done();
  InitialInputs inputs(program);
  TraceOnly shown;
  StepCycle cycle(program, inputs, shown);
  BatchDiagrams diagrams(options.vcd, options.svg);
  if (!diagrams.start(program, cycle)) return 1;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < options.steps; ++i) cycle.step();
  const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
  if (!diagrams.finish()) return 1;
  if (options.stats) print_run_stats(*program.net, options.steps, spent.count());
  return 0;
}

}  // namespace

int run_batch(const BatchOptions& options) {
  if (FILE* f = fopen(options.program, "r")) {
    fclose(f);
  } else {
    fprintf(stderr, "Can't open file '%s'\n", options.program);
    return 1;
  }
  if (options.steps >= 0) return run_steps(options);
  std::vector<std::string> lines;
  if (!read_lines(options.inputs, &lines)) {
    fprintf(stderr, "korvel-run: can't open inputs '%s'\n", options.inputs);
    return 1;
  }
  SymbolTable table;
  LoadProgress progress;
  SimProgram program(options.program, &table, options.load);
  progress.done();
  BatchInputs inputs(program);
  TraceOnly shown;
  RecordedOutputs recorded(program);
  if (!options.check) set_trace_stream(stdout);
  StepCycle cycle(program, inputs, options.check ? static_cast<StepOutputs&>(recorded) : shown);
  BatchDiagrams diagrams(options.vcd, options.svg);
  if (!diagrams.start(program, cycle)) return 1;
  cycle.trace_header();

  int n_checked = 0;
  for (size_t i = 0; i < lines.size(); ++i) {
    const std::string_view line = lines[i];
    if (line == "#reset") {
      cycle.reset_run();
      continue;
    }
    const std::string_view values = line.substr(0, line.find('#'));
    if (is_blank(values)) continue;
    inputs.set_line(static_cast<int>(i + 1), values);
    if (options.check) {
      std::vector<std::string_view> expected;
      if (!recorded_outputs(lines, i, &expected)) {
        fprintf(stderr, "line %zu: no recorded outputs for step %d\n", i + 1,
                cycle.step_number() + 1);
        return 1;
      }
      recorded.expect(cycle.step_number() + 1, std::move(expected));
    }
    const bool stepped = cycle.step();
    if (!options.check) continue;
    if (!stepped) {
      fprintf(stderr, "line %zu: %s\n", i + 1, inputs.problem());
      return 1;
    }
    if (!recorded.difference().empty()) {
      fprintf(stderr, "%s\n", recorded.difference().c_str());
      return 1;
    }
    ++n_checked;
  }
  if (!diagrams.finish()) return 1;
  if (options.check) printf("%d steps checked, all outputs agree\n", n_checked);
  return 0;
}
