#include "export/record_formatters.h"

#include "records/contact_picture.h"

namespace orchidlamp {
namespace {

// Calls `visit(spec, index)` for every exported member in the file's order.
template <typename Visit>
void ForEachExported(const RecordForm& form, Visit visit) {
  if (!form.exported.order.empty()) {
    for (std::uint8_t i : form.exported.order) visit(form.members[i], i);
    return;
  }
  for (std::size_t i = 0; i < form.members.size(); ++i)
    if (!form.members[i].caption.empty()) visit(form.members[i], i);
}

}  // namespace

const KindSpec* ExportedKindByText(std::string_view databaseText) {
  const auto kind = KindByName(databaseText);
  if (!kind) return nullptr;
  const KindSpec& spec = SpecOf(*kind);
  return spec.HasMembers() ? &spec : nullptr;
}

std::string FormatRecord(const KindSpec& kind, ByteView body, const RecordSpan& span, const FormatContext& context,
                         bool asText) {
  std::string out;
  RecordFormatter(context).Append(out, kind, body, span, asText);
  return out;
}

void RecordFormatter::Append(std::string& out, const KindSpec& kind, ByteView body, const RecordSpan& span,
                             bool asText) {
  DecodeRecordInto(kind, body, DecodeContext{context_.timeZoneHours, span.first, &context_.pictures}, values_);
  const RecordForm& form = *kind.form;
  bool identified = false;
  for (std::uint8_t i : form.exported.identity) identified = identified || !values_[i].empty();
  if (!identified) {
    out += kSkipped;
    return;
  }

  if (asText) out.append("\r\n").append(kSeparatorLine).append("\r\n");
  bool first = true;
  ForEachExported(form, [&](const MemberSpec& spec, std::size_t i) {
    if (asText) {
      if (!first) out += "\r\n";
      out.append("\t").append(spec.caption).append(": ").append(values_[i]);
    } else {
      if (!first) out += context_.delimiter;
      out.append("\"").append(values_[i]).append("\"");
    }
    first = false;
  });
}

std::string CsvHeader(const KindSpec& kind) {
  std::string header;
  ForEachExported(*kind.form, [&](const MemberSpec& spec, std::size_t) {
    if (!header.empty()) header += ',';
    header += spec.caption;
  });
  return header;
}

FormatContext FormatContextOf(const Workspace& ws) {
  return FormatContext{ws.settings().timeZoneHours, ws.settings().delimiter, ContactPictureWriter(ws.ProgramFolder())};
}

}  // namespace orchidlamp
