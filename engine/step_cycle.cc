#include "engine/step_cycle.h"

#include <cstdio>

#include "support/diagnostics.h"

namespace {

/// Names separated by ", ", the empty list writing nothing.
void trace_names(const SymbolTable& strings, const std::vector<int>& names) {
  const char* separator = "";
  for (int name : names) {
    trace_printf("%s%s", separator, strings.text(name));
    separator = ", ";
  }
}

}  // namespace

const char* value_text(const EvalItem& item, char (&buffer)[kValueTextSize]) {
  switch (item.value_kind) {
    case VK_BOOL:
      snprintf(buffer, sizeof buffer, "%c", item.value.i ? 't' : 'f');
      return buffer;
    case VK_INT:
      snprintf(buffer, sizeof buffer, "%d", item.value.i);
      return buffer;
    case VK_REAL:
      snprintf(buffer, sizeof buffer, "%lf", item.value.d);
      return buffer;
    default:
      // An enumerated output that never had a value holds no name yet.
      return item.value.s ? item.value.s : "nil";
  }
}

StepCycle::StepCycle(SimProgram& program, StepInputs& inputs, StepOutputs& outputs)
    : program_(program), inputs_(inputs), outputs_(outputs) {}

void StepCycle::trace_header() {
  const SymbolTable& strings = *program_.net->strings;
  trace_printf("#program %s\n", strings.text(program_.net->node_name));
  trace_printf("#(");
  trace_names(strings, program_.input_names);
  trace_printf(") returns (");
  trace_names(strings, program_.output_names);
  trace_printf(")\n");
}

bool StepCycle::step() {
  if (const char* problem = inputs_.check()) {
    trace_printf("#error msg from inputs manager\n");
    trace_printf("#%s\n", problem);
    trace_printf("#aborted\n");
    for (StepObserver* o : observers_) o->aborted();
    return false;
  }
  program_.begin_step();
  trace_printf("#step %d\n", ++step_number_);
  trace_values(program_.input_items);
  for (size_t i = 0; i < program_.assert_items.size(); ++i) {
    program_.compute_assertion(i);
    EvalItem* a = program_.assert_items[i];
    if (a->is_bottom()) continue;
    if (a->status != 0) {
      trace_printf("#error Assertion takes on nil\n");
    } else if (!a->value.i) {
      trace_printf("#error : Assertion takes on false\n");
    }
  }
  for (size_t i = 0; i < program_.output_items.size(); ++i) {
    program_.compute_output(i);
    EvalItem* out = program_.output_items[i];
    // Unlike an assertion, an output undefined by a division by zero is
    // not reported: only a plain nil is.
    if (out->is_bottom() || (out->status & ST_DIV_ZERO) || out->status == 0) continue;
    trace_printf("#error Output \"%s\" takes on nil\n",
                 program_.net->strings->text(program_.output_names[i]));
  }
  outputs_.update();
  trace_printf("#");
  trace_values(program_.output_items);
  trace_printf("\n");
  for (StepObserver* o : observers_) o->stepped(step_number_);
  program_.end_step();
  return true;
}

void StepCycle::reset_run() {
  trace_printf("#reset\n");
  program_.reset_eval();
  inputs_.reset();
  outputs_.reset();
  step_number_ = 0;
  for (StepObserver* o : observers_) o->was_reset();
}

void StepCycle::trace_values(const std::vector<EvalItem*>& items) {
  if (!trace_stream()) return;
  char buffer[kValueTextSize];
  for (const EvalItem* item : items) trace_printf("%s  ", value_text(*item, buffer));
}
