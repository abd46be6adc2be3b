#pragma once

// The record forms each kind file defines, and where kinds find their fields.
// Decoders never fail: an absent or short field gives empty text or 0, and
// nothing is read outside the body (handle through last byte).

#include "core/bytes.h"
#include "records/field_walk.h"
#include "records/record_kinds.h"

namespace orchidlamp {

struct RecordDecoder {
  // The field list the routed members are read from (plain, nested in field 10, ...).
  FieldList (*fields)(ByteView body);
  // Fills the Computed members; the routed ones are already set. Null when the
  // routes fill everything.
  void (*finish)(ByteView body, const FieldList& fields, const DecodeContext& context, MemberValues& members);
  // The node text; the image stays None where the kind's image applies.
  RecordLabel (*label)(ByteView body, const FieldList& fields);
};

extern const RecordForm kSmsForm, kContactForm, kAppointmentForm, kTaskForm, kMemoForm, kCallForm, kAutoTextForm,
    kBookmarkForm, kServiceBookForm;

extern const RecordDecoder kSmsDecoder, kTaskDecoder, kMemoDecoder, kCallDecoder, kAutoTextDecoder,
    kBookmarkDecoder, kServiceBookDecoder;
// "Address Book - All" and "Calendar - All" read the same members from inside
// field 10 (the calendar's after 4 bytes).
extern const RecordDecoder kContactDecoder, kNestedContactDecoder, kAppointmentDecoder, kNestedAppointmentDecoder;

// Byte 9 of an SMS body: zero means the handheld sent it.
bool SmsIsSent(ByteView body);

}  // namespace orchidlamp
