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

void AddText(icalcomponent* c, icalproperty* (*make)(const char*), const std::string& text) {
  if (!text.empty()) icalcomponent_add_property(c, make(text.c_str()));
}

void AddTime(icalcomponent* c, icalproperty* (*make)(icaltimetype), const std::optional<UtcDateTime>& t) {
  if (t) icalcomponent_add_property(c, make(IcalUtc(*t)));
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
    : MigrationFile(std::move(path), std::move(prepare)), stamp_(FromUnixMilliseconds(static_cast<std::int64_t>(now) * 1000)) {}

// The calendar is written around its components, one at a time: its head and
// tail are what libical writes for it empty.
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

void ICalendarFile::Component(void* component) {
  std::unique_ptr<icalcomponent, ComponentFree> owned(static_cast<icalcomponent*>(component));
  BufferedFileWriter* out = Next();
  if (!out) return;
  std::unique_ptr<char, decltype(&std::free)> text(icalcomponent_as_ical_string_r(owned.get()), &std::free);
  if (!text) return SetFailure(Fail("Cannot build the calendar: " + std::string(icalerror_strerror(icalerrno))));
  out->Append(std::string_view(text.get()));
}

void ICalendarFile::Add(const MigratedEvent& e) {
  icalcomponent* event = icalcomponent_new(ICAL_VEVENT_COMPONENT);
  AddText(event, icalproperty_new_uid, std::to_string(e.uid));
  AddTime(event, icalproperty_new_dtstamp, stamp_);
  AddText(event, icalproperty_new_summary, e.summary);
  AddText(event, icalproperty_new_location, e.location);
  AddTime(event, icalproperty_new_dtstart, e.start);
  AddTime(event, icalproperty_new_dtend, e.end);
  AddText(event, icalproperty_new_description, e.notes);
  Component(event);
}

void ICalendarFile::Add(const MigratedTask& t) {
  icalcomponent* todo = icalcomponent_new(ICAL_VTODO_COMPONENT);
  AddText(todo, icalproperty_new_uid, std::to_string(t.uid));
  AddTime(todo, icalproperty_new_dtstamp, stamp_);
  AddText(todo, icalproperty_new_summary, t.summary);
  AddText(todo, icalproperty_new_description, t.notes);
  if (const auto status = TaskStatus(t.status)) icalcomponent_add_property(todo, icalproperty_new_status(*status));
  if (const auto priority = TaskPriority(t.priority))
    icalcomponent_add_property(todo, icalproperty_new_priority(*priority));
  AddTime(todo, icalproperty_new_due, t.due);
  Component(todo);
}

}  // namespace orchidlamp
