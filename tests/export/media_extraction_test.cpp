#include "export/media_extraction.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/file_io.h"
#include "records/record_kinds.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"
#include "generators/tiny_images.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

constexpr std::time_t kNow = 1700000000;

Bytes Cut(const Bytes& b, std::size_t from, std::size_t count) {
  return Bytes(b.begin() + static_cast<std::ptrdiff_t>(from), b.begin() + static_cast<std::ptrdiff_t>(from + count));
}

std::size_t OffsetOf(const Bytes& hay, const Bytes& needle, std::size_t from = 0) {
  const auto hits = FindAll(ByteView(hay).subspan(from), needle);
  return hits.empty() ? std::string::npos : from + hits.front();
}

class MediaTest : public ::testing::Test {
 protected:
  // A backup whose only memo carries `payload` as its last field, so the payload
  // ends the file; and an empty media folder (names repeat within a test).
  void Load(const Bytes& payload) {
    IpdBuilder b;
    b.Database("Memos");
    b.Add(FieldRecord(0, {{1, Text("m")}, {2, payload}}));
    file = b.Build();
    ASSERT_TRUE(ws.Load(folder.Write("m.ipd", file), StoredSettings{}));
    std::filesystem::remove_all(folder.File("media"));
    ASSERT_TRUE(CreateFolder(folder.File("media")));
  }
  std::string Saved(std::size_t i, const char* ext) const {
    return folder.path() + "/media/" + DdHhNnSs(kNow) + "_" + std::to_string(i) + ext;
  }

  KindLabeller labeller;
  Workspace ws{labeller, [] { return kNow; }};
  TempFolder folder;
  Bytes file;

 public:
  MediaTest() { ws.folders().program = folder.path(); }
};

TEST_F(MediaTest, PngThroughIendCrcEvenAtTheEndOfTheFile) {
  const Bytes png = TinyPng();
  Load(Concat({png, Text("gap"), png}));
  const MediaExtraction run = ExtractPngImages(ws);
  ASSERT_FALSE(run.failure);
  ASSERT_EQ(run.saved, (std::vector<std::string>{Saved(0, ".PNG"), Saved(1, ".PNG")}));
  EXPECT_EQ(ReadFile(run.saved[0]), png);
  EXPECT_EQ(ReadFile(run.saved[1]), png);
  EXPECT_EQ(file.size() - OffsetOf(file, png, OffsetOf(file, png) + 1), png.size());  // the second ends the file
  ASSERT_TRUE(run.success);
  EXPECT_EQ(*run.success,
            (Message{"Successfully saved 2 PNG images in the media folder.", "Extracting Media", MessageIcon::None}));
}

TEST_F(MediaTest, PngStartsAndEndsPairByPositionSoAStrayEndShiftsLaterPairs) {
  const Bytes png = TinyPng();
  // A, a stray IEND, B: A ends well, B takes the stray end, which lies before
  // it, and comes out empty; B's own IEND is never used.
  Load(Concat({png, Text("IEND...."), png}));
  const MediaExtraction run = ExtractPngImages(ws);
  ASSERT_FALSE(run.failure);
  ASSERT_EQ(run.saved.size(), 2u);
  EXPECT_EQ(ReadFile(run.saved[0]), png);
  EXPECT_TRUE(ReadFile(run.saved[1]).empty());

  // A stray IEND inside A cuts A short, and B then gets A's end: empty again.
  const Bytes cutA = Concat({Cut(png, 0, 20), Text("IEND"), Cut(png, 20, png.size() - 20)});
  Load(Concat({cutA, png}));
  const MediaExtraction shifted = ExtractPngImages(ws);
  ASSERT_EQ(shifted.saved.size(), 2u);
  EXPECT_EQ(ReadFile(shifted.saved[0]), Concat({Cut(png, 0, 20), Text("IEND"), Cut(png, 20, 4)}));
  EXPECT_TRUE(ReadFile(shifted.saved[1]).empty());
}

