#include "ui/service_book_tabs.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <vector>

namespace orchidlamp {

QTabWidget* BuildServiceBookTabs(QWidget* parent, ServiceBookBoxWidgets& boxes) {
  auto* tabs = new QTabWidget(parent);
  tabs->setObjectName(QStringLiteral("SSTab1"));
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    boxes[i] = new QLineEdit(tabs);
    boxes[i]->setObjectName(QStringLiteral("hrtnet%1").arg(i));
  }
  // A row of several boxes is one value in parts (the gateway address, the two
  // ports). Boxes whose values have no name of their own stand unlabelled.
  struct Row {
    const char* label;
    std::vector<std::size_t> boxes;
  };
  const std::vector<std::pair<const char*, std::vector<Row>>> pages = {
      {"Service Book",
       {{"Name", {17}}, {"Description", {21}}, {"Data Source UID", {18}}, {"Data Source", {19}}, {"User ID", {20}}}},
      {"Network",
       {{"Network Provider Code", {0}},
        {"Wireless Network", {1}},
        {"Network Name", {2}},
        {"", {3}},
        {"", {4}},
        {"Gateway IP", {5, 6, 7, 8}},
        {"Ports", {9, 10}}}},
      {"Browser", {{"Gateway/URL", {11}}, {"Home Page", {12}}, {"", {13}}, {"", {14}}, {"", {15}}, {"", {16}}}},
  };
  for (const auto& [caption, rows] : pages) {
    auto* page = new QWidget(tabs);
    auto* form = new QFormLayout(page);
    for (const Row& row : rows) {
      auto* parts = new QHBoxLayout;
      for (std::size_t b : row.boxes) parts->addWidget(boxes[b]);
      form->addRow(QString::fromLatin1(row.label), parts);
    }
    tabs->addTab(page, QString::fromLatin1(caption));
  }
  return tabs;
}

}  // namespace orchidlamp
