#include "host/screens/output_services.h"

#include "host/screens/print_preview.h"
#include "host/screens/save_file_dialog.h"

namespace basalt::host {

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
