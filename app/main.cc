#include "app/korvel_args.h"
#include "app/run.h"

int main(int argc, char** argv) {
  korvelArgs args(argc, argv);
  if (args.input_file_name()) {
    run(argc, argv, args.input_file_name());
  } else {
    args.usage();
  }
  return 0;
}
