#pragma once

// Each migrated kind's record as Unicode values, and one reader per database
// kind that fills them. Readers share one signature so that the kinds table can
// hold them as one column: they read the body and hand what they decode to the
// context's sink, or return false for a record they cannot decode.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/bytes.h"
#include "export/migrate_instant.h"
#include "export/migrate_text.h"

namespace orchidlamp {

struct MigratedAddress {
  std::string street, city, region, postalCode, country;
  bool Empty() const { return (street + city + region + postalCode + country).empty(); }
};

struct MigratedPhone {
  std::string type;  // "WORK", "HOME", "CELL", "FAX", "PAGER" or empty
  std::string number;
};

struct MigratedContact {
  std::uint32_t uid = 0;
  std::string title, firstName, lastName, company, job;
  std::vector<std::string> emails;
  std::vector<MigratedPhone> phones;
  MigratedAddress work, home;
  std::string webPage, birthday, anniversary, notes, categories;
  Bytes photo;  // JPEG bytes, empty without a picture
  // The name a person is shown by: first and last name, else the company,
  // else the first phone number or e-mail address.
  std::string FullName() const;
};

struct MigratedEvent {
  std::uint32_t uid = 0;
  std::string summary, location, notes;
  std::optional<UtcDateTime> start, end;
};

struct MigratedTask {
  std::uint32_t uid = 0;
  std::string summary, notes;
  std::optional<int> status;    // 0 not started ... 4 deferred, as stored
  std::optional<int> priority;  // 0 high, 1 normal, 2 low, as stored
  std::optional<UtcDateTime> due;
};

struct MigratedSms {
  bool sent = false;
  std::optional<std::int64_t> milliseconds;
  std::string address, body;
};

struct MigratedCall {
  int direction = 0;  // 0 received, 1 placed, anything else missed
  std::optional<std::int64_t> milliseconds;
  std::int32_t seconds = 0;
  std::string number, name;
};

struct MigratedMemo {
  std::string title, text;
};

struct MigratedBookmark {
  std::string title, url;
};

struct MigratedAutoText {
  std::string replace, with;
};

// Where readers hand their records, one at a time and in file order; the
// record lives only for the call. A sink takes the kinds it writes.
class MigrationSink {
 public:
  virtual ~MigrationSink() = default;
  virtual void Add(const MigratedContact&) {}
  virtual void Add(const MigratedEvent&) {}
  virtual void Add(const MigratedTask&) {}
  virtual void Add(const MigratedSms&) {}
  virtual void Add(const MigratedCall&) {}
  virtual void Add(const MigratedMemo&) {}
  virtual void Add(const MigratedBookmark&) {}
  virtual void Add(const MigratedAutoText&) {}
};

struct MigrationContext {
  const CodePage& codePage;
  // Null: the reader only tells whether the record can be decoded, so a file
  // that states its count first can learn it without converting any text.
  MigrationSink* sink;
};

using MigrateRecordFn = bool (*)(ByteView body, MigrationContext& context);

bool MigrateContact(ByteView body, MigrationContext& context);
bool MigrateContactNested(ByteView body, MigrationContext& context);  // "Address Book - All"
bool MigrateAppointment(ByteView body, MigrationContext& context);
bool MigrateAppointmentNested(ByteView body, MigrationContext& context);  // "Calendar - All"
bool MigrateTask(ByteView body, MigrationContext& context);
bool MigrateSms(ByteView body, MigrationContext& context);
bool MigrateCall(ByteView body, MigrationContext& context);
bool MigrateMemo(ByteView body, MigrationContext& context);
bool MigrateBookmark(ByteView body, MigrationContext& context);
bool MigrateAutoText(ByteView body, MigrationContext& context);

// The record's unique ID (body bytes 2-5, little-endian); nullopt when the body
// is too short to hold it.
std::optional<std::uint32_t> RecordUid(ByteView body);

}  // namespace orchidlamp
