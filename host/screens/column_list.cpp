#include "host/screens/column_list.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "host/screens/persian_digits.h"

namespace basalt::host {

ColumnList::ColumnList(const std::vector<ColumnChoice>& choices, const QString& accessibleName, QWidget* parent)
    : QWidget(parent), list_(new QListWidget(this)), up_(nullptr), down_(nullptr) {
    list_->setObjectName(QStringLiteral("Columns_LST"));
    list_->setAccessibleName(accessibleName);
    // Long titles wrap instead of going on where nobody sees it.
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setWordWrap(true);
    for (const ColumnChoice& choice : choices) {
        auto* item = new QListWidgetItem(screenText(choice.title), list_);
        item->setData(Qt::UserRole, choice.column);
        item->setCheckState(choice.visible ? Qt::Checked : Qt::Unchecked);
    }
    list_->setCurrentRow(0);
    setFocusProxy(list_);

    const auto button = [this](const char* objectName, const QString& text) {
        auto* made = new QPushButton(text, this);
        made->setObjectName(QString::fromLatin1(objectName));
        made->setAutoDefault(false);
        return made;
    };
    up_ = button("Up_BTN", QStringLiteral("بالا"));
    down_ = button("Down_BTN", QStringLiteral("پایین"));
    auto* moving = new QHBoxLayout;
    moving->addWidget(up_);
    moving->addWidget(down_);
    moving->addStretch(1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    layout->addWidget(list_, 1);
    layout->addLayout(moving);

    QObject::connect(up_, &QPushButton::clicked, this, [this] { move(-1); });
    QObject::connect(down_, &QPushButton::clicked, this, [this] { move(1); });
    QObject::connect(list_, &QListWidget::currentRowChanged, this, [this] { showState(); });
    QObject::connect(list_, &QListWidget::itemChanged, this, [this] { showState(); });
    showState();
}

void ColumnList::move(int distance) {
    const int row = list_->currentRow();
    const int target = row + distance;
    if (row < 0 || target < 0 || target >= list_->count()) return;
    list_->insertItem(target, list_->takeItem(row));
    list_->setCurrentRow(target);
}

void ColumnList::showState() {
    const int row = list_->currentRow();
    up_->setEnabled(row > 0);
    down_->setEnabled(row >= 0 && row + 1 < list_->count());
    if (onChange) onChange();
}

bool ColumnList::anyVisible() const {
    for (int i = 0; i < list_->count(); ++i)
        if (list_->item(i)->checkState() == Qt::Checked) return true;
    return false;
}

std::vector<ColumnChoice> ColumnList::choices() const {
    std::vector<ColumnChoice> chosen;
    for (int i = 0; i < list_->count(); ++i) {
        const QListWidgetItem* item = list_->item(i);
        chosen.push_back({item->data(Qt::UserRole).toInt(), item->text(), item->checkState() == Qt::Checked});
    }
    return chosen;
}

}  // namespace basalt::host
