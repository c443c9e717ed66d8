// The loaded program: parse a qv file into a normalised, minimised net and
// collect the node's interface with the final expression of each entry.
#pragma once

#include <memory>
#include <vector>

#include "norm/net_norm.h"

class PNetInterface {
 public:
  /// What an output, local or assertion expression stands for.
  struct Record {
    Record() = default;
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;
    ~Record();

    /// 1-based output positions of this expression, the latest first.
    IndexList* output_positions = nullptr;
    IndexList* local_positions = nullptr;
    /// 1-based position of the latest assertion on it; 0 if none.
    int assert_no = 0;
  };

  /// Loads the file; a failure ends the process with status 1.
  PNetInterface(const char* path, SymbolTable* table, const LoadOptions& options = {});
  PNetInterface(const PNetInterface&) = delete;
  PNetInterface& operator=(const PNetInterface&) = delete;
  virtual ~PNetInterface();

  /// 0 on success; 1, with "syntax errors..." on standard error, when the
  /// parse fails.
  int build(const char* path, SymbolTable* table, const LoadOptions& options);
  void add_output(Exp* e, int name);
  void add_local(Exp* e, int name);
  void add_assert(Exp* e);
  /// The record of `e`, or null when it is none of the above. Worked out
  /// from the collected nodes when asked: nothing needs it to run, and a
  /// record per local would weigh on programs with a million of them.
  std::unique_ptr<Record> record(const Exp* e) const;

  std::unique_ptr<NormNet> net;
  int n_outputs = 0;
  int n_inputs = 0;
  int n_asserts = 0;
  int n_locals = 0;
  std::vector<Exp*> output_nodes;
  std::vector<Exp*> input_nodes;
  std::vector<Exp*> local_nodes;
  std::vector<int> output_names;
  std::vector<int> input_names;
  std::vector<int> local_names;
  std::vector<Exp*> assert_nodes;
};
