// An error of a statement, with the words that are wrong marked where they stand.
//
//   edit->setPlainText({});
//   showMarked(*edit, "Incorrect syntax near 'from'.\nLine 1, column 7:\nselect from T\n       ^^^^");
//
// Messages carry a row of ^ below the statement's line, which is right where all characters are equally wide and read
// from the left. On the screen they do neither, so the words themselves are underlined and the row is left out.
#pragma once

#include <QPlainTextEdit>
#include <QString>

namespace basalt::host {

struct MarkedStatement {
    QString text;  // the message without the row of marks
    int begin = 0;
    int length = 0;  // UTF-16 units; 0 where the message marks nothing
};

[[nodiscard]] MarkedStatement markedStatement(const QString& message);

// Shows the message from the left, to be read and copied.
void showMarked(QPlainTextEdit& edit, const QString& message);

}  // namespace basalt::host
