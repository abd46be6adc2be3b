#include "core/settings.h"

#include <gtest/gtest.h>

#include "core/paths.h"

namespace orchidlamp {
namespace {

TEST(Settings, TimeZoneTextBecomesHours) {
  EXPECT_EQ(DeriveSettings({"GMT", ","}).timeZoneText, "0");
  EXPECT_EQ(DeriveSettings({"GMT", ","}).timeZoneHours, 0);
  EXPECT_EQ(DeriveSettings({"+11", ","}).timeZoneHours, 11);
  EXPECT_EQ(DeriveSettings({"-5", ","}).timeZoneHours, -5);
  EXPECT_EQ(DeriveSettings({"5.5", ","}).timeZoneHours, 5.5);
  EXPECT_EQ(DeriveSettings({"", ","}).timeZoneHours, 0);
  EXPECT_EQ(DeriveSettings({"abc", ","}).timeZoneHours, 0);
  EXPECT_EQ(DeriveSettings({"3 hours", ","}).timeZoneHours, 3);
}

TEST(Settings, DelimitersIncludingTheReversedBracketsAndTheFallback) {
  EXPECT_EQ(DelimiterFor(","), ",");
  EXPECT_EQ(DelimiterFor(";"), ";");
  EXPECT_EQ(DelimiterFor("'"), "'");
  EXPECT_EQ(DelimiterFor("TAB"), "\t");
  EXPECT_EQ(DelimiterFor("SPACE"), " ");
  EXPECT_EQ(DelimiterFor("< >"), "> <");
  EXPECT_EQ(DelimiterFor("( )"), ") (");
  EXPECT_EQ(DelimiterFor("{ }"), "} {");
  // The options list offers the apostrophe with a trailing blank, which matches nothing.
  EXPECT_EQ(DelimiterFor("' "), ",");
  EXPECT_EQ(DelimiterFor("tab"), ",");
}

TEST(Paths, FolderOfTakesEitherSeparator) {
  EXPECT_EQ(FolderOf("/home/u/b.ipd"), "/home/u/");
  EXPECT_EQ(FolderOf("C:\\data\\b.ipd"), "C:\\data\\");
  EXPECT_EQ(FolderOf("b.ipd"), "");
  EXPECT_EQ(FileNameOf("/home/u/b.ipd"), "b.ipd");
  EXPECT_EQ(FileNameOf("b.ipd"), "b.ipd");
}

}  // namespace
}  // namespace orchidlamp
