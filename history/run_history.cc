#include "history/run_history.h"

#include <cstdio>
#include <cstring>

namespace {

Sample sample_of(EvalItem& item) {
  if (item.is_bottom()) return {item.value, SampleState::kAbsent};
  if (item.status == 0) return {item.value, SampleState::kDefined};
  // An undefined value that involved a division by zero counts as one, as
  // the trace does when it leaves such an output unreported.
  return {item.value, (item.status & ST_DIV_ZERO) ? SampleState::kDivZero : SampleState::kNil};
}

}  // namespace

RunHistory::RunHistory(SimProgram& program, size_t window)
    : program_(program),
      node_name_(program.net->strings->text(program.net->node_name)),
      interface_(describe_interface(program)),
      window_(window ? window : 1) {
  for (const Port& p : interface_.inputs) signals_.push_back({&p, false});
  for (const Port& p : interface_.outputs) signals_.push_back({&p, true});
  ticks_.resize(window_);
  samples_.resize(window_ * signals_.size());
}

Sample* RunHistory::append(int step) {
  const size_t t = n_ticks_++;
  ticks_[t % window_] = {step, reset_pending_};
  reset_pending_ = false;
  return &samples_[(t % window_) * signals_.size()];
}

void RunHistory::stepped(int step) {
  Sample* row = append(step);
  // An input holds what its front end stored; its status only says whether
  // the step has read it yet.
  for (EvalItem* item : program_.input_items) *row++ = {item->value, SampleState::kDefined};
  for (EvalItem* item : program_.output_items) *row++ = sample_of(*item);
  for (HistoryListener* l : listeners_) l->appended(*this, n_ticks_ - 1);
}

void RunHistory::aborted() {
  Sample* row = append(0);
  for (size_t i = 0; i < signals_.size(); ++i) row[i] = {{}, SampleState::kAbsent};
  for (HistoryListener* l : listeners_) l->appended(*this, n_ticks_ - 1);
}

void RunHistory::was_reset() {
  reset_pending_ = true;
  for (HistoryListener* l : listeners_) l->reset_seen(*this);
}

bool same_sample(PortKind kind, const Sample& a, const Sample& b) {
  if (a.state != b.state) return false;
  if (a.state != SampleState::kDefined) return true;
  switch (kind) {
    case PortKind::kReal:
      return std::memcmp(&a.value.d, &b.value.d, sizeof a.value.d) == 0;
    case PortKind::kNamed:
      return a.value.s == b.value.s;
    default:
      return a.value.i == b.value.i;
  }
}

std::string sample_label(PortKind kind, const Sample& s) {
  char buf[64];
  switch (kind) {
    case PortKind::kReal:
      std::snprintf(buf, sizeof buf, "%g", s.value.d);
      return buf;
    case PortKind::kNamed:
      return s.value.s ? s.value.s : "nil";
    default:
      std::snprintf(buf, sizeof buf, "%d", s.value.i);
      return buf;
  }
}
