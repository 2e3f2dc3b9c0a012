// Asks where a file is to be saved: the same Persian dialog on every platform.
#pragma once

#include <QFileDialog>

namespace basalt::host {

// Makes any file dialog one of this program's: Persian on every platform, with sizes and days told as everywhere else
// and columns in which they have room.
void dressFileDialog(QFileDialog& dialog);

// A title as a file's name: without what leads into folders or is no part of names on one system or another, none that
// stands for a device, and no longer than every one of them takes with the suffix.
[[nodiscard]] QString fileNameFor(const QString& title);

class SaveFileDialog final : public QFileDialog {
public:
    // `suffix` is without the dot and is added to names that have none. The suggested name may be any title.
    SaveFileDialog(QWidget* parent, const QString& title, const QString& suggestedName, const QString& suffix);
};

}  // namespace basalt::host
