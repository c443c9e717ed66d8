// Loads qv source text into a NormNet for the tests, the way the loader
// does: parse into a fresh net, then normalise and minimise it.
#pragma once

#include <memory>
#include <string>

#include "norm/net_norm.h"
#include "support/string_table.h"

/// Writes `source` to a fresh file under the test temporary folder.
std::string write_program(const std::string& source);

struct LoadedNet {
  /// Parses `source` (the parse must succeed) without building.
  explicit LoadedNet(const std::string& source, int skip_minimise = 0, int bool_opt = 0);

  /// The name's final node after `net->build()`.
  Exp* final(const char* name);
  /// What `NormNet::print` writes.
  std::string printed();
  /// What `NormNet::print_classes` writes.
  std::string classes();

  SymbolTable table;
  std::unique_ptr<NormNet> net;
};

/// What print_exp writes for `e`.
std::string exp_text(Exp* e, const SymbolTable& table);
