#include "support/ipd_builder.h"

#include "core/hex_text.h"
#include "core/ipd_format.h"

namespace orchidlamp::testing {

Bytes Text(std::string_view text) { return Bytes(text.begin(), text.end()); }

Bytes TextZ(std::string_view text) {
  Bytes b = Text(text);
  b.push_back(0);
  return b;
}

Bytes Utf16(std::u16string_view text) {
  Bytes b;
  for (char16_t c : text) {
    b.push_back(static_cast<std::uint8_t>(c >> 8));
    b.push_back(static_cast<std::uint8_t>(c & 0xFF));
  }
  return b;
}

Bytes Hex(std::string_view hex) { return HexToBytes(hex); }

Bytes LE16(std::uint32_t v) { return {static_cast<std::uint8_t>(v), static_cast<std::uint8_t>(v >> 8)}; }

Bytes LE32(std::uint32_t v) { return Concat({LE16(v & 0xFFFF), LE16(v >> 16)}); }

Bytes LE64(std::uint64_t v) {
  return Concat({LE32(static_cast<std::uint32_t>(v)), LE32(static_cast<std::uint32_t>(v >> 32))});
}

Bytes Concat(std::initializer_list<Bytes> parts) {
  Bytes out;
  for (const Bytes& p : parts) out.insert(out.end(), p.begin(), p.end());
  return out;
}

Bytes FieldBytes(const Field& f) {
  return Concat({LE16(static_cast<std::uint32_t>(f.data.size())), Bytes{f.type}, f.data});
}

Bytes FieldList(const std::vector<Field>& fields) {
  Bytes out;
  for (const Field& f : fields) {
    Bytes b = FieldBytes(f);
    out.insert(out.end(), b.begin(), b.end());
  }
  return out;
}

Bytes Body(std::uint16_t handle, std::uint32_t uid, const Bytes& payload) {
  return Concat({LE16(handle), LE32(uid), payload});
}

Record FieldRecord(std::uint16_t database, const std::vector<Field>& fields, std::uint16_t handle, std::uint32_t uid) {
  return Record{database, Body(handle, uid, FieldList(fields))};
}

Record SmsRecord(std::uint16_t database, bool sent, std::uint64_t firstStamp, std::uint64_t secondStamp,
                 const std::vector<Field>& fields, std::uint16_t handle) {
  // Body bytes 6.. hold a first field whose data carries the direction at body
  // byte 9 and the stamps at 22-27 and 30-35; the field list starts at 73.
  Bytes header(73 - 6, 0);
  header[0] = 64;  // first field: length 64, type 1
  header[1] = 0;
  header[2] = 1;
  header[9 - 6] = sent ? 0 : 1;
  for (int i = 0; i < 6; ++i) {
    header[22 - 6 + i] = static_cast<std::uint8_t>(firstStamp >> (8 * i));
    header[30 - 6 + i] = static_cast<std::uint8_t>(secondStamp >> (8 * i));
  }
  return Record{database, Body(handle, 0x0A0B0C0D, Concat({header, FieldList(fields)}))};
}

Bytes RecordBytes(const Record& r) {
  return Concat({LE16(r.database), LE32(static_cast<std::uint32_t>(r.body.size() + 1)), Bytes{r.version}, r.body});
}

IpdBuilder& IpdBuilder::Database(std::string name) {
  names_.push_back(std::move(name));
  return *this;
}

IpdBuilder& IpdBuilder::Add(const Record& r) {
  recordChunk_.push_back(static_cast<std::ptrdiff_t>(chunks_.size()));
  chunks_.push_back(RecordBytes(r));
  return *this;
}

IpdBuilder& IpdBuilder::Raw(const Bytes& bytes) {
  chunks_.push_back(bytes);
  return *this;
}

Bytes IpdBuilder::Build() const {
  std::string hex = IpdHeaderHex(names_.size());
  for (const std::string& name : names_) hex += NameEntryHex(name);
  Bytes out = HexToBytes(hex);
  for (const Bytes& c : chunks_) out.insert(out.end(), c.begin(), c.end());
  return out;
}

std::string IpdBuilder::SpanOf(std::size_t recordIndex) const {
  std::size_t offset = kIpdHeaderSize;
  for (const std::string& name : names_) offset += 2 + name.size() + 1;
  const auto target = static_cast<std::size_t>(recordChunk_.at(recordIndex));
  for (std::size_t i = 0; i < target; ++i) offset += chunks_[i].size();
  const std::size_t size = chunks_[target].size();
  return std::to_string(offset + 7) + ":" + std::to_string(offset + size - 1);
}

}  // namespace orchidlamp::testing
