// The closing row of the host's own dialogs: accept and cancel.
#pragma once

#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>

namespace basalt::host {

struct DialogButtons {
    QHBoxLayout* row;     // to be added to the dialog's layout
    QPushButton* accept;  // Ok_BTN, the default button
    QPushButton* cancel;  // Cancel_BTN
};

// Connected to the dialog's accept and reject.
[[nodiscard]] DialogButtons dialogButtons(QDialog& dialog);

}  // namespace basalt::host
