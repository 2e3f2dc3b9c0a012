// The print settings of a report: title, paper, orientation, and which columns in which order.
//
//   TPrintSetting setting;
//   if (askPrintSetting(context, request, setting)) ...
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include "host/screens/column_list.h"
#include "host/screens/screen_context.h"
#include "package/screens/print_setting.h"

namespace basalt::host {

class PrintSettingDialog final : public QDialog {
public:
    // `standardTitle` is printed where the user gives no other.
    PrintSettingDialog(const TPrintSetting& start, const QString& standardTitle, QWidget* parent);

    [[nodiscard]] TPrintSetting setting() const;

private:
    TPrintSetting start_;
    QString standardTitle_;
    QLineEdit* title_;
    QLabel* titleLimit_;
    QComboBox* paper_;
    QRadioButton* portrait_;
    QRadioButton* landscape_;
    ColumnList* columns_;
};

// Starts from what the user chose for the report the last time, and keeps what is chosen now if the database
// takes it. As PrintSetting.
[[nodiscard]] bool askPrintSetting(ScreenContext& context, const TPrintSettingRequest& request, TPrintSetting& setting);

}  // namespace basalt::host
