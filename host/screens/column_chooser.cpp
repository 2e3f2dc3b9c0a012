#include "host/screens/column_chooser.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace basalt::host {

ColumnChooser::ColumnChooser(const std::vector<ColumnChoice>& choices, QWidget* parent)
    : QDialog(parent), list_(new QListWidget(this)) {
    setObjectName(QStringLiteral("ColumnChooser_FRM"));
    setWindowTitle(QStringLiteral("ستون‌ها"));
    setLayoutDirection(Qt::RightToLeft);
    resize(360, 420);
    list_->setObjectName(QStringLiteral("Columns_LST"));
    list_->setAccessibleName(windowTitle());
    for (const ColumnChoice& choice : choices) {
        auto* item = new QListWidgetItem(choice.title, list_);
        item->setData(Qt::UserRole, choice.column);
        item->setCheckState(choice.visible ? Qt::Checked : Qt::Unchecked);
    }
    list_->setCurrentRow(0);

    const auto button = [this](const char* objectName, const QString& text) {
        auto* made = new QPushButton(text, this);
        made->setObjectName(QString::fromLatin1(objectName));
        made->setAutoDefault(false);
        return made;
    };
    auto* up = button("Up_BTN", QStringLiteral("بالا"));
    auto* down = button("Down_BTN", QStringLiteral("پایین"));
    auto* accept = button("Ok_BTN", QStringLiteral("تأیید"));
    auto* cancel = button("Cancel_BTN", QStringLiteral("انصراف"));
    accept->setDefault(true);
    up_ = up;
    down_ = down;
    accept_ = accept;

    auto* hint = new QLabel(
        QStringLiteral("ستون‌هایی را که می‌خواهید ببینید نشان بگذارید."),
        this);
    hint->setProperty("kind", QStringLiteral("hint"));
    hint->setWordWrap(true);
    auto* moving = new QHBoxLayout;
    moving->addWidget(up);
    moving->addWidget(down);
    moving->addStretch(1);
    auto* closing = new QHBoxLayout;
    closing->addStretch(1);
    closing->addWidget(accept);
    closing->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(10);
    layout->addWidget(hint);
    layout->addWidget(list_, 1);
    layout->addLayout(moving);
    layout->addLayout(closing);

    QObject::connect(up, &QPushButton::clicked, this, [this] { move(-1); });
    QObject::connect(down, &QPushButton::clicked, this, [this] { move(1); });
    QObject::connect(accept, &QPushButton::clicked, this, &QDialog::accept);
    QObject::connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    QObject::connect(list_, &QListWidget::currentRowChanged, this, [this] { showState(); });
    QObject::connect(list_, &QListWidget::itemChanged, this, [this] { showState(); });
    showState();
}

void ColumnChooser::move(int distance) {
    const int row = list_->currentRow();
    const int target = row + distance;
    if (row < 0 || target < 0 || target >= list_->count()) return;
    list_->insertItem(target, list_->takeItem(row));
    list_->setCurrentRow(target);
}

void ColumnChooser::showState() {
    const int row = list_->currentRow();
    up_->setEnabled(row > 0);
    down_->setEnabled(row >= 0 && row + 1 < list_->count());
    bool anyVisible = false;
    for (int i = 0; i < list_->count(); ++i)
        anyVisible = anyVisible || list_->item(i)->checkState() == Qt::Checked;
    accept_->setEnabled(anyVisible);
}

std::vector<ColumnChoice> ColumnChooser::choices() const {
    std::vector<ColumnChoice> chosen;
    for (int i = 0; i < list_->count(); ++i) {
        const QListWidgetItem* item = list_->item(i);
        chosen.push_back({item->data(Qt::UserRole).toInt(), item->text(), item->checkState() == Qt::Checked});
    }
    return chosen;
}

}  // namespace basalt::host
