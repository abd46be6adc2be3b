#pragma once

// Record fields as Unicode text (UTF-8) for the migration files. Unlike the
// display routes, nothing goes through the Arabic code page: UTF-16 stays what
// it holds, and 8-bit text is read in the code page the user names.

#include <iconv.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/bytes.h"
#include "core/result.h"
#include "core/utf8.h"

namespace orchidlamp {

inline constexpr std::string_view kDefaultMigrateCharset = "windows-1256";

// One iconv conversion from a named 8-bit code page to UTF-8. Not shareable
// between threads: iconv keeps its shift state in the handle.
class CodePage {
 public:
  // Fails with the name when iconv does not know it.
  static Result<CodePage> Open(const std::string& name);

  // The bytes read in this code page, without the controls DropControls
  // drops; a byte it cannot convert becomes U+FFFD.
  std::string ToUtf8(ByteView bytes) const;

 private:
  struct Closer {
    void operator()(void* handle) const;
  };
  explicit CodePage(iconv_t handle) : handle_(handle) {}
  std::string Convert(ByteView bytes) const;

  std::unique_ptr<void, Closer> handle_;
  // Each byte's text, controls dropped, when the code page reads every byte on
  // its own (no state, no multi-byte sequences): a text is then its bytes'
  // texts joined, without a call into iconv, and as each byte's text is whole
  // characters, dropping controls byte by byte drops the same. Empty for other
  // code pages.
  std::vector<std::string> byteTexts_;
};

// Control characters other than TAB, CR and LF (C0, DEL and C1) removed from
// UTF-8 text. Line breaks inside a value are data, so they stay.
std::string DropControls(std::string_view utf8);

// True when the bytes are valid UTF-8 and hold at least one multi-byte sequence.
bool LooksLikeUtf8(ByteView bytes);

// UTF-16 big-endian code units as UTF-8; a lone surrogate becomes U+FFFD, an odd
// last byte is ignored. Controls dropped.
std::string Utf16Text(ByteView utf16be);
// A field of the paired "+128" form: one lead byte, then UTF-16 big-endian.
std::string Utf16AfterLead(ByteView data);
// An 8-bit field: UTF-8 when it looks like UTF-8, else the code page. Controls dropped.
std::string EightBitText(ByteView bytes, const CodePage& codePage);
// The GSM 03.38 default alphabet, one character a byte, 0x1B escaping to the
// extension table. Bytes must be below 0x80. Controls dropped.
std::string GsmText(ByteView septets);

// An SMS message (field 4) by the encoding its field 7 states: first data byte
// 2 is UCS-2 big-endian, anything else the GSM alphabet (or, with a byte above
// 0x7F, the 8-bit rule). Without field 7 data, a first byte of 06 means UTF-16,
// anything else the 8-bit rule.
std::string SmsMessageText(ByteView message, ByteView encodingField, const CodePage& codePage);

}  // namespace orchidlamp
