#include "host/desktop/save_footer.h"

#include <QHBoxLayout>
#include <QShortcut>

namespace basalt::host {

SaveFooter addSaveFooter(QWidget& page, QBoxLayout& layout, const QString& saved) {
    const SaveFooter footer{.save = new QPushButton(QStringLiteral("ذخیره \u2066F3\u2069")),
                            .undo = new QPushButton(QStringLiteral("بازگرداندن")),
                            .state = new QLabel};
    footer.save->setObjectName(QStringLiteral("Save%1_BTN").arg(saved));
    footer.save->setProperty("kind", QStringLiteral("primary"));
    footer.undo->setObjectName(QStringLiteral("Undo%1_BTN").arg(saved));
    footer.state->setObjectName(QStringLiteral("%1State_LBL").arg(saved));
    footer.state->setTextFormat(Qt::PlainText);
    footer.state->setProperty("kind", QStringLiteral("success"));
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(footer.save);
    row->addWidget(footer.undo);
    row->addSpacing(8);
    row->addWidget(footer.state);
    row->addStretch();
    layout.addLayout(row);
    auto* key = new QShortcut(QKeySequence(Qt::Key_F3), &page);
    key->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(key, &QShortcut::activated, footer.save, &QPushButton::click);
    return footer;
}

}  // namespace basalt::host
