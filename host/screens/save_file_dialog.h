// Asks where a file is to be saved: the same Persian dialog on every platform.
#pragma once

#include <QFileDialog>

namespace basalt::host {

class SaveFileDialog final : public QFileDialog {
public:
    // `suffix` is without the dot and is added to names that have none.
    SaveFileDialog(QWidget* parent, const QString& title, const QString& suggestedName, const QString& suffix);
};

}  // namespace basalt::host
