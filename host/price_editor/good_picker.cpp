#include "host/price_editor/good_picker.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "host/price_editor/good_search.h"
#include "host/screens/disabled_reason.h"
#include "host/screens/elided_row.h"
#include "host/screens/persian_digits.h"
#include "host/screens/persian_inputs.h"
#include "host/services/sql_access.h"
#include "package/screens/tool_tip.h"

namespace basalt::host {
namespace {

// Enough to see what a search finds; who wants another good types on.
constexpr int kMostGoods = 200;

}  // namespace

GoodPicker::GoodPicker(ScreenContext& context, QWidget* parent)
    : QDialog(parent),
      context_(context),
      search_(new QLineEdit(this)),
      pause_(context, *this, [this] { search(); }),
      found_(new QStackedWidget(this)),
      goods_(new QListWidget(found_)),
      notice_(new QLabel),
      clear_(new QPushButton(QStringLiteral("پاک کردن جستجو \u2066Esc\u2069"))),
      count_(new QLabel(this)),
      accept_(new QPushButton(QStringLiteral("انتخاب"), this)) {
    setObjectName(QStringLiteral("GoodPicker_FRM"));
    setWindowTitle(QStringLiteral("انتخاب کالا"));
    setLayoutDirection(Qt::RightToLeft);
    resize(520, 560);
    search_->setObjectName(QStringLiteral("GoodSearch_EDT"));
    search_->setPlaceholderText(QStringLiteral("کد، نام یا بارکد کالا"));
    search_->setAccessibleName(search_->placeholderText());
    search_->setClearButtonEnabled(true);
    readFromRight(*search_);
    search_->installEventFilter(this);
    goods_->installEventFilter(this);
    goods_->setObjectName(QStringLiteral("Goods_LST"));
    goods_->setAccessibleName(QStringLiteral("کالاها"));
    goods_->setItemDelegate(new ElidedRowDelegate(goods_));
    goods_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    count_->setObjectName(QStringLiteral("GoodCount_LBL"));
    count_->setProperty("kind", QStringLiteral("hint"));
    accept_->setObjectName(QStringLiteral("Ok_BTN"));
    accept_->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("انصراف"), this);
    cancel->setObjectName(QStringLiteral("Cancel_BTN"));
    cancel->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(count_, 1);
    buttons->addWidget(accept_);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(10);
    layout->addWidget(search_);
    found_->addWidget(goods_);
    found_->addWidget(makeNotice());
    layout->addWidget(found_, 1);
    layout->addLayout(buttons);

    QObject::connect(search_, &QLineEdit::textChanged, this, [this] { pause_.typed(); });
    QObject::connect(goods_, &QListWidget::itemActivated, this,
                     [this](const QListWidgetItem* item) { take(item->data(Qt::UserRole).toInt()); });
    QObject::connect(accept_, &QPushButton::clicked, this, &QDialog::accept);
    QObject::connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    search();
}

QWidget* GoodPicker::makeNotice() {
    notice_->setObjectName(QStringLiteral("NoGoods_LBL"));
    notice_->setTextFormat(Qt::PlainText);
    notice_->setAlignment(Qt::AlignCenter);
    notice_->setWordWrap(true);
    clear_->setObjectName(QStringLiteral("ClearSearch_BTN"));
    clear_->setAutoDefault(false);
    QObject::connect(clear_, &QPushButton::clicked, this, &GoodPicker::clearSearch);
    auto* page = new QWidget(found_);
    auto* layout = new QVBoxLayout(page);
    layout->addStretch();
    layout->addWidget(notice_);
    layout->addWidget(clear_, 0, Qt::AlignHCenter);
    layout->addStretch();
    return page;
}

void GoodPicker::clearSearch() {
    search_->clear();
    search_->setFocus();
    static_cast<void>(goodsAreFound());
}

bool GoodPicker::goodsAreFound() {
    return foundFor_ == search_->text() ? pause_.finish() : pause_.search();
}

void GoodPicker::accept() {
    if (goodsAreFound() && goodCode() != 0) QDialog::accept();
}

// A good that was pointed at, when the text still finds it.
void GoodPicker::take(int code) {
    if (!goodsAreFound()) return;
    for (int row = 0; row < goods_->count() && goodCode() != code; ++row)
        if (goods_->item(row)->data(Qt::UserRole).toInt() == code) goods_->setCurrentRow(row);
    if (goodCode() == code) QDialog::accept();
}

void GoodPicker::step(int rows) {
    if (!goodsAreFound()) return;
    const int row = goods_->currentRow() + rows;
    if (row >= 0 && row < goods_->count()) goods_->setCurrentRow(row);
}

void GoodPicker::search() {
    const QString wanted = search_->text();
    RowSet rows;
    try {
        rows = rowsOf(context_.host().session(), goodSearch(wanted, kMostGoods));
    } catch (...) {
        count_->setText(QStringLiteral(
            "این‌ها کالاهای جستجوی پیشین‌اند؛ برای جستجو Enter را بزنید"));
        throw;
    }
    foundFor_ = wanted;
    goods_->clear();
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        const auto code = static_cast<int>(integerAt(rows, 0, row));
        const QString name = screenText(QString::fromStdString(textAt(rows, 1, row)));
        auto* item = new QListWidgetItem(persianDigits(QString::number(code)) + QStringLiteral("   ") + name, goods_);
        item->setData(Qt::UserRole, code);
        item->setToolTip(plainToolTip(name));
    }
    goods_->setCurrentRow(goods_->count() > 0 ? 0 : -1);
    enableUnless(*accept_, goods_->count() > 0 ? QString() : emptyListReason());
    const bool searched = !wanted.trimmed().isEmpty();
    notice_->setText(
        searched
            ? QStringLiteral("کالایی با «%1» پیدا نشد.\nبرای دیدن همهٔ کالاها جستجو را پاک کنید.").arg(wanted.trimmed())
            : QStringLiteral("هنوز کالایی تعریف نشده است."));
    clear_->setVisible(searched);
    found_->setCurrentIndex(goods_->count() > 0 ? 0 : 1);
    const QString found = goods_->count() == kMostGoods ? QStringLiteral("%1 کالای نخست").arg(kMostGoods)
                                                        : QStringLiteral("%1 کالا").arg(goods_->count());
    count_->setText(persianDigits(found));
}

int GoodPicker::goodCode() const {
    const QListWidgetItem* item = goods_->currentItem();
    return item ? item->data(Qt::UserRole).toInt() : 0;
}

void GoodPicker::keyPressEvent(QKeyEvent* event) {
    // From a search that found nothing the way back is to the goods; the next Escape leaves.
    if (event->key() == Qt::Key_Escape && clear_->isVisible()) {
        clearSearch();
        return;
    }
    QDialog::keyPressEvent(event);
}

bool GoodPicker::eventFilter(QObject* watched, QEvent* event) {
    if (watched == search_ && event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent*>(event)->key()) {
            // The list is walked through without leaving the search.
            case Qt::Key_Down:
                step(1);
                return true;
            case Qt::Key_Up:
                step(-1);
                return true;
            // Also while there is nothing to take in the list of before.
            case Qt::Key_Return:
            case Qt::Key_Enter:
                accept();
                return true;
            default:
                break;
        }
    }
    // Who comes to the list by keyboard means the first good that is found.
    if (watched == goods_ && event->type() == QEvent::FocusIn) {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) static_cast<void>(goodsAreFound());
    }
    return QDialog::eventFilter(watched, event);
}

}  // namespace basalt::host
