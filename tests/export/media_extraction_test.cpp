#include "export/media_extraction.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/file_io.h"
#include "core/time_stamp.h"
#include "generators/tiny_images.h"
#include "records/record_kinds.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

constexpr std::time_t kNow = 1700000000;

Bytes Cut(const Bytes& b, std::size_t from, std::size_t n) { return Bytes(b.begin() + from, b.begin() + from + n); }

class MediaTest : public ::testing::Test {
 protected:
  // A backup whose only memo carries `payload` as its last field, so the payload
  // ends the file; and an empty media folder (names repeat within a test).
  void Load(const Bytes& payload) {
    IpdBuilder b;
    b.Database("Memos").Add(FieldRecord(0, {{1, Text("m")}, {2, payload}}));
    ws.folders().program = folder.path();
    ASSERT_TRUE(ws.Load(folder.Write("m.ipd", b.Build()), StoredSettings{}));
    std::filesystem::remove_all(folder.File("media"));
    ASSERT_TRUE(CreateFolder(folder.File("media")));
  }
  std::string Saved(std::size_t i, const char* ext) const {
    return folder.path() + "/media/" + DdHhNnSs(kNow) + "_" + std::to_string(i) + ext;
  }

  KindLabeller labeller;
  Workspace ws{labeller, [] { return kNow; }};
  TempFolder folder;
};

// `saved`: the files' contents, in order.
struct MediaCase { const char* what; Bytes payload; bool jpg; std::vector<Bytes> saved; bool fails; };

TEST_F(MediaTest, ImagesPairStartsAndEndsByPosition) {
  const Bytes png = TinyPng(), jpg = TinyJpeg(), noD9 = Cut(jpg, 0, jpg.size() - 1);
  const Bytes cutPng = Concat({Cut(png, 0, 20), Text("IEND"), Cut(png, 20, png.size() - 20)});
  const Bytes thumbnail = Concat({Hex("FFD8FFE000104A46494600010100000100010000"), Hex("FFE1000C"),
                                  Hex("FFD8FFDB0004AABBFFD9"), Hex("FFDB00040102FFD9")});
  const std::vector<MediaCase> cases = {
      {"PNG through the IEND CRC, the second ending the file", Concat({png, Text("gap"), png}), false, {png, png},
       false},
      // A stray IEND is taken by the next start, which lies after it: empty.
      {"stray end between", Concat({png, Text("IEND...."), png}), false, {png, {}}, false},
      {"stray end inside the first", Concat({cutPng, png}), false, {Cut(cutPng, 0, 28), {}}, false},
      {"no IEND", Cut(png, 0, png.size() - 12), false, {}, true},
      {"an IEND without room for its CRC", Cut(png, 0, png.size() - 2), false, {}, true},
      {"a second JPG without an end", Concat({jpg, Cut(jpg, 0, jpg.size() - 2)}), true, {noD9}, true},
      // The first FF D9 after the start ends it (here a thumbnail's, at 32), without its D9.
      {"JPG with a thumbnail", Concat({Text("xx"), thumbnail}), true, {Cut(thumbnail, 0, 33)}, false},
      {"Exif JPG is not looked for", Hex("FFD8FFE1000A4578696600FFD9"), true, {}, false},
      {"no PNG", Text("nothing here"), false, {}, false},
      {"no JPG", Text("nothing here"), true, {}, false},
  };
  for (const MediaCase& c : cases) {
    Load(c.payload);
    const MediaExtraction run = c.jpg ? ExtractJpgImages(ws) : ExtractPngImages(ws);
    ASSERT_EQ(run.saved.size(), c.saved.size()) << c.what;
    for (std::size_t i = 0; i < c.saved.size(); ++i)
      EXPECT_TRUE(run.saved[i] == Saved(i, c.jpg ? ".JPG" : ".PNG") && ReadFile(run.saved[i]) == c.saved[i]) << c.what;
    EXPECT_EQ(run.failure.has_value(), c.fails) << c.what;
    const std::string text = "Successfully saved " + std::to_string(c.saved.size()) + (c.jpg ? " JPG" : " PNG") +
                             " images in the media folder.";
    const Message success{text, "Extracting Media", MessageIcon::None};
    EXPECT_EQ(run.success, c.fails || c.saved.empty() ? std::nullopt : std::optional(success)) << c.what;
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.File("media")));
  Load(Cut(png, 0, png.size() - 12));
  EXPECT_NE(ExtractPngImages(ws).failure->message.text.find("IEND"), std::string::npos);
}

TEST_F(MediaTest, WritingOverALongerFileKeepsItsTailAndAMissingFolderIsAFailure) {
  const Bytes jpg = TinyJpeg(), noD9 = Cut(jpg, 0, jpg.size() - 1);
  Load(jpg);
  ASSERT_TRUE(WriteTruncating(Saved(0, ".JPG"), Bytes(jpg.size() + 100, 'Z')));
  ASSERT_EQ(ExtractJpgImages(ws).saved.size(), 1u);
  EXPECT_EQ(ReadFile(Saved(0, ".JPG")), Concat({noD9, Bytes(101, 'Z')}));
  std::filesystem::remove_all(folder.File("media"));
  const MediaExtraction run = ExtractJpgImages(ws);
  EXPECT_TRUE(run.saved.empty() && run.failure && !FolderExists(folder.File("media")));
}

// Each search starts one byte after the previous hit; fuzz/export_target.cpp
// checks every hit against the search on hex text (byte-aligned matches only).
TEST(FindAll, OverlappingHitsAndHitsOnTheLastBytes) {
  EXPECT_EQ(FindAll(Hex("AAAAAA"), Hex("AAAA")), (std::vector<std::size_t>{0, 1}));
  EXPECT_EQ(FindAll(Hex("00FFD9"), Hex("FFD9")), (std::vector<std::size_t>{1}));
  EXPECT_TRUE(FindAll(Hex("0FFD90"), Hex("FFD9")).empty());  // "F" "FD9" straddles two bytes
}

}  // namespace
}  // namespace orchidlamp
