#include "host/screens/output_file.h"

#include <cerrno>

#include "host/services/draft_file.h"
#include "host/services/isolated_text.h"
#include "host/services/output_error.h"
#include "host/services/path_text.h"
#include "host/services/system_errors.h"

namespace basalt::host {

void askToGoOn(const OutputProgress& progress, int done, int all) {
    if (progress && !progress(done, all)) throw OutputCancelled();
}

void writeOutputFile(const QString& path, const std::function<bool(const QString& draft)>& write) {
    const std::filesystem::path place = pathFromText(path.toStdString());
    try {
        const DraftFile draft(place);
        errno = 0;
        if (!write(QString::fromStdString(textFromPath(draft.path())))) draft.fail();
        draft.replace();
    } catch (const DraftError& error) {
        throw OutputError("پروندهٔ «" + readFromLeft(textFromPath(place)) +
                          "» نوشته نشد: " + fileErrorSentence(error.reason()));
    }
}

}  // namespace basalt::host
