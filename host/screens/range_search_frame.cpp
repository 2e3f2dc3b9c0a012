#include "host/screens/range_search_frame.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <utility>

#include "ado/error.h"
#include "host/screens/disabled_reason.h"
#include "host/screens/number_typing.h"
#include "host/screens/persian_digits.h"
#include "host/screens/search_condition.h"

namespace basalt::host {
namespace {
constexpr int kTitleCharacters = 24;
constexpr int kBoundCharacters = 14;
}  // namespace

RangeSearchFrame::RangeSearchFrame(ScreenContext& context, const QString& objectName, QWidget* parent)
    : TRange_Search_Frame(parent),
      fields_(new QComboBox(this)),
      field_(new QLabel(this)),
      from_{new SearchEdit(objectName + QStringLiteral("_From_EDT"), this), {}},
      to_{new SearchEdit(objectName + QStringLiteral("_To_EDT"), this), {}},
      context_(context),
      change_(context, *this) {
    setObjectName(objectName);
    fields_->setObjectName(objectName + QStringLiteral("_CMB"));
    fields_->setAccessibleName(QStringLiteral("بازهٔ"));
    fields_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    // A long title must leave the bounds their room.
    fields_->setMaximumWidth(fontMetrics().averageCharWidth() * kTitleCharacters);
    for (const Bound* bound : {&from_, &to_})
        bound->edit->setMinimumWidth(fontMetrics().averageCharWidth() * kBoundCharacters);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(fields_);
    layout->addWidget(field_);
    layout->addWidget(new QLabel(QStringLiteral("از"), this));
    layout->addWidget(from_.edit, 1);
    layout->addWidget(new QLabel(QStringLiteral("تا"), this));
    layout->addWidget(to_.edit, 1);
    adaptInputs();

    for (Bound* bound : {&from_, &to_}) {
        SearchEdit* edit = bound->edit;
        edit->installEventFilter(this);
        QObject::connect(edit, &QLineEdit::textChanged, this, [this, bound] {
            refused_.clear();
            heed(*bound);
            if (!change_.isMuted() && narrowsOtherwise()) change_.typed();
        });
        QObject::connect(edit, &QLineEdit::editingFinished, this, [this, edit] { checkBound(*edit); });
    }
    QObject::connect(fields_, &QComboBox::currentIndexChanged, this, [this] {
        {
            const SearchChange::Muted muted(change_);
            adaptInputs();
        }
        if (narrowsOtherwise()) change_.changed();
    });
}

void RangeSearchFrame::heed(Bound& bound) {
    const QString text = bound.edit->text();
    const bool finished = text.isEmpty() || plainAmount(text);
    if (finished) bound.heeded = text;
    bound.edit->setUnfinished(!finished);
}

// An amount is read as the list shows it, but for the one that is being typed: a digit more would leave its marks in
// the wrong places.
bool RangeSearchFrame::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
            showAmount(static_cast<QLineEdit&>(*watched), event->type() == QEvent::FocusOut);
    }
    return TRange_Search_Frame::eventFilter(watched, event);
}

void RangeSearchFrame::showAmount(QLineEdit& bound, bool grouped) {
    const int index = fields_->currentIndex();
    if (index < 0 || items_[static_cast<std::size_t>(index)].DataType != TSearchDataType::Amount) return;
    const auto plain = plainAmount(bound.text());
    if (!plain) return;
    const QString shown = screenNumber((grouped ? groupedAmount(*plain) : *plain).toStdString());
    if (shown == bound.text() || shown.size() > bound.maxLength()) return;
    const SearchChange::Muted muted(change_);
    bound.setText(shown);
}

void RangeSearchFrame::checkBound(SearchEdit& bound) {
    // A screen that closes takes the focus away too, and asks for no number any more.
    if (window()->isHidden()) return;
    const QString text = bound.text();
    // The message itself takes the focus, and so ends the editing once more.
    if (text.isEmpty() || text == refused_ || plainAmount(text)) return;
    refused_ = text;
    context_.guarded(this, [&] {
        context_.host().Messages().show({.operation = "MsgNotANumber",
                                         .arguments = {bound.accessibleName().toStdString(), text.toStdString()},
                                         .control = &bound,
                                         .form = window()});
    });
}

// A choice between items that ask for nothing, or half a number, is no reason to run a statement again.
bool RangeSearchFrame::narrowsOtherwise() {
    const std::string before = std::exchange(narrowing_, Filter());
    return narrowing_ != before;
}

