#include "export/migrate_records.h"

#include <algorithm>
#include <array>

#include "records/decoders.h"
#include "records/field_walk.h"

namespace orchidlamp {
namespace {

constexpr std::size_t kUidAt = 2;
constexpr std::size_t kFieldsAt = 6;
constexpr int kWide = 128;  // a paired code's UTF-16 form is its plain code + 128

// Calls visit(type, data) for every field of a list. Returns false when the
// list does not end exactly at a field's end: a cut or overrunning field means
// the record is damaged and its values cannot be trusted.
template <class Visit>
bool ForEachField(ByteView list, Visit&& visit) {
  std::size_t at = 0;
  while (at < list.size()) {
    if (list.size() - at < 3) return false;
    const std::size_t length = ReadLE16(list, at);
    if (length > list.size() - at - 3) return false;
    visit(static_cast<int>(list[at + 2]), list.subspan(at + 3, length));
    at += 3 + length;
  }
  return true;
}

bool WellFormed(const FieldList& fields) {
  return ForEachField(fields.bytes(), [](int, ByteView) {});
}

// The first field of each type, found in one walk of a well-formed list; it
// answers as the list's own Find and FindFollowing do. A contact asks for some
// forty codes, which would walk its list forty times.
class FieldIndex {
 public:
  explicit FieldIndex(const FieldList& fields) : bytes_(fields.bytes()) {
    std::size_t at = 0;
    ForEachField(bytes_, [&](int type, ByteView data) {
      if (first_[static_cast<std::size_t>(type)] == 0) first_[static_cast<std::size_t>(type)] = at + 1;
      at += 3 + data.size();
    });
  }
  ByteView Find(int type) const {
    const std::size_t at = At(type);
    return at == 0 ? ByteView() : bytes_.subspan(at - 1 + 3, ReadLE16(bytes_, at - 1));
  }
  ByteView FindFollowing(int type) const {
    const std::size_t at = At(type);
    if (at == 0) return {};
    const std::size_t next = at - 1 + 3 + ReadLE16(bytes_, at - 1);
    if (next >= bytes_.size() || bytes_.size() - next < 3 || bytes_[next + 2] != type) return {};
    return bytes_.subspan(next + 3, ReadLE16(bytes_, next));
  }

 private:
  // The offset of the type's first field + 1; 0 when it has none.
  std::size_t At(int type) const { return type >= 0 && type < 256 ? first_[static_cast<std::size_t>(type)] : 0; }

