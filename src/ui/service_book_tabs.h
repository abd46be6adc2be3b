#pragma once

// The 22 service-book boxes hrtnet(0) ... hrtnet(21) on the tabs of SSTab1, laid
// out alike on the main window's panel and in the service-book editor.

#include <QLineEdit>
#include <QTabWidget>
#include <array>

#include "core/workspace.h"

namespace orchidlamp {

using ServiceBookBoxWidgets = std::array<QLineEdit*, kServiceBookBoxes>;

// Makes the boxes (object names "hrtnet0" ...) and the tab widget holding them.
QTabWidget* BuildServiceBookTabs(QWidget* parent, ServiceBookBoxWidgets& boxes);

}  // namespace orchidlamp
