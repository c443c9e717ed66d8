#include "app/korvel_args.h"
#include "app/run.h"
#include "support/diagnostics.h"

int main(int argc, char** argv) {
  try {
    korvelArgs args(argc, argv);
    if (args.input_file_name()) {
      run(argc, argv, args.input_file_name());
    } else {
      args.usage();
    }
  } catch (const ProcessEnd& end) {
    return end.status;
  }
  return 0;
}