TEST_F(MediaTest, AStartWithoutAnEndStopsTheRunKeepingEarlierImages) {
  const Bytes png = TinyPng();
  Load(Cut(png, 0, png.size() - 12));  // no IEND chunk at all
  MediaExtraction run = ExtractPngImages(ws);
  EXPECT_TRUE(run.saved.empty());
  EXPECT_FALSE(run.success);
  ASSERT_TRUE(run.failure);
  EXPECT_NE(run.failure->message.text.find("IEND"), std::string::npos);

  const Bytes jpg = TinyJpeg();
  Load(Concat({jpg, Cut(jpg, 0, jpg.size() - 2)}));
  run = ExtractJpgImages(ws);
  ASSERT_EQ(run.saved, std::vector<std::string>{Saved(0, ".JPG")});
  EXPECT_EQ(ReadFile(run.saved[0]), Cut(jpg, 0, jpg.size() - 1));
  EXPECT_FALSE(run.success);
  ASSERT_TRUE(run.failure);
}

TEST_F(MediaTest, AnIendWithoutRoomForItsCrcIsAFailureNotACrash) {
  const Bytes png = TinyPng();
  Load(Cut(png, 0, png.size() - 2));
  const MediaExtraction run = ExtractPngImages(ws);
  EXPECT_TRUE(run.saved.empty());
  ASSERT_TRUE(run.failure);
}

TEST_F(MediaTest, JpgStopsAtTheFirstEndMarkerAndLeavesOutItsD9) {
  // A JFIF image whose APP1 holds a thumbnail: the thumbnail's FF D9 ends it.
  const Bytes thumbnail = Hex("FFD8FFDB0004AABBFFD9");
  const Bytes jpg = Concat({Hex("FFD8FFE000104A46494600010100000100010000"), Hex("FFE1000C"), thumbnail,
                            Hex("FFDB00040102FFD9")});
  Load(Concat({Text("xx"), jpg}));
  const MediaExtraction run = ExtractJpgImages(ws);
  ASSERT_EQ(run.saved.size(), 1u);
  const std::size_t thumbEnd = OffsetOf(jpg, Hex("FFD9"));
  EXPECT_EQ(ReadFile(run.saved[0]), Cut(jpg, 0, thumbEnd + 1));
  ASSERT_TRUE(run.success);
  EXPECT_EQ(run.success->text, "Successfully saved 1 JPG images in the media folder.");

  // Non-JFIF JPEG data (an Exif APP1 first) is not found.
  Load(Hex("FFD8FFE1000A4578696600FFD9"));
  EXPECT_TRUE(ExtractJpgImages(ws).saved.empty());
  EXPECT_FALSE(ExtractJpgImages(ws).success);
}

TEST_F(MediaTest, WritingOverALongerFileKeepsItsTail) {
  const Bytes jpg = TinyJpeg();
  Load(jpg);
  const Bytes old(jpg.size() + 100, 'Z');
  ASSERT_TRUE(WriteTruncating(Saved(0, ".JPG"), old));
  const MediaExtraction run = ExtractJpgImages(ws);
  ASSERT_EQ(run.saved.size(), 1u);
  const Bytes now = ReadFile(run.saved[0]);
  ASSERT_EQ(now.size(), old.size());
  EXPECT_EQ(Cut(now, 0, jpg.size() - 1), Cut(jpg, 0, jpg.size() - 1));
  EXPECT_EQ(Cut(now, jpg.size() - 1, 101), Bytes(101, 'Z'));
}

TEST_F(MediaTest, AMissingMediaFolderIsAFailureAndNothingIsCreated) {
  Load(TinyPng());
  std::filesystem::remove_all(folder.File("media"));
  const MediaExtraction run = ExtractPngImages(ws);
  EXPECT_TRUE(run.saved.empty());
  ASSERT_TRUE(run.failure);
  EXPECT_FALSE(FolderExists(folder.File("media")));
}

TEST_F(MediaTest, NoImagesMeansNoFilesAndNoMessage) {
  Load(Text("nothing here"));
  const MediaExtraction png = ExtractPngImages(ws), jpg = ExtractJpgImages(ws);
  EXPECT_TRUE(png.saved.empty() && jpg.saved.empty());
  EXPECT_FALSE(png.success || png.failure || jpg.success || jpg.failure);
  EXPECT_TRUE(std::filesystem::is_empty(folder.File("media")));
}

TEST(FindAll, EveryHitStartsOneByteAfterThePrevious) {
  EXPECT_EQ(FindAll(Hex("AAAAAA"), Hex("AAAA")), (std::vector<std::size_t>{0, 1}));
  EXPECT_TRUE(FindAll(Hex("AA"), Hex("AAAA")).empty());
  EXPECT_TRUE(FindAll({}, Hex("AA")).empty());
}

}  // namespace
}  // namespace orchidlamp
