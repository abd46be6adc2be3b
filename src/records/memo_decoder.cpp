#include "records/decoders.h"
#include "records/field_walk.h"
#include "records/text_routes.h"

namespace orchidlamp {

DecodedMemo DecodeMemo(ByteView body) {
  const FieldList fields = RecordFields(body);
  return {PairedText(fields, 129, 1, false), PairedText(fields, 130, 2, true)};
}

std::string MemoLabel(ByteView body) { return PairedText(RecordFields(body), 129, 1, false); }

}  // namespace orchidlamp
