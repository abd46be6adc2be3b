#include <cstdio>

#include "export/migrate_text_format.h"
#include "export/migrate_writers.h"

namespace orchidlamp {
namespace {

// Long titles make names some file systems refuse; this many bytes of the
// title is plenty to tell memos apart.
constexpr std::size_t kMaxTitleBytes = 100;

// The title as part of a file name: characters no common file system holds
// become "_", and it is cut to a whole UTF-8 character.
std::string FileNamePart(std::string_view title) {
  std::string out;
  for (char c : title) {
    const bool refused = static_cast<unsigned char>(c) < 0x20 || std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos;
    out += refused ? '_' : c;
  }
  if (out.size() > kMaxTitleBytes) {
    std::size_t cut = kMaxTitleBytes;
    while (cut > 0 && (static_cast<unsigned char>(out[cut]) & 0xC0) == 0x80) --cut;
    out.resize(cut);
  }
  return out;
}

}  // namespace

std::vector<std::pair<std::string, std::string>> MemoFiles(const std::vector<MigratedMemo>& memos) {
  std::vector<std::pair<std::string, std::string>> files;
  files.reserve(memos.size());
  for (std::size_t i = 0; i < memos.size(); ++i) {
    char number[24];
    std::snprintf(number, sizeof number, "%04zu", i + 1);
    const std::string title = FileNamePart(memos[i].title);
    files.emplace_back(std::string(number) + (title.empty() ? "" : " " + title) + ".txt", memos[i].text);
  }
  return files;
}

std::string BookmarksHtml(const std::vector<MigratedBookmark>& bookmarks) {
  std::string out =
      "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
      "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
      "<TITLE>Bookmarks</TITLE>\n"
      "<H1>Bookmarks</H1>\n"
      "<DL><p>\n";
  for (const MigratedBookmark& b : bookmarks) {
    out += "    <DT><A HREF=\"" + EscapeHtml(b.url) + "\">" + EscapeHtml(b.title.empty() ? b.url : b.title) +
           "</A>\n";
  }
  out += "</DL><p>\n";
  return out;
}

std::string AutoTextCsv(const std::vector<MigratedAutoText>& entries) {
  std::string out = "Replace,With\r\n";
  for (const MigratedAutoText& e : entries) out += CsvField(e.replace) + "," + CsvField(e.with) + "\r\n";
  return out;
}

}  // namespace orchidlamp
