#include "support/ipd_builder.h"

#include "core/hex_text.h"
#include "core/ipd_format.h"

namespace orchidlamp::testing {

Bytes Text(std::string_view text) { return Bytes(text.begin(), text.end()); }
Bytes TextZ(std::string_view text) { return Concat({Text(text), Bytes{0}}); }
Bytes Hex(std::string_view hex) { return HexToBytes(hex); }
Bytes LE16(std::uint32_t v) { return {static_cast<std::uint8_t>(v), static_cast<std::uint8_t>(v >> 8)}; }
Bytes LE32(std::uint32_t v) { return Concat({LE16(v & 0xFFFF), LE16(v >> 16)}); }
Bytes LE64(std::uint64_t v) { return Concat({LE32(v & 0xFFFFFFFF), LE32(static_cast<std::uint32_t>(v >> 32))}); }

Bytes Utf16(std::u16string_view text) {
  Bytes b;
  for (char16_t c : text) b.insert(b.end(), {static_cast<std::uint8_t>(c >> 8), static_cast<std::uint8_t>(c & 0xFF)});
  return b;
}
Bytes Concat(std::initializer_list<Bytes> parts) {
  Bytes out;
  for (const Bytes& p : parts) Append(out, p);
  return out;
}
Bytes FieldList(const std::vector<Field>& fields) {
  Bytes out;
  for (const Field& f : fields) Append(out, Concat({LE16(f.data.size() & 0xFFFF), {f.type}, f.data}));
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
  // Body bytes 6.. hold a first field (length 64, type 1) whose data carries the
  // direction at body byte 9 and the stamps at 22-27 and 30-35.
  Bytes header = Concat({Hex("400001"), {sent ? std::uint8_t{0} : std::uint8_t{1}}, Bytes(63, 0)});
  for (int i = 0; i < 6; ++i) {
    header[22 - 6 + i] = static_cast<std::uint8_t>(firstStamp >> (8 * i));
    header[30 - 6 + i] = static_cast<std::uint8_t>(secondStamp >> (8 * i));
  }
  return Record{database, Body(handle, 0x0A0B0C0D, Concat({header, FieldList(fields)}))};
}

Bytes RecordBytes(const Record& r) {
  return Concat({LE16(r.database), LE32(static_cast<std::uint32_t>(r.body.size() + 1)), {r.version}, r.body});
}
Bytes NameBytes(std::string_view name) { return HexToBytes(NameEntryHex(name)); }
Bytes DatFile(std::string_view name, const Bytes& tail) { return Concat({Hex(IpdHeaderHex(1)), NameBytes(name), tail}); }

IpdBuilder& IpdBuilder::Database(std::string name) { return names_.push_back(std::move(name)), *this; }
IpdBuilder& IpdBuilder::Add(const Record& r) { return recordChunk_.push_back(chunks_.size()), Raw(RecordBytes(r)); }
IpdBuilder& IpdBuilder::Raw(const Bytes& bytes) { return chunks_.push_back(bytes), *this; }

Bytes IpdBuilder::Build() const {
  Bytes out = HexToBytes(IpdHeaderHex(names_.size()));
  for (const std::string& name : names_) Append(out, NameBytes(name));
  for (const Bytes& c : chunks_) Append(out, c);
  return out;
}

std::string IpdBuilder::SpanOf(std::size_t recordIndex) const {
  std::size_t offset = kIpdHeaderSize, target = recordChunk_.at(recordIndex);
  for (const std::string& name : names_) offset += 2 + name.size() + 1;
  for (std::size_t i = 0; i < target; ++i) offset += chunks_[i].size();
  return std::to_string(offset + 7) + ":" + std::to_string(offset + chunks_[target].size() - 1);
}

}  // namespace orchidlamp::testing
