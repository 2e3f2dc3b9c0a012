#include "host/screens/printer_dialog.h"

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "host/screens/dialog_buttons.h"
#include "host/screens/persian_digits.h"

namespace basalt::host {
namespace {
constexpr int kMostCopies = 99;
}

PrinterDialog::PrinterDialog(int pageCount, int page, QWidget* parent)
    : QDialog(parent),
      page_(page),
      pageCount_(pageCount),
      printer_(new QComboBox(this)),
      all_(new QRadioButton(persianDigits(QStringLiteral("همهٔ %1 صفحه").arg(pageCount)), this)),
      current_(new QRadioButton(persianDigits(QStringLiteral("صفحهٔ %1").arg(page + 1)), this)),
      range_(new QRadioButton(QStringLiteral("از صفحهٔ"), this)),
      from_(makeNumber("FromPage_SPN", QStringLiteral("از صفحهٔ"), pageCount, 1)),
      to_(makeNumber("ToPage_SPN", QStringLiteral("تا صفحهٔ"), pageCount, pageCount)),
      copies_(makeNumber("Copies_SPN", QStringLiteral("تعداد نسخه"), kMostCopies, 1)) {
    setObjectName(QStringLiteral("Printer_FRM"));
    setWindowTitle(QStringLiteral("چاپ"));
    setLayoutDirection(Qt::RightToLeft);
    printer_->setObjectName(QStringLiteral("Printer_CMB"));
    printer_->addItems(QPrinterInfo::availablePrinterNames());
    printer_->setCurrentText(QPrinterInfo::defaultPrinterName());
    printer_->setMinimumWidth(260);
    all_->setObjectName(QStringLiteral("AllPages_RDB"));
    all_->setChecked(true);
    current_->setObjectName(QStringLiteral("CurrentPage_RDB"));
    range_->setObjectName(QStringLiteral("PageRange_RDB"));
    auto* pages = new QHBoxLayout;
    pages->addWidget(range_);
    pages->addWidget(from_);
    pages->addWidget(new QLabel(QStringLiteral("تا"), this));
    pages->addWidget(to_);
    pages->addStretch(1);
    auto* form = new QFormLayout;
    form->setVerticalSpacing(10);
    form->addRow(QStringLiteral("چاپگر :"), printer_);
    form->addRow(QStringLiteral("صفحه‌ها :"), all_);
    form->addRow(QString(), current_);
    form->addRow(QString(), pages);
    form->addRow(QStringLiteral("تعداد نسخه :"), copies_);
    const DialogButtons buttons = dialogButtons(*this);
    buttons.accept->setText(QStringLiteral("چاپ"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(16);
    layout->addLayout(form);
    layout->addLayout(buttons.row);
    // Who names pages wants those.
    for (QSpinBox* number : {from_, to_})
        QObject::connect(number, &QSpinBox::valueChanged, this, [this] { range_->setChecked(true); });
}

QSpinBox* PrinterDialog::makeNumber(const char* objectName, const QString& title, int highest, int value) {
    auto* number = new QSpinBox(this);
    number->setObjectName(QString::fromLatin1(objectName));
    number->setAccessibleName(title);
    number->setRange(1, highest);
    number->setValue(value);
    return number;
}

QPrinterInfo PrinterDialog::printer() const {
    return QPrinterInfo::printerInfo(printer_->currentText());
}

int PrinterDialog::firstPage() const {
    if (current_->isChecked()) return page_;
    return range_->isChecked() ? std::min(from_->value(), to_->value()) - 1 : 0;
}

int PrinterDialog::lastPage() const {
    if (current_->isChecked()) return page_;
    return range_->isChecked() ? std::max(from_->value(), to_->value()) - 1 : pageCount_ - 1;
}

}  // namespace basalt::host
