// The window's tree model over a well-used handheld: the load, then the rows a
// view asks for when a database is expanded and scrolled to its end. The model
// answers from the tree's child lists and labels only the rows it is asked to
// show, so none of this walks the records per row.

#include <benchmark/benchmark.h>

#include <fstream>

#include "core/workspace.h"
#include "generators/large_backup.h"
#include "records/record_kinds.h"
#include "support/temp_folder.h"
#include "ui/tree_model.h"

namespace orchidlamp {
namespace {

void BM_LoadAndShowTreeModel(benchmark::State& state) {
  const std::size_t records = static_cast<std::size_t>(state.range(0));
  testing::TempFolder folder;
  const std::string path = folder.File("large.ipd");
  {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    testing::WriteLargeBackup(out, records, 7);
  }
  const KindLabeller labeller;
  for (auto _ : state) {
    Workspace ws(labeller);
    const Status loaded = ws.Load(path, StoredSettings{});
    if (!loaded) state.SkipWithError(loaded.failure().message.text.c_str());
    TreeModel model(ws.tree(), [](ImageKey) { return QIcon(); });
    const QModelIndex root = model.index(0, 0);
    for (int d = 0; d < model.rowCount(root); ++d) {
      const QModelIndex db = model.index(d, 0, root);
      const int rows = model.rowCount(db);
      if (rows == 0) continue;
      const QModelIndex last = model.index(rows - 1, 0, db);
      benchmark::DoNotOptimize(model.parent(last));
      benchmark::DoNotOptimize(model.data(last));
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * records));
}
BENCHMARK(BM_LoadAndShowTreeModel)->Arg(200'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orchidlamp
