#include "host/screens/output_file.h"

#include "host/services/draft_file.h"
#include "host/services/output_error.h"
#include "host/services/path_text.h"

namespace basalt::host {

void outputFails(const QString& path, const QString& reason) {
    throw OutputError(QStringLiteral("پرونده‌ی «%1» نوشته نشد: %2").arg(path, reason).toStdString());
}

void askToGoOn(const OutputProgress& progress, int done, int all) {
    if (progress && !progress(done, all)) throw OutputCancelled();
}

void writeOutputFile(const QString& path, const std::function<void(const QString& draft)>& write) {
    try {
        const DraftFile draft(pathFromText(path.toStdString()));
        write(QString::fromStdString(textFromPath(draft.path())));
        draft.replace();
    } catch (const DraftError& error) {
        outputFails(path, QString::fromStdString(error.reason()));
    }
}

}  // namespace basalt::host
