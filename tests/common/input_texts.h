// Texts typed into an input field or written on a batch line, with what
// both front ends must make of them: the value as the trace writes it, or
// a refusal. The window's fields, the batch runner and their shared reader
// are all held to this one table.
#pragma once

enum class Field { kInt, kReal };

struct InputText {
  const char* text;
  Field field;
  /// "%d" or "%lf" of the value read; null when the text is refused.
  const char* read;
};

inline constexpr InputText kInputTexts[] = {
    {"12abc", Field::kInt, "12"},
    {"  7", Field::kInt, "7"},
    {"+3", Field::kInt, "3"},
    {"-0", Field::kInt, "0"},
    {"abc", Field::kInt, nullptr},
    {"", Field::kInt, nullptr},
    {"-", Field::kInt, nullptr},
    {"+-1", Field::kInt, nullptr},
    {"0x10", Field::kInt, "0"},
    {"1e3", Field::kInt, "1"},
    {"2147483647", Field::kInt, "2147483647"},
    // Beyond 32 bits only the low 32 bits are kept...
    {"2147483648", Field::kInt, "-2147483648"},
    {"-2147483649", Field::kInt, "2147483647"},
    {"4294967297", Field::kInt, "1"},
    {"99999999999", Field::kInt, "1215752191"},
    // ...of the nearest 64-bit number.
    {"99999999999999999999", Field::kInt, "-1"},
    {"1e3", Field::kReal, "1000.000000"},
    {".5", Field::kReal, "0.500000"},
    {"-2.5e1x", Field::kReal, "-25.000000"},
    // A real reads as "%lf" does, which is not always the longest number
    // at the front of the text.
    {"0x", Field::kReal, nullptr},
    {"0x1p4", Field::kReal, "16.000000"},
    {"0x1p3", Field::kReal, "8.000000"},
    {"1e", Field::kReal, "1.000000"},
    {"1e+", Field::kReal, "1.000000"},
    {".", Field::kReal, nullptr},
    {"1.5e3x", Field::kReal, "1500.000000"},
    {"-inf", Field::kReal, "-inf"},
    {"1,5", Field::kReal, "1.000000"},
    {"nan", Field::kReal, "nan"},
    {"inf", Field::kReal, "inf"},
    {"1e999", Field::kReal, "inf"},
    {"-", Field::kReal, nullptr},
    {"e5", Field::kReal, nullptr},
    {"", Field::kReal, nullptr},
    {" .25", Field::kReal, "0.250000"},
};

/// Whether the text can be one word of a batch line.
inline bool is_one_word(const char* text) {
  if (!*text) return false;
  for (; *text; ++text) {
    if (*text == ' ' || *text == '\t') return false;
  }
  return true;
}
