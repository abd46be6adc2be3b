// orchidlamp-fuzz-seeds FOLDER [--large]: writes the seed corpora, one folder per
// target, from the bundled sample and the tests' fixtures. Its output is what
// tests/corpus holds as seed-*; run it again when the sample changes.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <tuple>

#include "convert/backup_manifest.h"
#include "convert/desktop_backup_writer.h"
#include "core/kinds.h"
#include "records/record_kinds.h"
#include "support/ipd_builder.h"
#include "generators/hostile_archives.h"
#include "generators/record_shapes.h"
#include "generators/sample_backup.h"
#include "support/temp_folder.h"

namespace {

using namespace orchidlamp;
using namespace orchidlamp::testing;

void Save(const std::filesystem::path& folder, const std::string& target, const std::string& name,
          const Bytes& bytes) {
  std::filesystem::create_directories(folder / target);
  std::ofstream out(folder / target / ("seed-" + name), std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

Bytes WithControls(const Bytes& controls, const Bytes& backup) { return Concat({controls, backup}); }

// Small backups with one trait each: what the loader and the walk treat specially.
std::vector<std::pair<std::string, Bytes>> SmallBackups() {
  ServiceBookValues sb;
  sb.name = "Browser";
  sb.uid = "S1";
  sb.cid = "BrowserConfig";
  sb.description = "d";
  return {
      {"sample", SampleBackup()},
      {"names-only", IpdBuilder().Database("SMS Messages").Database("Memos").Build()},
      {"marker-at-end", IpdBuilder().Database("Memos").Add(FieldRecord(0, {{1, TextZ("m")}})).Raw(MarkerBlock()).Build()},
      {"marker-between",
       IpdBuilder().Database("Tasks").Add(FieldRecord(0, {{2, TextZ("t")}})).Raw(MarkerBlock())
           .Add(FieldRecord(0, {{2, TextZ("u")}})).Build()},
      {"service-book", IpdBuilder().Database("Service Book").Add(FieldRecord(0, ServiceBookFields(sb))).Build()},
      {"empty-record", IpdBuilder().Database("Phone Call Logs").Add(Record{0, {}, 0}).Build()},
      {"wide-text",
       IpdBuilder().Database("Address Book").Add(FieldRecord(0, {{32, WideText(u"\u0645\u0631\u062D\u0628\u0627")}})).Build()},
  };
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 && argc != 3) {
    std::cerr << "usage: orchidlamp-fuzz-seeds FOLDER [--large]\n";
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  const auto backups = SmallBackups();
  for (const auto& [name, bytes] : backups) {
    Save(folder, "ipd_loader", name, bytes);
    Save(folder, "record_decoders", name, WithControls({0x18}, bytes));
    Save(folder, "export", name, WithControls({','}, bytes));
    Save(folder, "migration", name, WithControls({0}, bytes));
  }

  // Editing: every node of the sample ticked in turn would be many files; a few
  // shapes instead: nothing ticked, the root, one database, and the editor on
  // every service-book node with a value set.
  const Bytes sample = SampleBackup();
  const KindLabeller labeller;
  TempFolder temp;
  const std::string samplePath = temp.Write("sample.ipd", sample);
  Workspace ws(labeller);
  if (!ws.Load(samplePath, StoredSettings{})) return 1;
  Save(folder, "editing", "untouched", WithControls({0, 0, 0}, sample));
  Save(folder, "editing", "root-ticked", WithControls({1, 0, 0, 0, 0}, sample));
  Save(folder, "editing", "both-roots", WithControls({2, 0, 0, 0x80, 0, 0, 0}, sample));
  for (NodeId id = 0; id < static_cast<NodeId>(ws.tree().size()); ++id) {
    const DatabaseTree& tree = ws.tree();
    const NodeId parent = tree.Parent(id);
    if (tree.ChildCount(id) > 0 && parent != kNoNode)
      Save(folder, "editing", "database-" + tree.Key(id), WithControls({1, 0, static_cast<std::uint8_t>(id), 0, 0}, sample));
    if (parent == kNoNode || tree.Text(parent) != InfoOf(Kind::ServiceBook).name) continue;
    Save(folder, "editing", "service-book-" + std::to_string(id),
         WithControls({1, 0, static_cast<std::uint8_t>(id), 2, 17, 3, 'n', 'e', 'w', 4, 5, '1', ':', '2', ':', '3',
                       static_cast<std::uint8_t>(id)},
                      sample));
  }

  // Desktop backups: the sample saved as both kinds, and the made-up form
  // (manifest, separator, .dat files) that the target zips itself.
  for (auto [kind, name] : {std::pair{SaveKind::WindowsBbb, "windows.bbb"}, std::pair{SaveKind::MacBbb, "mac.bbb"}}) {
    auto saved = SaveBackupAs(samplePath, temp.File(name), kind, [] { return std::time_t{1234567890}; }, temp.path());
    if (!saved) return 1;
    Save(folder, "desktop_backup", name, ReadFile(temp.File(name)));
  }
  std::vector<Bytes> dats;
  auto summaries = SummarizeForSave(sample, &dats);
  if (!summaries) return 1;
  Bytes made = Concat({Bytes{0}, Text(ManifestXml(summaries.value()))});
  for (const Bytes& dat : dats) made = Concat({made, Text("\n@@\n"), dat});
  Save(folder, "desktop_backup", "made-windows", made);
  Save(folder, "desktop_backup", "made-mac",
       Concat({Bytes{1}, Text(MacBackupXml(summaries.value())), Text("\n@@\n"), sample}));
  // Archives with one hostile trait each; the 65,536-entry one (zip64) is
  // megabytes, so it is written only when asked for with a second argument.
  for (const auto& [name, zip] : HostileArchives()) Save(folder, "desktop_backup", name, zip);
  if (argc > 2) Save(folder, "desktop_backup", "many-entries", ManyEntriesArchive(65536));

  // --keep-going: the sample cut inside its records, so the walk stops part way.
  for (std::size_t cut : {sample.size() / 2, sample.size() - 7})
    Save(folder, "keep_going", "cut-" + std::to_string(cut),
         WithControls({static_cast<std::uint8_t>(cut)}, Bytes(sample.begin(), sample.begin() + static_cast<long>(cut))));

  // Settings: stored texts as the store may hold them, then the sample.
  for (auto [name, zone, delimiter] : {std::tuple{"plain", "GMT", ","}, std::tuple{"half-hour", "+5.5", "TAB"},
                                       std::tuple{"odd", "GMT-GMT+99999999999999999999", "< >"}}) {
    const std::string z = zone, d = delimiter;
    Save(folder, "settings", name,
         Concat({Bytes{static_cast<std::uint8_t>(z.size())}, Text(z), Bytes{static_cast<std::uint8_t>(d.size())},
                 Text(d), sample}));
  }

  // Marker blocks, which the loader and the desktop software pass over differently.
  const Bytes m0 = Hex("FFFF02000000"), m1 = Hex("FFFF02000100");
  const Record task = FieldRecord(1, {{2, TextZ("t")}}), memo = FieldRecord(2, {{1, TextZ("m")}});
  // The loader passes one block of either kind before a record ...
  IpdBuilder one = IpdBuilder().Database("SMS Messages").Database("Tasks").Database("Memos");
  IpdBuilder both = one;
  one.Add(task).Raw(m0).Add(memo).Raw(m1).Add(task);
  Save(folder, "editing", "markers", WithControls({2, 0, 0, 0x80, 0, 0, 0}, one.Build()));
  // ... the desktop software a 00 block and then a 01 block.
  both.Add(task).Raw(m0).Raw(m1).Add(memo).Raw(m1).Add(task).Raw(m0).Add(memo);
  Save(folder, "desktop_backup", "made-mac-markers",
       Concat({Bytes{1}, Text(MacBackupXml({})), Text("\n@@\n"), both.Build()}));
  const Bytes dat = DatFile("Tasks", Concat({RecordBytes(task), m0, m1, RecordBytes(task), m1, m0, Hex("ABCD")}));
  Save(folder, "desktop_backup", "made-windows-markers",
       Concat({Bytes{0}, Text(ManifestXml({{"Tasks", 2}})), Text("\n@@\n"), dat}));
  return 0;
}
