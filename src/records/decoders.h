#pragma once

// The record forms each kind file defines, and where kinds find their fields.
// Decoders never fail: an absent or short field gives empty text or 0, and
// nothing is read outside the body (handle through last byte).

#include "core/bytes.h"
#include "records/field_walk.h"
#include "records/record_kinds.h"

namespace orchidlamp {

extern const RecordForm kSmsForm;
extern const RecordForm kContactForm;
extern const RecordForm kAppointmentForm;
extern const RecordForm kTaskForm;
extern const RecordForm kMemoForm;
extern const RecordForm kCallForm;
extern const RecordForm kAutoTextForm;
extern const RecordForm kBookmarkForm;
extern const RecordForm kServiceBookForm;

// The SMS fields follow a fixed 73-byte header.
FieldList SmsFields(ByteView body);
// "Address Book - All": the contact's fields sit inside field 10.
FieldList NestedContactFields(ByteView body);
// "Calendar - All": the appointment's fields sit inside field 10, after 4 bytes.
FieldList NestedAppointmentFields(ByteView body);
// Bookmarks are not walked as fields: their "list" is the whole body, searched as hex.
FieldList WholeBody(ByteView body);

}  // namespace orchidlamp
