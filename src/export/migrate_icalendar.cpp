#include <libical/ical.h>

#include <cstdlib>
#include <memory>

#include "export/migrate_writers.h"

namespace orchidlamp {
namespace {

struct ComponentFree {
  void operator()(icalcomponent* c) const { icalcomponent_free(c); }
};

icaltimetype IcalUtc(const UtcDateTime& t) {
  icaltimetype out = icaltime_null_time();
  out.year = t.year;
  out.month = t.month;
  out.day = t.day;
  out.hour = t.hour;
  out.minute = t.minute;
  out.second = t.second;
  out.is_date = 0;
  out.zone = icaltimezone_get_utc_timezone();
  return out;
}

// A property as libical writes it (escaped, folded, CR LF), then freed.
void AppendProperty(std::string& out, icalproperty* property) {
  std::unique_ptr<char, decltype(&std::free)> text(icalproperty_as_ical_string_r(property), &std::free);
  icalproperty_free(property);
  if (text) out += text.get();
}

void AddText(std::string& out, icalproperty* (*make)(const char*), const std::string& text) {
  if (!text.empty()) AppendProperty(out, make(text.c_str()));
}

// A UTC date-time is short and has nothing to escape: libical writes it as
// NAME:YYYYMMDDTHHMMSSZ on one line.
void AddTime(std::string& out, std::string_view name, const std::optional<UtcDateTime>& t) {
  if (!t) return;
  out += name;
  out += ':';
  out += BasicUtcText(*t);
  out += "\r\n";
}

// The task's stored status (0 not started, 1 in progress, 2 completed, 3
// waiting, 4 deferred); waiting and deferred tasks still need doing.
std::optional<icalproperty_status> TaskStatus(std::optional<int> stored) {
  if (!stored) return std::nullopt;
  switch (*stored) {
    case 0: case 3: case 4: return ICAL_STATUS_NEEDSACTION;
    case 1: return ICAL_STATUS_INPROCESS;
    case 2: return ICAL_STATUS_COMPLETED;
    default: return std::nullopt;
  }
}

// Stored 0 high, 1 normal, 2 low; RFC 5545 counts 1 (highest) to 9.
std::optional<int> TaskPriority(std::optional<int> stored) {
  if (!stored || *stored > 2) return std::nullopt;
  return 1 + 4 * *stored;
}

}  // namespace

ICalendarFile::ICalendarFile(std::string path, PrepareFolder prepare, std::time_t now)
    : MigrationFile(std::move(path), std::move(prepare)) {
  // Every component carries the same stamp.
  if (const auto stamp = FromUnixMilliseconds(static_cast<std::int64_t>(now) * 1000))
    AppendProperty(stamp_, icalproperty_new_dtstamp(IcalUtc(*stamp)));
}

// The calendar is written around its components: its head and tail are what
// libical writes for it empty. A component is its BEGIN line, its properties
// and its END line, so each is written as it comes, through libical only for
// the properties whose text it escapes and folds.
void ICalendarFile::Head(BufferedFileWriter& out) {
  std::unique_ptr<icalcomponent, ComponentFree> calendar(icalcomponent_new(ICAL_VCALENDAR_COMPONENT));
  icalcomponent* cal = calendar.get();
  icalcomponent_add_property(cal, icalproperty_new_version("2.0"));
  icalcomponent_add_property(cal, icalproperty_new_prodid("-//Orchidlamp//Orchidlamp//EN"));
  std::unique_ptr<char, decltype(&std::free)> text(icalcomponent_as_ical_string_r(cal), &std::free);
  constexpr std::string_view kEnd = "END:VCALENDAR";
  const std::string_view empty = text ? std::string_view(text.get()) : std::string_view();
  const std::size_t end = empty.rfind(kEnd);
  if (end == std::string_view::npos) {
    SetFailure(Fail("Cannot build the calendar: " + std::string(icalerror_strerror(icalerrno))));
    return;
  }
  out.Append(empty.substr(0, end));
  tail_ = std::string(empty.substr(end));
}

void ICalendarFile::Tail(BufferedFileWriter& out) { out.Append(tail_); }

void ICalendarFile::Add(const MigratedEvent& e) {
  BufferedFileWriter* out = Next();
  if (!out) return;
  std::string& c = component_;
  c = "BEGIN:VEVENT\r\nUID:" + std::to_string(e.uid) + "\r\n" + stamp_;
  AddText(c, icalproperty_new_summary, e.summary);
  AddText(c, icalproperty_new_location, e.location);
  AddTime(c, "DTSTART", e.start);
  AddTime(c, "DTEND", e.end);
  AddText(c, icalproperty_new_description, e.notes);
  c += "END:VEVENT\r\n";
  out->Append(c);
}

void ICalendarFile::Add(const MigratedTask& t) {
  BufferedFileWriter* out = Next();
  if (!out) return;
  std::string& c = component_;
  c = "BEGIN:VTODO\r\nUID:" + std::to_string(t.uid) + "\r\n" + stamp_;
  AddText(c, icalproperty_new_summary, t.summary);
  AddText(c, icalproperty_new_description, t.notes);
  if (const auto status = TaskStatus(t.status)) AppendProperty(c, icalproperty_new_status(*status));
  if (const auto priority = TaskPriority(t.priority)) AppendProperty(c, icalproperty_new_priority(*priority));
  AddTime(c, "DUE", t.due);
  c += "END:VTODO\r\n";
  out->Append(c);
}

}  // namespace orchidlamp
