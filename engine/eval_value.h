// The value field of an evaluation item, shared by the engine, which computes
// it, and by the front ends, which write inputs into it and read outputs.
#pragma once

#include <cstdint>

/// Value kinds of an item: what its value field holds.
enum ValueKind { VK_BOOL = 1, VK_INT = 2, VK_REAL = 3, VK_EXTERN = 4 };

/// Status bits of an item; 0 means the value is defined.
enum : unsigned { ST_NIL = 1, ST_DIV_ZERO = 2 };

union EvalValue {
  /// bool (0 or 1) and int.
  int32_t i;
  double d;
  /// Enumerated and extern values: the constant's name text as interned,
  /// so two values are equal exactly when the pointers are.
  const char* s;
};
