#include <algorithm>
#include <vector>

#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "fuzz_scratch.h"
#include "fuzz_targets.h"
#include "records/decoders.h"
#include "records/field_text.h"
#include "records/field_walk.h"
#include "records/record_click.h"
#include "records/record_kinds.h"
#include "records/service_book_panel.h"

namespace orchidlamp::fuzz {
namespace {

// Every kind's label and decoder on one body, as if the record belonged to every
// database. The body is copied into a buffer of exactly its size first, so the
// sanitizers catch any read past the record's last byte: decoders never fail and
// never read outside the body.
void DecodeAsEveryKind(ByteView record, double timeZoneHours) {
  const std::vector<std::uint8_t> exact(record.begin(), record.end());
  const ByteView body(exact);
  const ContactPictureSink pictures = [](ByteView jpeg, std::int64_t) { return std::to_string(jpeg.size()); };
  for (int k = 0; k < kKindCount; ++k) {
    const KindSpec& kind = SpecOf(static_cast<Kind>(k));
    (void)LabelRecord(kind, body);
    (void)DecodeRecord(kind, body, DecodeContext{timeZoneHours, 7, &pictures});
  }
  std::array<std::string, kServiceBookBoxes> panel{};
  ApplyServiceBookBoxes(DecodeServiceBookPanel(body), panel);
}

}  // namespace

int FuzzRecordDecoders(const std::uint8_t* data, std::size_t size) {
  // The first byte picks a time zone from -12 to +12 in half hours.
  ControlReader control(data, size);
  const double timeZoneHours = (static_cast<int>(control.Byte() % 49) - 24) / 2.0;

  // The whole input as one body, and every prefix of a short one: decoders see
  // bodies of every length, cut inside any field.
  const ByteView whole(control.rest(), control.restSize());
  DecodeAsEveryKind(whole, timeZoneHours);
  if (whole.size() <= 96)
    for (std::size_t cut = 0; cut < whole.size(); ++cut) DecodeAsEveryKind(whole.first(cut), timeZoneHours);

  // The decoders' byte walk finds exactly what the hex-text FindField finds, on
  // any field list, well-formed or not, longer than the fields it keeps by type.
  const ByteView list(control.rest(), std::min<std::size_t>(control.restSize(), 128));
  const std::string hex = BytesToHex(list);
  const FieldList fields(list);
  for (int type = 0; type < 256; type += type < 8 ? 1 : 37) {
    const std::string code = std::to_string(type);
    if (BytesToHex(fields.Find(type)) != FindField(hex, code)) std::abort();
    if (BytesToHex(fields.FindFollowing(type)) != FindField(hex, code, 2)) std::abort();
  }
  // The byte routes give what their hex definitions give.
  std::string utf16;
  AppendUtf16(utf16, list);
  if (utf16 != UnicodeHexToText(hex)) std::abort();
  for (bool keep : {false, true}) {
    std::string clean, wide;
    AppendClean(clean, list, keep);
    AppendUtf16AfterLead(wide, list, keep);
    if (clean != CleanControlChars(HexToText(hex), keep)) std::abort();
    if (wide != CleanControlChars(UnicodeHexToText(Mid(hex, 3)), keep)) std::abort();
  }

  const KindLabeller labeller;
  Workspace ws(labeller);
  PointFoldersAtScratch(ws);
  (void)LoadScratchBackup(ws, control.rest(), control.restSize());
  const ByteView bytes = ws.file().View();
  if (auto table = ReadNameTable(bytes)) {
    (void)WalkRecords(bytes, table->recordsStart, [&](const RecordLocation& r) {
      DecodeAsEveryKind(BodyOf(bytes, r.Span()), timeZoneHours);
    });
  }
  // The click of every node, with the pictures written as the window writes them.
  for (NodeId id = 0; id < static_cast<NodeId>(ws.tree().size()); ++id) (void)ClickNode(ws, id);
  return 0;
}

}  // namespace orchidlamp::fuzz