  ByteView bytes_;
  std::array<std::size_t, 256> first_{};
};

// A field of the paired codes: the UTF-16 form when it holds data, else the
// 8-bit form.
template <class Fields>
std::string Paired(const Fields& fields, int wideCode, int plainCode, const CodePage& codePage) {
  const ByteView wide = fields.Find(wideCode);
  if (!wide.empty()) return Utf16AfterLead(wide);
  return EightBitText(fields.Find(plainCode), codePage);
}

template <class Fields>
std::optional<UtcDateTime> MinutesField(const Fields& fields, int code) {
  const ByteView data = fields.Find(code);
  if (data.size() < 4) return std::nullopt;
  return FromUnixMinutes(static_cast<std::int32_t>(ReadLE32(data, 0)));
}

template <class Fields>
std::optional<int> FirstByte(const Fields& fields, int code) {
  const ByteView data = fields.Find(code);
  if (data.empty()) return std::nullopt;
  return data[0];
}

// An unsigned little-endian stamp of `width` bytes; nullopt when cut short or
// beyond what a signed 64-bit count holds.
std::optional<std::int64_t> StampAt(ByteView data, std::size_t at, std::size_t width) {
  if (at > data.size() || data.size() - at < width) return std::nullopt;
  std::uint64_t value = 0;
  for (std::size_t i = width; i-- > 0;) value = value << 8 | data[at + i];
  if (value > static_cast<std::uint64_t>(INT64_MAX)) return std::nullopt;
  return static_cast<std::int64_t>(value);
}

struct ContactText {
  std::string MigratedContact::*member;
  int plainCode;
  bool paired;
};

constexpr ContactText kContactTexts[] = {
    {&MigratedContact::title, 55, true},     {&MigratedContact::company, 33, true},
    {&MigratedContact::job, 42, true},       {&MigratedContact::webPage, 54, false},
    {&MigratedContact::birthday, 82, false}, {&MigratedContact::anniversary, 83, false},
    {&MigratedContact::categories, 59, false}, {&MigratedContact::notes, 64, true},
};

struct AddressCodes {
  MigratedAddress MigratedContact::*address;
  int line1, line2, city, region, postalCode, country;
};

constexpr AddressCodes kAddresses[] = {
    {&MigratedContact::work, 35, 36, 38, 39, 40, 41},
    {&MigratedContact::home, 61, 62, 69, 70, 71, 72},
};

// Phone codes and the vCard type each one is.
constexpr std::array<std::pair<int, const char*>, 8> kPhoneCodes = {{
    {6, "WORK"}, {16, "WORK"}, {7, "HOME"}, {17, "HOME"}, {8, "CELL"}, {9, "PAGER"}, {3, "FAX"}, {18, ""},
}};

constexpr int kEmail = 1, kFirstName = 32, kPhoto = 77;

bool ReadContact(ByteView body, bool nested, MigrationContext& context) {
  const auto uid = RecordUid(body);
  if (!uid) return false;
  if (nested && !RecordFields(body).Has(10)) return false;
  const FieldList fields = nested ? NestedFields(body, 0) : RecordFields(body);
  if (!WellFormed(fields) || (nested && !WellFormed(RecordFields(body)))) return false;
  if (!context.sink) return true;
  const CodePage& cp = context.codePage;
  const FieldIndex index(fields);

  MigratedContact c;
  c.uid = *uid;
  for (const ContactText& t : kContactTexts)
    c.*t.member = t.paired ? Paired(index, t.plainCode + kWide, t.plainCode, cp) : EightBitText(index.Find(t.plainCode), cp);
  if (const ByteView wide = index.Find(kFirstName + kWide); !wide.empty()) {
    c.firstName = Utf16AfterLead(wide);
    c.lastName = Utf16AfterLead(index.FindFollowing(kFirstName + kWide));
  } else {
    c.firstName = EightBitText(index.Find(kFirstName), cp);
    c.lastName = EightBitText(index.FindFollowing(kFirstName), cp);
  }
  for (const AddressCodes& a : kAddresses) {
    MigratedAddress& to = c.*a.address;
    const std::string line1 = Paired(index, a.line1 + kWide, a.line1, cp);
    const std::string line2 = Paired(index, a.line2 + kWide, a.line2, cp);
    to.street = line1.empty() || line2.empty() ? line1 + line2 : line1 + "\n" + line2;
    to.city = Paired(index, a.city + kWide, a.city, cp);
    to.region = Paired(index, a.region + kWide, a.region, cp);
    to.postalCode = EightBitText(index.Find(a.postalCode), cp);
    to.country = Paired(index, a.country + kWide, a.country, cp);
  }
  ForEachField(fields.bytes(), [&](int type, ByteView data) {
    if (type == kEmail) {
      if (std::string email = EightBitText(data, cp); !email.empty()) c.emails.push_back(std::move(email));
      return;
    }
    for (const auto& [code, vcardType] : kPhoneCodes) {
      if (code == type) {
        if (std::string number = EightBitText(data, cp); !number.empty()) c.phones.push_back({vcardType, number});
        return;
      }
    }
  });
  const ByteView photo = index.Find(kPhoto);
  if (photo.size() >= 3 && photo[0] == 0xFF && photo[1] == 0xD8 && photo[2] == 0xFF)
    c.photo.assign(photo.begin(), photo.end());
  context.sink->Add(c);
  return true;
}

bool ReadAppointment(ByteView body, bool nested, MigrationContext& context) {
  constexpr std::size_t kNestedSkip = 4;
  const auto uid = RecordUid(body);
  if (!uid) return false;
  if (nested && RecordFields(body).Find(10).size() < kNestedSkip) return false;
  const FieldList fields = nested ? NestedFields(body, kNestedSkip) : RecordFields(body);
  if (!WellFormed(fields) || (nested && !WellFormed(RecordFields(body)))) return false;
  if (!context.sink) return true;
  const CodePage& cp = context.codePage;
  context.sink->Add(MigratedEvent{*uid, Paired(fields, 130, 2, cp), Paired(fields, 132, 3, cp),
                                  Paired(fields, 131, 4, cp), MinutesField(fields, 6), MinutesField(fields, 7)});
  return true;
}

// The text behind a marker: one length byte, then that many 8-bit bytes.
std::optional<ByteView> TextBehind(ByteView body, std::array<std::uint8_t, 3> marker) {
  const auto found = std::search(body.begin(), body.end(), marker.begin(), marker.end());
  if (found == body.end()) return std::nullopt;
  const std::size_t at = static_cast<std::size_t>(found - body.begin()) + marker.size();
  if (at >= body.size()) return std::nullopt;
  return ClippedSub(body, at + 1, body[at]);
}

// The 8-bit form of a paired AutoText code followed by its UTF-16 form: a
// record holds one or the other.
std::string JoinedText(const FieldList& fields, int plainCode, const CodePage& cp) {
  return EightBitText(fields.Find(plainCode), cp) + Utf16AfterLead(fields.Find(plainCode + kWide));
}

}  // namespace

std::string MigratedContact::FullName() const {
  std::string name = firstName;
  if (!name.empty() && !lastName.empty()) name += ' ';
  name += lastName;
  if (!name.empty()) return name;
  if (!company.empty()) return company;
  if (!phones.empty()) return phones.front().number;
  if (!emails.empty()) return emails.front();
  return {};
}

std::optional<std::uint32_t> RecordUid(ByteView body) {
  if (body.size() < kFieldsAt) return std::nullopt;
  return ReadLE32(body, kUidAt);
}

bool MigrateContact(ByteView body, MigrationContext& context) { return ReadContact(body, false, context); }
bool MigrateContactNested(ByteView body, MigrationContext& context) { return ReadContact(body, true, context); }
bool MigrateAppointment(ByteView body, MigrationContext& context) { return ReadAppointment(body, false, context); }
bool MigrateAppointmentNested(ByteView body, MigrationContext& context) {
  return ReadAppointment(body, true, context);
}

bool MigrateTask(ByteView body, MigrationContext& context) {
  const auto uid = RecordUid(body);
  const FieldList fields = RecordFields(body);
  if (!uid || !WellFormed(fields)) return false;
  if (!context.sink) return true;
  const CodePage& cp = context.codePage;
  constexpr int kStatus = 9, kPriority = 10, kDue = 5;
  context.sink->Add(MigratedTask{*uid, Paired(fields, 130, 2, cp), Paired(fields, 131, 3, cp),
                                 FirstByte(fields, kStatus), FirstByte(fields, kPriority), MinutesField(fields, kDue)});
  return true;
}

bool MigrateSms(ByteView body, MigrationContext& context) {
  constexpr std::size_t kFirstStamp = 22, kStampWidth = 6, kFieldListStart = 73;
  if (body.size() < kFieldListStart) return false;
  const FieldList fields(body.subspan(kFieldListStart));
  if (!WellFormed(fields)) return false;
  if (!context.sink) return true;
  MigratedSms sms;
  sms.sent = SmsIsSent(body);
  sms.milliseconds = StampAt(body, kFirstStamp, kStampWidth);
  sms.address = EightBitText(fields.Find(2), context.codePage);
  sms.body = SmsMessageText(fields.Find(4), fields.Find(7), context.codePage);
  context.sink->Add(sms);
  return true;
}

bool MigrateCall(ByteView body, MigrationContext& context) {
  constexpr int kDirection = 2, kDuration = 3, kDate = 4, kNumber = 12, kName = 31, kWideName = 159;
  const FieldList fields = RecordFields(body);
  if (body.size() < kFieldsAt || !WellFormed(fields)) return false;
  if (!context.sink) return true;
  MigratedCall call;
  call.direction = LittleEndianNumber(fields.Find(kDirection));
  call.milliseconds = StampAt(fields.Find(kDate), 0, 8);
  call.seconds = LittleEndianNumber(fields.Find(kDuration));
  call.number = EightBitText(fields.Find(kNumber), context.codePage);
  call.name = Paired(fields, kWideName, kName, context.codePage);
  context.sink->Add(call);
  return true;
}

bool MigrateMemo(ByteView body, MigrationContext& context) {
  const FieldList fields = RecordFields(body);
  if (body.size() < kFieldsAt || !WellFormed(fields)) return false;
  if (!context.sink) return true;
  context.sink->Add(MigratedMemo{Paired(fields, 129, 1, context.codePage), Paired(fields, 130, 2, context.codePage)});
  return true;
}

bool MigrateBookmark(ByteView body, MigrationContext& context) {
  if (body.size() < kFieldsAt) return false;
  const auto url = TextBehind(body, {0x00, 0x12, 0x00});
  if (!url || url->empty()) return false;
  if (!context.sink) return true;
  const auto title = TextBehind(body, {0x04, 0x01, 0x00});
  context.sink->Add(
      MigratedBookmark{title ? EightBitText(*title, context.codePage) : std::string(), EightBitText(*url, context.codePage)});
  return true;
}

bool MigrateAutoText(ByteView body, MigrationContext& context) {
  const FieldList fields = RecordFields(body);
  if (body.size() < kFieldsAt || !WellFormed(fields)) return false;
  if (!context.sink) return true;
  context.sink->Add(MigratedAutoText{JoinedText(fields, 1, context.codePage), JoinedText(fields, 2, context.codePage)});
  return true;
}

}  // namespace orchidlamp
