#pragma once

// The one table of what each known kind does: its tree label and image, and how
// a click on one of its records decodes it.

#include <cstdint>

#include "core/bytes.h"
#include "core/kinds.h"
#include "core/record_labeller.h"
#include "records/decoded_records.h"
#include "records/decoders.h"

namespace orchidlamp {

struct DecodeContext {
  double timeZoneHours = 0;
  std::int64_t pictureNumber = 0;  // the span's first offset: contact pictures are "PIC" + it + ".jpg"
  const ContactPictureSink* pictures = nullptr;
};

struct RecordKindRow {
  Kind kind;
  RecordLabel (*label)(ByteView body);
  // The detail view's members; null for the service book, whose panel is boxes.
  MemberList (*decode)(ByteView body, const DecodeContext& context);
};

const RecordKindRow& RowOf(Kind kind);

// The labeller the loaders use.
class KindLabeller final : public RecordLabeller {
 public:
  RecordLabel Label(Kind kind, ByteView body) const override { return RowOf(kind).label(body); }
};

}  // namespace orchidlamp
