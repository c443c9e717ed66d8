// The value field of an evaluation item, shared by the engine, which computes
// it, and by the front ends, which write inputs into it and read outputs.
#pragma once

#include <bit>
#include <cstdint>

/// Value kinds of an item: what its value field holds.
enum ValueKind { VK_BOOL = 1, VK_INT = 2, VK_REAL = 3, VK_EXTERN = 4 };

/// Status bits of an item; 0 means the value is defined.
enum : unsigned { ST_NIL = 1, ST_DIV_ZERO = 2 };

/// The field holds the member of its item's own kind, and only that member
/// is ever read or written through the union.
union EvalValue {
  /// bool (0 or 1) and int.
  int32_t i;
  double d;
  /// Enumerated and extern values: the constant's name text as interned,
  /// so two values are equal exactly when the pointers are. A value made
  /// with none starts as this one, null, which sets the whole word: `{}`
  /// alone would set only `i`, the first member, and leave a name read
  /// before any value its upper half from whatever the memory held.
  const char* s = nullptr;
};

// An item may read an operand of another kind: types are not checked, the
// builder picks some classes by one operand's type ("mod" on reals, "=" by
// its second operand), and the minimal network merges nodes of different
// types. The field is one 8-byte word, a 32-bit value in its low half, so
// such a read is done on the bits, and defined as follows:
//
//   read as \ held      bool, int            real                 name
//   bool, int           the value            low 32 bits of the   0
//                                            double's pattern
//   real                the double whose     the value            0.0
//                       low half is the
//                       value, high half 0
//   name                no name (null)       no name              the value
//
// A name's bits are an address, which would make a trace differ from run
// to run, so it reads as zero; a number never reads as a name, so nothing
// dereferences a pointer made of it.

inline int32_t as_int(int held, const EvalValue& v) {
  switch (held) {
    case VK_BOOL:
    case VK_INT:
      return v.i;
    case VK_REAL:
      return static_cast<int32_t>(static_cast<uint32_t>(std::bit_cast<uint64_t>(v.d)));
    default:
      return 0;
  }
}

inline double as_real(int held, const EvalValue& v) {
  switch (held) {
    case VK_BOOL:
    case VK_INT:
      return std::bit_cast<double>(static_cast<uint64_t>(static_cast<uint32_t>(v.i)));
    case VK_REAL:
      return v.d;
    default:
      return 0.0;
  }
}

inline const char* as_name(int held, const EvalValue& v) {
  return held == VK_EXTERN ? v.s : nullptr;
}
