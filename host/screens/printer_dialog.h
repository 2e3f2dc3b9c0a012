// Which printer prints which pages, and how often.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QPrinterInfo>
#include <QRadioButton>
#include <QSpinBox>

namespace basalt::host {

class PrinterDialog final : public QDialog {
public:
    // `page` is the page in front, from 0.
    PrinterDialog(int pageCount, int page, QWidget* parent);

    [[nodiscard]] bool hasPrinters() const { return printer_->count() > 0; }
    [[nodiscard]] QPrinterInfo printer() const;
    [[nodiscard]] int firstPage() const;  // from 0
    [[nodiscard]] int lastPage() const;
    [[nodiscard]] int copies() const { return copies_->value(); }

private:
    [[nodiscard]] QSpinBox* makeNumber(const char* objectName, const QString& title, int highest, int value);

    int page_;
    int pageCount_;
    QComboBox* printer_;
    QRadioButton* all_;
    QRadioButton* current_;
    QRadioButton* range_;
    QSpinBox* from_;
    QSpinBox* to_;
    QSpinBox* copies_;
};

}  // namespace basalt::host
