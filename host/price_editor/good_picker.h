// Asks for one good: a search box over a list that narrows while typing.
//
//   GoodPicker picker(host, window);
//   if (picker.exec() == QDialog::Accepted) edit(picker.goodCode());
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "host/services/reference_host.h"

namespace basalt::host {

class GoodPicker final : public QDialog {
public:
    GoodPicker(ReferenceHost& host, QWidget* parent);

    [[nodiscard]] int goodCode() const;  // of the current row; 0 when there is none

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void search();

    ReferenceHost& host_;
    QLineEdit* search_;
    QListWidget* goods_;
    QLabel* count_;
    QPushButton* accept_;
};

}  // namespace basalt::host
