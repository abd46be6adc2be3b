#include "records/decoders.h"
#include "records/field_walk.h"
#include "records/text_routes.h"

namespace orchidlamp {
namespace {

constexpr int kUtf16Offset = 128;
constexpr int kFirstName = 32;
constexpr int kPhoto = 77;

FieldList ContactFields(ByteView body, bool nested) { return nested ? NestedFields(body, 0) : RecordFields(body); }

// The form a contact's names take: the UTF-16 code when it holds data.
bool NamesAreWide(const FieldList& fields) { return !fields.Find(kFirstName + kUtf16Offset).empty(); }

struct TextMember {
  std::string DecodedContact::*member;
  int plainCode;
  bool paired;  // has a UTF-16 form at plainCode + 128
  bool keepLineBreaks;
};

// Members in the contact's order; first and last name are handled apart since
// they share one code.
constexpr TextMember kMembers[] = {
    {&DecodedContact::Title, 55, true, false},
    {&DecodedContact::Company, 33, true, false},
    {&DecodedContact::Job, 42, true, false},
    {&DecodedContact::Email, 1, false, false},
    {&DecodedContact::WorkPhone1, 6, false, false},
    {&DecodedContact::WorkPhone2, 16, false, false},
    {&DecodedContact::HomePhone1, 7, false, false},
    {&DecodedContact::HomePhone2, 17, false, false},
    {&DecodedContact::Mobile, 8, false, false},
    {&DecodedContact::Pager, 9, false, false},
    {&DecodedContact::Fax, 3, false, false},
    {&DecodedContact::Other, 18, false, false},
    {&DecodedContact::Pin, 10, false, false},
    {&DecodedContact::WorkAddress1, 35, true, true},
    {&DecodedContact::WorkAddress2, 36, true, true},
    {&DecodedContact::WorkCity, 38, true, false},
    {&DecodedContact::WorkState, 39, true, false},
    {&DecodedContact::WorkZip, 40, false, false},
    {&DecodedContact::WorkCountry, 41, true, false},
    {&DecodedContact::HomeAddress1, 61, true, true},
    {&DecodedContact::HomeAddress2, 62, true, true},
    {&DecodedContact::HomeCity, 69, true, false},
    {&DecodedContact::HomeState, 70, true, false},
    {&DecodedContact::HomeZip, 71, false, false},
    {&DecodedContact::HomeCountry, 72, true, false},
    {&DecodedContact::Birthday, 82, false, false},
    {&DecodedContact::Anniversary, 83, false, false},
    {&DecodedContact::Category, 59, false, false},
    {&DecodedContact::WebPage, 54, false, false},
    {&DecodedContact::Field99, 99, false, false},
    {&DecodedContact::Notes, 64, true, true},
};

bool IsJpeg(ByteView data) { return data.size() >= 3 && data[0] == 0xFF && data[1] == 0xD8 && data[2] == 0xFF; }

}  // namespace

DecodedContact DecodeContact(ByteView body, std::int64_t pictureNumber, bool nested,
                             const ContactPictureSink& pictures) {
  DecodedContact c;
  const FieldList fields = ContactFields(body, nested);
  for (const TextMember& m : kMembers) {
    c.*m.member = m.paired ? PairedText(fields, m.plainCode + kUtf16Offset, m.plainCode, m.keepLineBreaks)
                           : CleanText(fields.Find(m.plainCode), m.keepLineBreaks);
  }
  if (NamesAreWide(fields)) {
    c.FirstName = Utf16AfterLeadText(fields.Find(kFirstName + kUtf16Offset), false);
    c.LastName = Utf16AfterLeadText(fields.FindFollowing(kFirstName + kUtf16Offset), false);
  } else {
    c.FirstName = CleanText(fields.Find(kFirstName), false);
    c.LastName = CleanText(fields.FindFollowing(kFirstName), false);
  }
  const ByteView photo = fields.Find(kPhoto);
  if (IsJpeg(photo) && pictures) c.PhotoFile = pictures(photo, pictureNumber);
  return c;
}

std::string ContactLabel(ByteView body, bool nested) {
  const FieldList fields = ContactFields(body, nested);
  const ByteView wide = fields.Find(kFirstName + kUtf16Offset);
  // The label reads the UTF-16 name the 8-bit way: Latin names lose their zero
  // bytes and still read right.
  if (!wide.empty()) return CleanText(ClippedSub(wide, 1, wide.size()), false);
  return CleanText(fields.Find(kFirstName), false) + " " + CleanText(fields.FindFollowing(kFirstName), false);
}

}  // namespace orchidlamp