void RangeSearchFrame::adaptInputs() {
    const int index = fields_->currentIndex();
    fields_->setVisible(items_.size() > 1);
    field_->setVisible(items_.size() == 1);
    const QString reason = index >= 0 ? QString() : QStringLiteral("نخست برگزینید که در چه چیزی جستجو شود.");
    enableUnless(*from_.edit, reason);
    enableUnless(*to_.edit, reason);
    if (index < 0) return;
    const TSearchItem& item = items_[static_cast<std::size_t>(index)];
    const QString title = screenText(QString::fromStdString(item.Title));
    field_->setText(title);
    from_.edit->setAccessibleName(QStringLiteral("%1 از").arg(title));
    to_.edit->setAccessibleName(QStringLiteral("%1 تا").arg(title));
    from_.edit->setDataType(item.DataType);
    to_.edit->setDataType(item.DataType);
}

void RangeSearchFrame::init() {
    adaptInputs();
    Clear();
}

std::string RangeSearchFrame::Filter() const {
    const int index = fields_->currentIndex();
    if (index < 0) return {};
    const std::string& field = items_[static_cast<std::size_t>(index)].FieldName;
    std::string condition = rangeCondition(field, from_.heeded, to_.heeded);
    return condition.empty() || !isField_ || isField_(field) ? condition : "1 = 0";
}

QString RangeSearchFrame::narrowing() const {
    if (Filter().empty()) return {};
    const TSearchItem& item = items_[static_cast<std::size_t>(fields_->currentIndex())];
    QString text = QString::fromStdString(item.Title).trimmed();
    for (const auto& [word, bound] : {std::pair("از", &from_), std::pair("تا", &to_)}) {
        const auto number = plainAmount(bound->heeded);
        if (!number) continue;
        const bool amount = item.DataType == TSearchDataType::Amount;
        text += QStringLiteral(" %1 %2").arg(QString::fromUtf8(word),
                                             isolatedNumber((amount ? groupedAmount(*number) : *number).toStdString()));
    }
    return text;
}

void RangeSearchFrame::Clear() {
    const SearchChange::Muted muted(change_);
    from_.edit->clear();
    to_.edit->clear();
    narrowing_.clear();
}

void RangeSearchFrame::FocusFirst() {
    from_.edit->setFocus();
}

TSearchRange RangeSearchFrame::Range() const {
    return {.Item = fields_->currentIndex(),
            .From = from_.edit->text().toStdString(),
            .To = to_.edit->text().toStdString()};
}

void RangeSearchFrame::SetRange(const TSearchRange& range) {
    if (range.Item != -1 || ItemCount() > 0) checkIndex(range.Item, "SetRange");
    const SearchChange::Muted muted(change_);
    fields_->setCurrentIndex(range.Item);
    adaptInputs();
    from_.edit->setText(QString::fromStdString(range.From));
    to_.edit->setText(QString::fromStdString(range.To));
    narrowing_ = Filter();
}

void RangeSearchFrame::AddItem(const TSearchItem& item) {
    const SearchChange::Muted muted(change_);
    items_.push_back(item);
    fields_->addItem(screenText(QString::fromStdString(item.Title)));
    adaptInputs();
}

void RangeSearchFrame::checkIndex(int index, const char* operation) const {
    if (index < 0 || index >= ItemCount())
        throw UsageError(std::string(operation) + " of " + objectName().toStdString() + ": there is no search item " +
                         std::to_string(index));
}

void RangeSearchFrame::DeleteItem(int index) {
    checkIndex(index, "DeleteItem");
    const SearchChange::Muted muted(change_);
    if (fields_->currentIndex() == index) {
        from_.edit->clear();
        to_.edit->clear();
    }
    // The combo box tells of its new current item while the item goes, so the items must be right by then.
    items_.erase(items_.begin() + index);
    fields_->removeItem(index);
    adaptInputs();
    narrowing_ = Filter();
}

TSearchItem RangeSearchFrame::Item(int index) const {
    checkIndex(index, "Item");
    return items_[static_cast<std::size_t>(index)];
}

void RangeSearchFrame::keyPressEvent(QKeyEvent* event) {
    SearchEdit* input = to_.edit->hasFocus() ? to_.edit : from_.edit;
    if (!input->take(event)) event->ignore();
}

}  // namespace basalt::host
