#include "norm/operand_codes.h"

#include <limits>

#include "norm/net_norm.h"
#include "support/diagnostics.h"

int* OperandCodes::add(size_t count) {
  const size_t at = codes_.size();
  if (count > std::numeric_limits<uint32_t>::max() - at) {
    internal_error("file 'operand_codes':\nOperandCodes : too many operands\n");
  }
  codes_.resize(at + count);
  begin_.push_back(static_cast<uint32_t>(at + count));
  return codes_.data() + at;
}

int OperandCodes::code(NormNet& net, Exp* operand) {
  Exp* target = net.through_ref(operand);
  if (target->class_no == 0) {
    leaves_.push_back(target);
    target->class_no = -static_cast<int>(leaves_.size());
  }
  return target->class_no;
}

void OperandCodes::add(NormNet& net, const Exp* node) {
  int* codes = add(node->operands.size());
  for (Exp* o : node->operands) *codes++ = code(net, o);
}

void OperandCodes::finish() {
  for (Exp* leaf : leaves_) leaf->class_no = 0;
}

void OperandCodes::reserve(size_t entries, size_t codes) {
  begin_.reserve(entries + 1);
  codes_.reserve(codes);
}
