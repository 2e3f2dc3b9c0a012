#include "host/desktop/database_opener.h"

#include <QFileDialog>

#include "host/engines/open_database.h"

namespace basalt::host {
namespace {

QString fileFilter() {
    return QStringLiteral("پایگاه دادهٔ بازالت (*.db);;همهٔ پرونده‌ها (*)");
}

std::optional<QString> chosen(const QString& file) {
    if (file.isEmpty()) return std::nullopt;
    return file;
}

}  // namespace

DatabaseFileChooser DatabaseFileChooser::dialogs() {
    return {.existing =
                [] {
                    return chosen(
                        QFileDialog::getOpenFileName(nullptr, QStringLiteral("گزینش پایگاه داده"), {}, fileFilter()));
                },
            .created =
                [] {
                    // An existing file is never overwritten, so there is nothing to confirm.
                    return chosen(QFileDialog::getSaveFileName(nullptr, QStringLiteral("ساخت پایگاه دادهٔ نمایشی"),
                                                               QStringLiteral("demo.db"), fileFilter(), nullptr,
                                                               QFileDialog::DontConfirmOverwrite));
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
                if (const auto file = files_.created()) {
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
