#include "engine/input_text.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/common/input_texts.h"

namespace {

std::string shown(Field field, const EvalValue& value) {
  char text[400];
  if (field == Field::kInt) {
    std::snprintf(text, sizeof text, "%d", value.i);
  } else {
    std::snprintf(text, sizeof text, "%lf", value.d);
  }
  return text;
}

// The window reads its fields with the two number readers, the batch
// runner its words through read_word: both must agree with the table, and
// a refused text must leave the value as it was.
TEST(InputText, NumbersReadAsTheTableSaysInBothFrontEnds) {
  for (const InputText& t : kInputTexts) {
    SCOPED_TRACE(std::string("'") + t.text + "'");
    const EvalValue before = t.field == Field::kInt ? EvalValue{.i = 42} : EvalValue{.d = 4.5};
    EvalValue field = before;
    const bool read =
        t.field == Field::kInt ? read_int(t.text, &field.i) : read_real(t.text, &field.d);
    EXPECT_EQ(read, t.read != nullptr);
    EXPECT_EQ(shown(t.field, field), t.read ? t.read : shown(t.field, before));
    if (!is_one_word(t.text)) continue;
    EvalValue word = before;
    const Port port{
        "v", t.field == Field::kInt ? PortKind::kInt : PortKind::kReal, "", false, {}, &word};
    EXPECT_EQ(read_word(port, t.text), read);
    EXPECT_EQ(shown(t.field, word), shown(t.field, field));
  }
}

// The value must be the port's own text, not the word's, since the engine
// compares names as pointers.
TEST(InputText, NamedWordsTakeTheChoiceTextItself) {
  const char* dark = "dark";
  const char* red = "red";
  const char* green = "green";
  EvalValue value{.s = nullptr};
  const Port port{"c", PortKind::kNamed, "colour", true, {dark, red, green}, &value};
  for (const char* name : {dark, red, green}) {
    EXPECT_TRUE(read_word(port, std::string(name))) << name;
    EXPECT_EQ(value.s, name);
  }
  for (std::string_view word : {std::string_view("blue"), std::string_view("re"),
                                std::string_view("red\0x", 5), std::string_view("")}) {
    EXPECT_FALSE(read_word(port, word)) << word;
    EXPECT_EQ(value.s, green);
  }
}

}  // namespace
