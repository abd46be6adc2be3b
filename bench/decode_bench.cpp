// Labels and detail decoders per kind, on bodies made by the large-backup
// generator: the per-record cost of loading (labels) and of exports (decoders).

#include <benchmark/benchmark.h>

#include <functional>

#include "records/record_kinds.h"
#include "generators/large_backup.h"

namespace orchidlamp {
namespace {

constexpr std::size_t kBodies = 1024;

// Bodies (handle through last byte) of one kind, as the loader hands them on.
std::vector<Bytes> BodiesOf(Kind kind) {
  testing::RecordFaker faker(42);
  std::vector<Bytes> bodies;
  for (std::size_t i = 0; i < kBodies; ++i) {
    testing::Record r;
    switch (kind) {
      case Kind::SmsMessages: r = faker.Sms(0); break;
      case Kind::PhoneCallLogs: r = faker.Call(0); break;
      case Kind::AddressBook: r = faker.Contact(0, false); break;
      case Kind::AddressBookAll: r = faker.Contact(0, true); break;
      case Kind::Calendar: r = faker.Appointment(0, false); break;
      case Kind::CalendarAll: r = faker.Appointment(0, true); break;
      case Kind::Memos: r = faker.Memo(0); break;
      case Kind::Tasks: r = faker.Task(0); break;
      case Kind::AutoText: r = faker.AutoText(0); break;
      case Kind::BrowserBookmarks: r = faker.Bookmark(0); break;
      case Kind::ServiceBook: r = faker.ServiceBook(0); break;
    }
    bodies.push_back(r.body);
  }
  return bodies;
}

void BM_Label(benchmark::State& state, Kind kind) {
  const std::vector<Bytes> bodies = BodiesOf(kind);
  const KindLabeller labeller;
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(labeller.Label(kind, bodies[i]));
    i = (i + 1) % bodies.size();
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_Decode(benchmark::State& state, Kind kind) {
  const std::vector<Bytes> bodies = BodiesOf(kind);
  const KindSpec& spec = SpecOf(kind);
  const DecodeContext context;  // no picture sink: photos are not written
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(DecodeRecord(spec, bodies[i], context));
    i = (i + 1) % bodies.size();
  }
  state.SetItemsProcessed(state.iterations());
}

const bool kRegistered = [] {
  static constexpr std::pair<Kind, const char*> kKinds[] = {
      {Kind::SmsMessages, "Sms"},       {Kind::PhoneCallLogs, "Call"},  {Kind::AddressBookAll, "ContactNested"},
      {Kind::AddressBook, "Contact"},   {Kind::CalendarAll, "AppointmentNested"},
      {Kind::Memos, "Memo"},            {Kind::Tasks, "Task"},          {Kind::AutoText, "AutoText"},
      {Kind::BrowserBookmarks, "Bookmark"}, {Kind::ServiceBook, "ServiceBook"}};
  for (const auto& [kind, name] : kKinds) {
    benchmark::RegisterBenchmark((std::string("BM_Label/") + name).c_str(), BM_Label, kind);
    if (SpecOf(kind).HasMembers()) benchmark::RegisterBenchmark((std::string("BM_Decode/") + name).c_str(), BM_Decode, kind);
  }
  return true;
}();

}  // namespace
}  // namespace orchidlamp
