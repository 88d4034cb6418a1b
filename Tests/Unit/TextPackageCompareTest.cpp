// The comparisons of texts, which the platform makes.
#include "Component/Portable/Text/TextPackage.h"

#include "Tests/Support/UnitTest.h"

using namespace NSTextPackage;
using namespace NSMorvaneTest;

TEST(TextPackageCompare, ByTheRulesOfTheLocale) {
  const Rows<TString, TString, TTextOrder, TTextOrder> rows = {
      {u"", u"a", kTextLess, kTextLess},
      {u".AIF", u".aif", kTextGreater, kTextEqual},
      {u".aif", u".aiff", kTextLess, kTextLess},
      {u"\u00C4", u"\u00E4", kTextGreater, kTextEqual},
      {u"\uFF21", u"A", kTextEqual, kTextEqual}  // full width
  };
  for (const auto& [a, b, plain, ignoringCase] : rows) {
    EXPECT_EQ(plain, CompareText(a, b)) << StringToUTF8(a, false);
    EXPECT_EQ(ignoringCase, CompareTextIgnoringCase(a, b)) << StringToUTF8(a, false);
  }
}
