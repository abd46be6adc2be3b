#include "export/record_formatters.h"

#include <cstring>
#include <utility>

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

  // Sized once, then copied into: a record costs one growth check, not two per member.
  const Layout& layout = LayoutOf(kind, asText);
  std::size_t size = layout.joinsSize;
  for (std::uint8_t i : layout.members) size += values_[i].size();
  const std::size_t start = out.size();
  out.resize(start + size);
  char* to = out.data() + start;
  const auto put = [&to](std::string_view piece) {
    std::memcpy(to, piece.data(), piece.size());
    to += piece.size();
  };
  for (std::size_t k = 0; k < layout.members.size(); ++k) {
    put(layout.joins[k]);
    put(values_[layout.members[k]]);
  }
  put(layout.joins.back());
}

const RecordFormatter::Layout& RecordFormatter::LayoutOf(const KindSpec& kind, bool asText) {
  std::optional<Layout>& slot = layouts_[asText][static_cast<std::size_t>(kind.kind)];
  if (slot) return *slot;
  // Text: a separator block, then a tab, the caption and ": " before each value,
  // line breaks between. CSV: each value quoted, the delimiter between.
  Layout& layout = slot.emplace();
  std::string pending = asText ? "\r\n" + std::string(kSeparatorLine) + "\r\n" : std::string();
  ForEachExported(*kind.form, [&](const MemberSpec& spec, std::size_t i) {
    const bool first = layout.members.empty();
    if (asText)
      pending.append(first ? "" : "\r\n").append("\t").append(spec.caption).append(": ");
    else
      pending.append(first ? "" : context_.delimiter).append("\"");
    layout.members.push_back(static_cast<std::uint8_t>(i));
    layout.joins.push_back(std::move(pending));
    pending = asText ? std::string() : std::string(1, '"');
  });
  layout.joins.push_back(pending);
  for (const std::string& join : layout.joins) layout.joinsSize += join.size();
  return layout;
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
