// The key that a caption names in its last word.
//
//   splitCaption("حذف F7").title          "حذف"
//   splitCaption("حذف F7").key            QKeySequence("F7")
//   splitCaption("پیش نمایش ليست").key    empty: the last word is no key
#pragma once

#include <QKeySequence>
#include <QString>

namespace basalt::host {

struct CaptionParts {
    QString title;     // without the key
    QString keyTitle;  // as the caption writes it; empty when it names none
    QKeySequence key;
};

[[nodiscard]] CaptionParts splitCaption(const QString& caption);

}  // namespace basalt::host
