#include "host/screens/output_services.h"

#include <QFileDialog>
#include <QPrintPreviewDialog>
#include <QStandardPaths>

namespace basalt::host {

std::optional<QString> DialogOutputServices::chooseFile(QWidget* parent, const QString& title,
                                                        const QString& suggestedName, const QString& suffix) {
    QFileDialog dialog(parent, title, QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    dialog.setObjectName(QStringLiteral("SaveFile_FRM"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(suffix);
    dialog.setNameFilter(QStringLiteral("%1 (*.%2)").arg(suffix.toUpper(), suffix));
    dialog.selectFile(suggestedName + QLatin1Char('.') + suffix);
    dialog.setLabelText(QFileDialog::Accept, QStringLiteral("ذخیره"));
    dialog.setLabelText(QFileDialog::Reject, QStringLiteral("انصراف"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return dialog.selectedFiles().constFirst();
}

QPageLayout pageLayout(QPageSize::PageSizeId paper, QPageLayout::Orientation orientation) {
    constexpr qreal kMargin = 10;
    return {QPageSize(paper), orientation, QMarginsF(kMargin, kMargin, kMargin, kMargin), QPageLayout::Millimeter};
}

void DialogOutputServices::preview(QWidget* parent, const QString& title, const QPageLayout& layout,
                                   const std::function<void(QPrinter&)>& paint) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageLayout(layout);
    printer.setDocName(title);
    QPrintPreviewDialog dialog(&printer, parent);
    dialog.setObjectName(QStringLiteral("PrintPreview_FRM"));
    dialog.setWindowTitle(title);
    dialog.resize(900, 700);
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog, [&](QPrinter* target) { paint(*target); });
    dialog.exec();
}

}  // namespace basalt::host
