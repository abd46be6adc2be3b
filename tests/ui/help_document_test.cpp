// The help PDF is made from the program's help text by the build and sits
// beside the program, where the help menu tells the user to look.

#include <gtest/gtest.h>

#include "support/temp_folder.h"

#ifdef ORCHIDLAMP_HELP_PDF
TEST(HelpDocument, IsAPdfBesideTheProgramWithSeveralPages) {
  const std::string path = ORCHIDLAMP_HELP_PDF;
  EXPECT_EQ(path.substr(path.rfind('/') + 1), "Orchidlamp Help.pdf");
  ASSERT_TRUE(orchidlamp::testing::FileExists(path)) << path;
  const orchidlamp::Bytes pdf = orchidlamp::testing::ReadFile(path);
  const std::string text(pdf.begin(), pdf.end());
  EXPECT_EQ(text.rfind("%PDF-", 0), 0u);
  EXPECT_NE(text.find("/Title ("), std::string::npos);
  const auto first = text.find("/Type /Page\n");
  EXPECT_NE(text.find("/Type /Page\n", first + 1), std::string::npos);  // two pages at least
}
#endif
