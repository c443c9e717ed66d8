#include "batch/batch_diagrams.h"

#include <cstdio>

#include "history/svg_chronogram.h"

BatchDiagrams::BatchDiagrams(const char* vcd_path, const char* svg_path)
    : vcd_path_(vcd_path), svg_path_(svg_path) {}

bool BatchDiagrams::open(const char* path, FileHandle* file) {
  if (!path) return true;
  file->reset(std::fopen(path, "w"));
  if (*file) return true;
  std::fprintf(stderr, "korvel-run: can't write '%s'\n", path);
  return false;
}

bool BatchDiagrams::start(SimProgram& program, StepCycle& cycle) {
  if (!open(vcd_path_, &vcd_file_) || !open(svg_path_, &svg_file_)) return false;
  if (!vcd_path_ && !svg_path_) return true;
  // The VCD needs only the newest tick; the drawing needs its whole window.
  history_.emplace(program, svg_path_ ? kSvgWindowTicks : 1);
  cycle.observe(&*history_);
  if (vcd_file_) {
    // Big writes: a long run changes some value at almost every step.
    std::setvbuf(vcd_file_.get(), nullptr, _IOFBF, 1 << 20);
    vcd_.emplace(vcd_file_.get(), *history_);
    history_->listen(&*vcd_);
  }
  return true;
}

bool BatchDiagrams::close(const char* path, FileHandle* file) {
  if (!*file) return true;
  const bool ok = !std::ferror(file->get()) && std::fclose(file->release()) == 0;
  if (!ok) std::fprintf(stderr, "korvel-run: can't write '%s'\n", path);
  return ok;
}

bool BatchDiagrams::finish() {
  if (vcd_) vcd_->finish(*history_);
  if (svg_file_) write_svg(svg_file_.get(), *history_);
  const bool vcd_ok = close(vcd_path_, &vcd_file_);
  return close(svg_path_, &svg_file_) && vcd_ok;
}
