#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

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

MemoFolder::MemoFolder(std::string path, PrepareFolder prepare)
    : path_(std::move(path)), prepare_(std::move(prepare)) {}

MemoFolder::~MemoFolder() {
  if (folder_ >= 0) ::close(folder_);
}

void MemoFolder::Add(const MigratedMemo& memo) {
  if (failure_) return;
  if (count_ == 0) {
    if (Status ready = prepare_(); !ready) {
      failure_ = ready.failure();
      return;
    }
    std::error_code error;
    std::filesystem::remove_all(path_, error);
    if (!std::filesystem::create_directory(path_, error) && error) {
      failure_ = Fail("Cannot create folder " + path_ + ": " + error.message());
      return;
    }
    folder_ = ::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder_ < 0) {
      failure_ = Fail("Cannot write " + path_ + ": " + std::strerror(errno));
      return;
    }
  }
  ++count_;
  char number[24];
  std::snprintf(number, sizeof number, "%04zu", count_);
  const std::string title = FileNamePart(memo.title);
  Write(std::string(number) + (title.empty() ? "" : " " + title) + ".txt", memo.text);
}

// The folder is this run's own and every name in it is new (the numbers differ),
// so a memo is created outright: no folder of its name can stand in the way.
void MemoFolder::Write(const std::string& name, std::string_view text) {
  const auto fail = [&] { failure_ = Fail("Cannot write " + path_ + "/" + name + ": " + std::strerror(errno)); };
  const int fd = ::openat(folder_, name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) return fail();
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      fail();
      ::close(fd);
      return;
    }
    done += static_cast<std::size_t>(n);
  }
  if (::close(fd) != 0) fail();
}

Status MemoFolder::Finish() {
  if (failure_) return *failure_;
  return Ok();
}

void BookmarksFile::Head(BufferedFileWriter& out) {
  out.Append(
      "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
      "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
      "<TITLE>Bookmarks</TITLE>\n"
      "<H1>Bookmarks</H1>\n"
      "<DL><p>\n");
}

void BookmarksFile::Add(const MigratedBookmark& b) {
  BufferedFileWriter* out = Next();
  if (!out) return;
  out->Append("    <DT><A HREF=\"" + EscapeHtml(b.url) + "\">" + EscapeHtml(b.title.empty() ? b.url : b.title) +
              "</A>\n");
}

void BookmarksFile::Tail(BufferedFileWriter& out) { out.Append("</DL><p>\n"); }

void AutoTextFile::Head(BufferedFileWriter& out) { out.Append("Replace,With\r\n"); }

void AutoTextFile::Add(const MigratedAutoText& e) {
  BufferedFileWriter* out = Next();
  if (!out) return;
  out->Append(CsvField(e.replace) + "," + CsvField(e.with) + "\r\n");
}

}  // namespace orchidlamp
