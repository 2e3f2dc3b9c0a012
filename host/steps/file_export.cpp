#include "host/steps/file_export.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QTimer>
#include <algorithm>

#include "host/steps/screen_finder.h"
#include "host/steps/step_failure.h"

namespace basalt::host {

namespace {

constexpr int kLookMilliseconds = 10;

QAction& requireExport(QWidget& grid, const std::string& format) {
    const QString name =
        QStringLiteral("Grid%1%2_ACT")
            .arg(QString::fromStdString(format).left(1).toUpper(), QString::fromStdString(format).mid(1));
    for (QAction* action : grid.actions())
        if (action->objectName() == name && action->isEnabled()) return *action;
    throw StepFailure(grid.objectName().toStdString() + " to offer an export to " + format, "none");
}

QByteArray contents(const std::string& file) {
    QFile source(QString::fromStdString(file));
    if (!source.open(QIODevice::ReadOnly)) throw StepFailure("the file " + file, "none that can be read");
    return source.readAll();
}

}  // namespace

std::function<void()> exportGrid(const std::string& grid, const std::string& format, const std::string& file) {
    QAction& action = requireExport(requireObject(grid), format);
    const QFileInfo target(QString::fromStdString(file));
    // The dialog that asks for a name would not take these, and stay open.
    if (target.isDir()) throw StepFailure("the name of a file", "the folder " + file);
    if (!QDir().mkpath(target.absolutePath()))
        throw StepFailure("to write the file " + file, "that its folder cannot be made");
    return [&action, path = target.absoluteFilePath()] {
        QTimer answering;
        answering.setInterval(kLookMilliseconds);
        QObject::connect(&answering, &QTimer::timeout, &answering, [&] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            auto* name = dialog ? dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")) : nullptr;
            if (!name) return;
            answering.stop();
            dialog->setOption(QFileDialog::DontConfirmOverwrite);
            name->setText(path);
            static_cast<QDialog*>(dialog)->accept();
        });
        answering.start();
        action.trigger();
    };
}

void requireFile(const std::string& file, const std::string& expected) {
    const QByteArray found = contents(file);
    if (found.isEmpty()) throw StepFailure("something in the file " + file, "nothing");
    if (expected.empty()) return;
    const QByteArray wanted = contents(expected);
    if (found == wanted) return;
    const QList<QByteArray> foundLines = found.split('\n');
    const QList<QByteArray> wantedLines = wanted.split('\n');
    const auto [one, other] =
        std::mismatch(foundLines.begin(), foundLines.end(), wantedLines.begin(), wantedLines.end());
    const auto text = [](const QList<QByteArray>& lines, QList<QByteArray>::const_iterator at) {
        return at == lines.end() ? std::string("its end") : '"' + at->trimmed().toStdString() + '"';
    };
    throw StepFailure(
        text(wantedLines, other) + " in line " + std::to_string(one - foundLines.begin() + 1) + " of " + file,
        text(foundLines, one));
}

}  // namespace basalt::host
