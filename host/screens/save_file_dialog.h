// Asks where a file is to be saved: the same Persian dialog on every platform.
#pragma once

#include <QFileDialog>

namespace basalt::host {

// Makes any file dialog one of this program's: Persian on every platform, with sizes and days told as everywhere else
// and columns in which they have room.
void dressFileDialog(QFileDialog& dialog);

class SaveFileDialog final : public QFileDialog {
public:
    // `suffix` is without the dot and is added to names that have none.
    SaveFileDialog(QWidget* parent, const QString& title, const QString& suggestedName, const QString& suffix);
};

}  // namespace basalt::host
