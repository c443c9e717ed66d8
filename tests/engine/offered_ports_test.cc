#include "engine/offered_ports.h"

#include <gtest/gtest.h>

#include "tests/common/test_io.h"

namespace {

EvalValue value;

Port port(const char* name, PortKind kind, const char* type, std::vector<const char*> constants) {
  return Port{name, kind, type, kind == PortKind::kNamed, std::move(constants), &value};
}

const Port kGear = port("g", PortKind::kNamed, "gear", {"low", "high"});
const Port kMode = port("m", PortKind::kNamed, "mode", {"off"});
// An extern type, or an enumeration, with no user constant to choose.
const Port kHandle = port("h", PortKind::kNamed, "handle", {});
const Port kCount = port("k", PortKind::kInt, "int", {});

TEST(OfferedPorts, NamedInputsAreWarnedAboutInOrderAndOutputsSilently) {
  const ProgramInterface described{{kCount, kGear, kMode}, {kGear, kCount}};
  const Ending ending = ending_of([&] { check_offered_ports(described); });
  EXPECT_EQ(ending.status, -1);
  EXPECT_EQ(ending.err,
            "Warning, external type \"gear\" interpreted as enumerate\n"
            "Warning, external type \"mode\" interpreted as enumerate\n");
}

// The window refuses as it builds: inputs before the refused one have been
// warned about, those after it have not.
TEST(OfferedPorts, TheFirstTypeWithoutConstantsEndsTheProcess) {
  const ProgramInterface refused_input{{kGear, kHandle, kMode}, {}};
  EXPECT_ENDS(check_offered_ports(refused_input), 1,
              testing::StrEq("Warning, external type \"gear\" interpreted as enumerate\n"
                             "Sorry, type \"handle\" not implemented\n"));
  const ProgramInterface refused_output{{kMode}, {kCount, kHandle, kGear}};
  EXPECT_ENDS(check_offered_ports(refused_output), 1,
              testing::StrEq("Warning, external type \"mode\" interpreted as enumerate\n"
                             "Sorry, type \"handle\" not implemented\n"));
}

}  // namespace
