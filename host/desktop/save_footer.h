// What stands below a page whose changes are saved together: save, take back, and a line on what came of it.
//
//   const SaveFooter footer = addSaveFooter(*this, layout, "Settings");
//   QObject::connect(footer.save, &QPushButton::clicked, ...);
#pragma once

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace basalt::host {

struct SaveFooter {
    QPushButton* save;
    QPushButton* undo;
    QLabel* state;  // plain text
};

// The names of the three are made of what is saved: SaveSettings_BTN, UndoSettings_BTN, SettingsState_LBL. F3 anywhere
// on the page clicks the first.
[[nodiscard]] SaveFooter addSaveFooter(QWidget& page, QBoxLayout& layout, const QString& saved);

}  // namespace basalt::host
