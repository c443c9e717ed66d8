#include "loaded_net.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

#include <unistd.h>

#include "reader/parser.h"

std::string write_program(const std::string& source) {
  // Test programs run side by side, so the name carries the process too.
  static int serial = 0;
  std::string path = testing::TempDir() + "norm_test_" + std::to_string(getpid()) + "_" +
                     std::to_string(++serial) + ".qv";
  std::ofstream(path) << source;
  return path;
}

LoadedNet::LoadedNet(const std::string& source, int skip_minimise, int bool_opt)
    : net(std::make_unique<NormNet>(&table, skip_minimise, bool_opt)) {
  const std::string path = write_program(source);
  EXPECT_EQ(QvParse(net.get(), &table, path.c_str()), 0) << source;
  std::remove(path.c_str());
}

Exp* LoadedNet::final(const char* name) { return net->final_exp(table.find("%s", name)); }

std::string LoadedNet::printed() {
  testing::internal::CaptureStdout();
  net->print();
  return testing::internal::GetCapturedStdout();
}

std::string LoadedNet::classes() {
  testing::internal::CaptureStdout();
  net->print_classes();
  return testing::internal::GetCapturedStdout();
}

std::string exp_text(Exp* e, const SymbolTable& table) {
  testing::internal::CaptureStdout();
  print_exp(e, table);
  return testing::internal::GetCapturedStdout();
}
