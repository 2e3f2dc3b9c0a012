#include "host/screens/dialog_buttons.h"

namespace basalt::host {

DialogButtons dialogButtons(QDialog& dialog) {
    const auto button = [&](const char* objectName, const QString& text) {
        auto* made = new QPushButton(text, &dialog);
        made->setObjectName(QString::fromLatin1(objectName));
        made->setAutoDefault(false);
        return made;
    };
    DialogButtons buttons{.row = new QHBoxLayout,
                          .accept = button("Ok_BTN", QStringLiteral("تأیید")),
                          .cancel = button("Cancel_BTN", QStringLiteral("انصراف"))};
    buttons.accept->setDefault(true);
    buttons.row->addStretch(1);
    buttons.row->addWidget(buttons.accept);
    buttons.row->addWidget(buttons.cancel);
    QObject::connect(buttons.accept, &QPushButton::clicked, &dialog, &QDialog::accept);
    QObject::connect(buttons.cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    return buttons;
}

}  // namespace basalt::host
