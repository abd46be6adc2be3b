#include "core/file_io.h"

#include <gtest/gtest.h>

#include <numeric>

#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

// Pieces of up to 16 bytes across buffers of any size; in place keeps a longer file's tail.
TEST(BufferedFileWriter, PiecesAcrossBufferBoundariesInPlaceOrTruncating) {
  TempFolder folder;
  Bytes whole(1000), big(5u << 20);  // big: past the 2 MiB pages the read buffer asks for
  std::iota(whole.begin(), whole.end(), std::uint8_t{3});
  std::iota(big.begin(), big.end(), std::uint8_t{7});
  for (std::size_t bufferSize : {1u, 3u, 7u, 64u, 4096u}) {
    for (auto mode : {BufferedFileWriter::Mode::InPlace, BufferedFileWriter::Mode::Truncating}) {
      const std::string path = folder.Write("out", Bytes(1100, 0xEE));
      BufferedFileWriter out(path, mode, bufferSize);
      for (std::size_t at = 0, piece = 0; at < whole.size(); at += piece, piece = (piece * 5 + 3) % 17) {
        piece = std::min(piece, whole.size() - at);
        if (piece == 1) out.Put(whole[at]);
        else out.Append(ByteView(whole).subspan(at, piece));
      }
      ASSERT_TRUE(out.Finish());
      Bytes expected = whole;
      if (mode == BufferedFileWriter::Mode::InPlace) expected.resize(1100, 0xEE);
      EXPECT_TRUE(ReadFile(path) == expected) << "buffer " << bufferSize;
    }
  }
  EXPECT_TRUE(ReadWholeFile(folder.Write("big", big)).value() == big);
}

}  // namespace
}  // namespace orchidlamp
