#include "QXSystem/QXNamespace.h"

#include <gtest/gtest.h>

namespace QXSystem {
namespace {

const QXNamespaceInterface measures("Measure", QXNamespaceKind::Enumeration,
                                    {{"First", 1, "the first"}, {"Second", 2, ""}, {"Third", 3, ""}});
// Not in the order of the bits, as published sets need not be.
const QXNamespaceInterface flags("Flag", QXNamespaceKind::Mask,
                                 {{"One", 1, ""}, {"Big", 4096, ""}, {"Two", 2, ""}});

TEST(NamespaceTest, EnumerationConvertsBothWaysAndCombinesNothing) {
  EXPECT_EQ(measures.GetNamespaceName(), "Measure");
  for (const QXNamespacePrim& entry : measures.GetEntries()) {
    EXPECT_EQ(measures.GetName(entry.value, "?"), entry.name);
    EXPECT_EQ(measures.GetValue(entry.name, 99), entry.value);
    EXPECT_TRUE(measures.IsValid(entry.name));
  }
  EXPECT_EQ(measures.GetName(0, "?"), "?");
  EXPECT_EQ(measures.GetName(4, "?"), "?");
  for (const char* name : {"", "first", "First|Second", "First ", "Fourth"}) {
    EXPECT_EQ(measures.GetValue(name, 99), 99u) << name;
    EXPECT_FALSE(measures.IsValid(name)) << name;
  }
}

TEST(NamespaceTest, MaskNamesAreJoinedInEntryOrder) {
  EXPECT_EQ(flags.GetName(2, "?"), "Two");
  EXPECT_EQ(flags.GetName(4096 + 2 + 1, "?"), "One|Big|Two");
  EXPECT_EQ(flags.GetName(0, "?"), "?");
  EXPECT_EQ(flags.GetName(1 + 8, "?"), "?");
}

TEST(NamespaceTest, MaskTextMayBeInAnyOrderButEveryNameMustBeKnown) {
  EXPECT_EQ(flags.GetValue("Two|One", 99), 3u);
  EXPECT_EQ(flags.GetValue("Big|Big", 99), 4096u);
  EXPECT_TRUE(flags.IsValid("Two|Big|One"));
  for (const char* text : {"", "|", "One|", "|One", "One||Two", "One|Three", "One | Two", "one"}) {
    EXPECT_EQ(flags.GetValue(text, 99), 99u) << text;
    EXPECT_FALSE(flags.IsValid(text)) << text;
  }
}

}  // namespace
}  // namespace QXSystem
