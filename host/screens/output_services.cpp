#include "host/screens/output_services.h"

#include <QFileInfo>

#include "host/screens/print_preview.h"
#include "host/screens/save_file_dialog.h"
#include "host/screens/toast.h"
#include "host/services/isolated_text.h"

namespace basalt::host {

void tellSaved(QWidget& window, const QString& path) {
    const std::string name = isolated(QFileInfo(path).fileName().toStdString());
    Toast::show(&window, QStringLiteral("پروندهٔ «%1» نوشته شد.").arg(QString::fromStdString(name)));
}

std::optional<QString> DialogOutputServices::chooseFile(QWidget* parent, const QString& title,
                                                        const QString& suggestedName, const QString& suffix) {
    SaveFileDialog dialog(parent, title, suggestedName, suffix);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return dialog.selectedFiles().constFirst();
}

void DialogOutputServices::preview(ScreenContext& context, QWidget* parent, PrintDocument& document,
                                   const QPageLayout& paper) {
    PrintPreview(context, document, paper, parent).exec();
    context.rethrowUnshown();
}

}  // namespace basalt::host
