// Loading a generated backup the way the window and the command line do: read,
// name table, record walk, a label per record, status counts.

#include <benchmark/benchmark.h>

#include <fstream>
#include <map>
#include <memory>

#include "core/workspace.h"
#include "records/record_kinds.h"
#include "generators/large_backup.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

// One generated file per size for the whole run, removed at exit.
const std::string& BackupOf(std::size_t records) {
  static testing::TempFolder folder;
  static std::map<std::size_t, std::string> paths;
  auto [it, fresh] = paths.try_emplace(records);
  if (fresh) {
    it->second = folder.File("bench-" + std::to_string(records) + ".ipd");
    std::ofstream out(it->second, std::ios::binary | std::ios::trunc);
    testing::WriteLargeBackup(out, records, 1);
  }
  return it->second;
}

void BM_Load(benchmark::State& state) {
  const std::size_t records = static_cast<std::size_t>(state.range(0));
  const std::string& path = BackupOf(records);
  const KindLabeller labeller;
  std::size_t bytes = 0;
  for (auto _ : state) {
    Workspace ws(labeller);
    Status loaded = ws.Load(path, StoredSettings{});
    if (!loaded) state.SkipWithError(loaded.failure().message.text.c_str());
    bytes = ws.file().bytes.size();
    benchmark::DoNotOptimize(ws.tree().size());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * records));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_Load)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orchidlamp
