// Loads qv source text into a NormNet for the tests, the way the loader
// does: parse into a fresh net, then normalise and minimise it.
#pragma once

#include <memory>
#include <string>

#include "norm/net_norm.h"
#include "support/string_table.h"
#include "tests/common/test_io.h"

struct LoadedNet {
  /// Parses `source` (the parse must succeed) without building.
  explicit LoadedNet(const std::string& source, const LoadOptions& options = {});

  /// The name's final node after `net->build()`.
  Exp* final(const char* name);
  /// What `NormNet::print` writes.
  std::string printed() {
    return stdout_of([&] { net->print(); });
  }
  /// What `NormNet::print_classes` writes.
  std::string classes() {
    return stdout_of([&] { net->print_classes(); });
  }

  SymbolTable table;
  std::unique_ptr<NormNet> net;
};
