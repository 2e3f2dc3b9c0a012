#include "host/desktop/database_opener.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include "host/engines/open_database.h"
#include "host/screens/save_file_dialog.h"

namespace basalt::host {
namespace {

QString fileFilter() {
    return QStringLiteral("پایگاه دادهٔ بازالت (*.db);;همهٔ پرونده‌ها (*)");
}

std::optional<QString> choose(const QString& title, const QString& suggested, QFileDialog::AcceptMode mode) {
    const QFileInfo file(suggested);
    QFileDialog dialog(nullptr, title, file.absolutePath(), fileFilter());
    dressFileDialog(dialog);
    dialog.setAcceptMode(mode);
    dialog.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    // An existing file is never overwritten, so there is nothing to confirm.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (mode == QFileDialog::AcceptSave) dialog.selectFile(file.fileName());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return dialog.selectedFiles().constFirst();
}

}  // namespace

DatabaseFileChooser DatabaseFileChooser::dialogs() {
    return {.existing =
                [] {
                    return choose(QStringLiteral("گزینش پایگاه داده"), QDir::homePath() + QLatin1Char('/'),
                                  QFileDialog::AcceptOpen);
                },
            .created =
                [](const QString& suggested) {
                    return choose(QStringLiteral("ساخت پایگاه دادهٔ نمایشی"), suggested, QFileDialog::AcceptSave);
                }};
}

std::optional<OpenedDatabase> DatabaseOpener::open() {
    while (true) {
        try {
            return openForDesktop(url_, options_);
        } catch (const std::exception& error) {
            if (!ask(error)) return std::nullopt;
        }
    }
}

// The file that was asked for, where there is none yet; beside one that cannot be opened, another name.
QString DatabaseOpener::suggestedFile() const {
    QString other = QStringLiteral("demo.db");
    if (url_.engine != EngineKind::Embedded || url_.inMemory()) return other;
    const QFileInfo asked(QString::fromStdString(url_.target));
    return asked.exists() ? asked.dir().filePath(other) : asked.filePath();
}

bool DatabaseOpener::ask(const std::exception& error) {
    DatabaseProblemDialog dialog(describeProblem(error), QString::fromStdString(error.what()),
                                 QString::fromStdString(url_.display()));
    while (true) {
        dialog.exec();
        switch (dialog.result() == QDialog::Accepted ? dialog.choice() : DatabaseProblemDialog::Choice::Exit) {
            case DatabaseProblemDialog::Choice::Exit:
                return false;
            case DatabaseProblemDialog::Choice::Retry:
                return true;
            case DatabaseProblemDialog::Choice::ChooseFile:
                if (const auto file = files_.existing()) {
                    url_ = {EngineKind::Embedded, file->toStdString()};
                    options_.createMissing = false;
                    return true;
                }
                break;
            case DatabaseProblemDialog::Choice::CreateDemo:
                if (const auto file = files_.created(suggestedFile())) {
                    url_ = {EngineKind::Embedded, file->toStdString()};
                    // An existing file is opened, and refused when it is none of ours.
                    options_.createMissing = true;
                    return true;
                }
                break;
        }
    }
}

}  // namespace basalt::host
