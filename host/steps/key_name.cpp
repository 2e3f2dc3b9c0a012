#include "host/steps/key_name.h"

#include <QKeySequence>
#include <QString>

namespace basalt::host {

std::optional<QKeyCombination> keyNamed(const std::string& name) {
    // The key that people call Enter is the Return key of the keyboard's main block.
    QString text = QString::fromStdString(name);
    if (text == "Enter" || text.endsWith("+Enter")) text = text.chopped(5) + "Return";
    const QKeySequence sequence = QKeySequence::fromString(text, QKeySequence::PortableText);
    if (sequence.count() != 1 || sequence[0].key() == Qt::Key_unknown) return std::nullopt;
    return sequence[0];
}

}  // namespace basalt::host
