#pragma once

// One decoder and one tree label per record kind. Decoders take a record's body
// (handle through last byte) and never fail: an absent or short field gives empty
// text or 0, and nothing is read outside the body.

#include <cstdint>
#include <functional>
#include <string>

#include "core/bytes.h"
#include "core/image_key.h"
#include "records/decoded_records.h"

namespace orchidlamp {

// Writes a contact's JPEG photo; returns what the contact's PhotoFile shows.
using ContactPictureSink = std::function<std::string(ByteView jpeg, std::int64_t number)>;

DecodedSms DecodeSms(ByteView body, double timeZoneHours);
std::string SmsLabel(ByteView body);
// Byte 9 of the body: zero means the handheld sent it.
bool SmsIsSent(ByteView body);

// `nested` for "Address Book - All": the contact's fields sit inside field 10.
DecodedContact DecodeContact(ByteView body, std::int64_t pictureNumber, bool nested,
                             const ContactPictureSink& pictures);
std::string ContactLabel(ByteView body, bool nested);

// `nested` for "Calendar - All": the fields sit inside field 10, after 4 bytes.
DecodedAppointment DecodeAppointment(ByteView body, bool nested, double timeZoneHours);
std::string AppointmentLabel(ByteView body, bool nested);

DecodedTask DecodeTask(ByteView body);
std::string TaskLabel(ByteView body);

DecodedMemo DecodeMemo(ByteView body);
std::string MemoLabel(ByteView body);

DecodedCall DecodeCall(ByteView body, double timeZoneHours);
std::string CallLabel(ByteView body);
// "received", "placed" or "missed": the call's record-node image.
std::string CallDirectionWord(ByteView body);
ImageKey CallDirectionImage(ByteView body);

DecodedAutoText DecodeAutoText(ByteView body);
std::string AutoTextLabel(ByteView body);

DecodedBookmark DecodeBookmark(ByteView body);
std::string BookmarkLabel(ByteView body);

std::string ServiceBookLabel(ByteView body);

}  // namespace orchidlamp
