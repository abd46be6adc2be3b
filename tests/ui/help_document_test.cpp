// The help PDF is made from the program's help text by the build and sits
// beside the program, where the help menu tells the user to look.

#include <gtest/gtest.h>

#include <string>

#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

#ifdef ORCHIDLAMP_HELP_PDF
TEST(HelpDocument, IsAPdfBesideTheProgramWithSeveralPages) {
  const std::string path = ORCHIDLAMP_HELP_PDF;
  EXPECT_EQ(path.substr(path.rfind('/') + 1), "Orchidlamp Help.pdf");
  ASSERT_TRUE(FileExists(path)) << path;
  const Bytes pdf = ReadFile(path);
  const std::string text(pdf.begin(), pdf.end());
  EXPECT_EQ(text.rfind("%PDF-", 0), 0u);
  EXPECT_NE(text.find("/Title ("), std::string::npos);
  std::size_t pages = 0;
  for (std::size_t at = text.find("/Type /Page\n"); at != std::string::npos; at = text.find("/Type /Page\n", at + 1))
    ++pages;
  EXPECT_GE(pages, 2u);
}
#endif

}  // namespace
}  // namespace orchidlamp
