#pragma once

// The bundled sample backup: one small device backup holding a record of every
// kind the program reads, in both shapes where a kind has two, with Latin and
// Arabic texts, a contact photo, an embedded PNG, a marker block, a service book
// as the device writes it, an unknown database and an "Options" database. It is
// built from fixed values only, so the same bytes come out on every run; the
// committed samples/sample.ipd is exactly these bytes.

#include "core/bytes.h"

namespace orchidlamp::testing {

Bytes SampleBackup();

}  // namespace orchidlamp::testing
