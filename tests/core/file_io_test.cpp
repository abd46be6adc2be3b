#include "core/file_io.h"

#include <gtest/gtest.h>

#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

// Bytes 0, 1, 2, ... of the given length.
Bytes Counting(std::size_t size) {
  Bytes out(size);
  for (std::size_t i = 0; i < size; ++i) out[i] = static_cast<std::uint8_t>(i * 7 + 3);
  return out;
}

TEST(BufferedFileWriter, PiecesOfEverySizeAcrossBufferBoundariesMakeTheExactFile) {
  TempFolder folder;
  for (std::size_t bufferSize : {1u, 2u, 3u, 7u, 64u, 4096u}) {
    const std::string path = folder.File("out" + std::to_string(bufferSize));
    const Bytes whole = Counting(1000);
    BufferedFileWriter out(path, BufferedFileWriter::Mode::Truncating, bufferSize);
    ASSERT_FALSE(out.failure());
    std::size_t at = 0;
    for (std::size_t piece = 0; at < whole.size(); piece = (piece * 5 + 3) % 17) {
      const std::size_t n = std::min(piece, whole.size() - at);
      if (n == 1) {
        out.Put(whole[at]);
      } else {
        out.Append(ByteView(whole).subspan(at, n));
      }
      at += n;
    }
    ASSERT_TRUE(out.Finish());
    EXPECT_TRUE(ReadFile(path) == whole) << "buffer " << bufferSize;
  }
}

TEST(BufferedFileWriter, InPlaceKeepsALongerFilesTailAndTruncatingDoesNot) {
  TempFolder folder;
  const std::string inPlace = folder.Write("in_place", Counting(50));
  const std::string truncated = folder.Write("truncated", Counting(50));
  for (const auto& [path, mode] : {std::pair{inPlace, BufferedFileWriter::Mode::InPlace},
                                   std::pair{truncated, BufferedFileWriter::Mode::Truncating}}) {
    BufferedFileWriter out(path, mode, 4);
    out.Append(Text("ABCDEFGHIJ"));
    ASSERT_TRUE(out.Finish());
  }
  Bytes expected = Text("ABCDEFGHIJ");
  const Bytes tail = Counting(50);
  expected.insert(expected.end(), tail.begin() + 10, tail.end());
  EXPECT_TRUE(ReadFile(inPlace) == expected);
  EXPECT_TRUE(ReadFile(truncated) == Text("ABCDEFGHIJ"));
}

TEST(BufferedFileWriter, AFolderOrAMissingFolderFailsWithTheWritersTexts) {
  TempFolder folder;
  BufferedFileWriter onFolder(folder.path(), BufferedFileWriter::Mode::InPlace);
  ASSERT_TRUE(onFolder.failure());
  EXPECT_EQ(onFolder.failure()->message.text, "Cannot write " + folder.path() + ": it is a folder");
  onFolder.Append(Text("dropped"));
  const Status finished = onFolder.Finish();
  ASSERT_FALSE(finished);
  EXPECT_EQ(finished.failure().message.text, onFolder.failure()->message.text);

  const std::string missing = folder.File("no/such/file");
  BufferedFileWriter inMissing(missing, BufferedFileWriter::Mode::Truncating);
  ASSERT_FALSE(inMissing.Finish());
  const Status plain = WriteTruncating(missing, Text("x"));
  ASSERT_FALSE(plain);
  EXPECT_EQ(inMissing.failure()->message.text, plain.failure().message.text);
}

TEST(WriteConcatenated, PiecesFollowOneAnotherAndReplaceTheOldFile) {
  TempFolder folder;
  const std::string path = folder.Write("joined", Counting(100));
  ASSERT_TRUE(WriteConcatenated(path, {Text("head"), Bytes{}, Text("-body-"), Text("tail")}));
  EXPECT_TRUE(ReadFile(path) == Text("head-body-tail"));
  EXPECT_FALSE(WriteConcatenated(folder.path(), {Text("x")}));
}

TEST(ReadWholeFile, ReadsEveryByteOfALargeFile) {
  TempFolder folder;
  const Bytes big = Counting(5u << 20);  // past the 2 MiB pages the buffer asks for
  auto read = ReadWholeFile(folder.Write("big", big));
  ASSERT_TRUE(read);
  EXPECT_TRUE(read.value() == big);
}

}  // namespace
}  // namespace orchidlamp
