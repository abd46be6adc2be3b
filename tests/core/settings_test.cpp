#include "core/settings.h"

#include <gtest/gtest.h>

#include "core/paths.h"

namespace orchidlamp {
namespace {

TEST(Settings, TimeZonesDelimitersAndPaths) {
  const std::vector<std::pair<std::string, double>> zones = {{"GMT", 0}, {"+11", 11}, {"-5", -5}, {"5.5", 5.5},
                                                             {"", 0},    {"abc", 0},  {"3 hours", 3}};
  for (const auto& [text, hours] : zones) EXPECT_EQ(DeriveSettings({text, ","}).timeZoneHours, hours) << text;
  EXPECT_EQ(DeriveSettings({"GMT", ","}).timeZoneText, "0");
  // The brackets come out reversed; the options list's apostrophe with a trailing blank matches nothing.
  const std::vector<std::pair<std::string, std::string>> delimiters = {
      {",", ","},      {";", ";"},     {"'", "'"},     {"TAB", "\t"}, {"SPACE", " "},
      {"< >", "> <"},  {"( )", ") ("}, {"{ }", "} {"}, {"' ", ","},   {"tab", ","}};
  for (const auto& [stored, used] : delimiters) EXPECT_EQ(DelimiterFor(stored), used) << stored;
  EXPECT_EQ(FolderOf("/home/u/b.ipd") + FolderOf("C:\\data\\b.ipd") + FolderOf("b.ipd"), "/home/u/C:\\data\\");
  EXPECT_EQ(FileNameOf("/home/u/b.ipd") + FileNameOf("b.ipd"), "b.ipdb.ipd");
}

}  // namespace
}  // namespace orchidlamp
