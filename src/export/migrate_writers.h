#pragma once

// The migration outputs, one writer per format. A writer takes the records one
// at a time, as a sink, and sends its bytes to the disk through one buffer, so
// an output of any size costs that buffer and one record. Nothing is created
// before the first record: a kind with no records writes nothing.

#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_io.h"
#include "core/result.h"
#include "export/migrate_records.h"

namespace orchidlamp {

// Makes the folder the outputs go in; each output calls it before it creates
// anything, and only the first call makes the folder.
using PrepareFolder = std::function<Status()>;

class MigrationOutput : public MigrationSink {
 public:
  // Records written so far.
  std::size_t count() const { return count_; }
  // Completes what was written and closes it. Ok, with nothing on disk, when
  // no record came; else the first failure of the output, naming its path.
  virtual Status Finish() = 0;

 protected:
  std::size_t count_ = 0;
};

// One file: its head goes out with the first record, its tail on Finish().
class MigrationFile : public MigrationOutput {
 public:
  MigrationFile(std::string path, PrepareFolder prepare);
  Status Finish() override;

 protected:
  // The file, opened at the first call, for one more record; null once the
  // file has failed.
  BufferedFileWriter* Next();
  // Keeps the first failure; later records are dropped.
  void SetFailure(Failure failure);

  virtual void Head(BufferedFileWriter&) {}
  virtual void Tail(BufferedFileWriter&) {}

 private:
  std::string path_;
  PrepareFolder prepare_;
  std::unique_ptr<BufferedFileWriter> file_;
  std::optional<Failure> failure_;
};

// contacts.vcf: vCard 3.0, CRLF, folded at 75 octets.
class VCardFile final : public MigrationFile {
 public:
  using MigrationFile::MigrationFile;
  void Add(const MigratedContact& contact) override;

 private:
  std::string card_;  // reused from card to card
};

// calendar.ics as libical writes it: one VCALENDAR, a VEVENT per appointment
// and a VTODO per task, in the order they come (the run hands every
// appointment before the first task). `now` is the DTSTAMP.
class ICalendarFile final : public MigrationFile {
 public:
  ICalendarFile(std::string path, PrepareFolder prepare, std::time_t now);
  void Add(const MigratedEvent& event) override;
  void Add(const MigratedTask& task) override;

 private:
  void Head(BufferedFileWriter& out) override;
  void Tail(BufferedFileWriter& out) override;

  std::string stamp_;      // the DTSTAMP line, empty when the clock has no date
  std::string tail_;
  std::string component_;  // reused from component to component
};

// Contact names by phone number, for the XML files' contact_name.
class ContactNames {
 public:
  // The first contact with a number (compared as NameOf compares) names it.
  void Add(const MigratedContact& contact);
  // The name of a contact with this number (compared without spaces, dashes,
  // dots and brackets), else "(Unknown)".
  std::string NameOf(std::string_view number) const;

 private:
  // Every message and call looks a number up: an open-addressing table finds
  // it, or its absence, in one slot where a node-based map chases pointers.
  struct Slot {
    std::uint64_t hash = 0;
    std::uint32_t keyAt = 0, keySize = 0;
    std::uint32_t name = 0;  // index into names_ + 1; 0 for an empty slot
  };
  // The slot holding the key, else the empty slot where it would go.
  std::size_t At(std::string_view key, std::uint64_t hash) const;
  void Grow();

  std::vector<Slot> slots_;  // a power of two in size, at most half full
  std::string keys_;         // the keys one after another
  std::vector<std::string> names_;
  std::size_t used_ = 0;
};

// messages.xml and calls.xml in the "SMS Backup & Restore" format: the bytes
// libxml2's text writer gives with indentation on (one empty element a line,
// two spaces in), written directly since the file is one flat list and the
// writer's bookkeeping per call cost more than the records' conversion. The
// root states the record count, so the run counts the records first.
class XmlFile : public MigrationFile {
 public:
  XmlFile(std::string path, PrepareFolder prepare, const char* root, std::size_t total, const ContactNames& names);

 protected:
  void Start(const char* name);
  void Attribute(std::string_view name, std::string_view value);
  // Attributes written out already, with nothing to escape.
  void Fixed(std::string_view attributes) { element_ += attributes; }
  void End(BufferedFileWriter& out);
  // date and readable_date of a stamp; a stamp that is missing or outside the
  // years 100 to 9999 gives date "0" and no readable date.
  void Stamp(const std::optional<std::int64_t>& ms, std::string_view dateName);
  // After Stamp: readable_date when the stamp has one.
  void ReadableDate();
  const ContactNames& names_;

 private:
  void Head(BufferedFileWriter& out) override;
  void Tail(BufferedFileWriter& out) override;

  const char* root_;
  std::size_t total_;
  std::string element_;  // reused from record to record
  // The element's last stamp, its readable date and its date attribute.
  bool stampKnown_ = false;
  std::optional<std::int64_t> stamp_;
  std::optional<UtcDateTime> readable_;
  std::string date_;
};

class MessagesXmlFile final : public XmlFile {
 public:
  MessagesXmlFile(std::string path, PrepareFolder prepare, std::size_t total, const ContactNames& names)
      : XmlFile(std::move(path), std::move(prepare), "smses", total, names) {}
  void Add(const MigratedSms& message) override;
};

class CallsXmlFile final : public XmlFile {
 public:
  CallsXmlFile(std::string path, PrepareFolder prepare, std::size_t total, const ContactNames& names)
      : XmlFile(std::move(path), std::move(prepare), "calls", total, names) {}
  void Add(const MigratedCall& call) override;
};

// memos/: one file per memo, "NNNN Title.txt" from 0001, in a folder made at
// the first memo.
class MemoFolder final : public MigrationOutput {
 public:
  MemoFolder(std::string path, PrepareFolder prepare);
  ~MemoFolder() override;
  MemoFolder(const MemoFolder&) = delete;
  MemoFolder& operator=(const MemoFolder&) = delete;
  void Add(const MigratedMemo& memo) override;
  Status Finish() override;

 private:
  void Write(const std::string& name, std::string_view text);

  std::string path_;
  PrepareFolder prepare_;
  int folder_ = -1;  // the folder, open, so that each memo is created by its name alone
  std::optional<Failure> failure_;
};

// bookmarks.html in the Netscape bookmark format.
class BookmarksFile final : public MigrationFile {
 public:
  using MigrationFile::MigrationFile;
  void Add(const MigratedBookmark& bookmark) override;

 private:
  void Head(BufferedFileWriter& out) override;
  void Tail(BufferedFileWriter& out) override;
};

// autotext.csv: RFC 4180, CRLF, header "Replace,With".
class AutoTextFile final : public MigrationFile {
 public:
  using MigrationFile::MigrationFile;
  void Add(const MigratedAutoText& entry) override;

 private:
  void Head(BufferedFileWriter& out) override;
};

}  // namespace orchidlamp
