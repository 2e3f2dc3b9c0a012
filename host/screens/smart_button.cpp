#include "host/screens/smart_button.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <array>

#include "ado/error.h"

namespace basalt::host {
namespace {

struct SaveVariant {
    TSaveKind kind;
    const char* objectName;
    const char* title;
};

constexpr std::array<SaveVariant, 4> kSaveVariants{{
    {TSaveKind::Save, "BaseSave_ACT", "ذخیره"},
    {TSaveKind::SaveAndNew, "BaseSaveANDNew_ACT", "ذخیره و جدید"},
    {TSaveKind::SaveAndClose, "BaseSaveANDClose_ACT", "ذخیره و خروج"},
    {TSaveKind::SaveAndPrint, "BaseSaveANDPrint_ACT", "ذخیره و چاپ"},
}};

void polishAgain(QWidget* widget) {
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
}

}  // namespace

SmartButton::SmartButton(ScreenContext& context, const QString& objectName, QWidget* parent)
    : TSmartButton_VRO(parent), context_(context), button_(new InnerControl<QPushButton>(this)) {
    setObjectName(objectName);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(1);
    layout->addWidget(button_);
    button_->setAutoDefault(false);
    setFocusProxy(button_);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    QObject::connect(button_, &QPushButton::clicked, this, [this] { Click(); });
}

void SmartButton::SetCaption(const std::string& caption) {
    caption_ = caption;
    parts_ = splitCaption(QString::fromStdString(caption));
    showCaption();
}

void SmartButton::showCaption() {
    // The key is set off by a wide blank and stands on its own, so that the two directions of writing do not mix.
    QString text = parts_.title;
    text.replace(QLatin1Char('&'), QLatin1String("&&"));
    if (!parts_.keyTitle.isEmpty()) text += QStringLiteral("\u2002\u2066%1\u2069").arg(parts_.keyTitle);
    button_->setText(text);
    setAccessibleName(parts_.title);
    button_->setAccessibleName(parts_.title);
    button_->setAccessibleDescription(parts_.keyTitle);
}

void SmartButton::Click() {
    if (!isEnabled() || (gate_ && !gate_()) || !isEnabled()) return;
    context_.guarded(this, [this] {
        if (onSave_) {
            onSave_(saveKind_);
        } else if (OnClick) {
            OnClick();
        }
    });
}

void SmartButton::setLook(Look look) {
    const char* kind = look == Look::Primary ? "primary" : look == Look::Danger ? "danger" : "";
    button_->setProperty("kind", QString::fromLatin1(kind));
    polishAgain(button_);
}

void SmartButton::setSaveHandler(std::function<void(TSaveKind)> handler) {
    onSave_ = std::move(handler);
}

void SmartButton::setGate(std::function<bool()> gate) {
    gate_ = std::move(gate);
}

void SmartButton::SetSaveMode(int mode) {
    if (mode < 0 || mode >= static_cast<int>(kSaveVariants.size()))
        throw UsageError("SetSaveMode of " + objectName().toStdString() + ": there is no save mode " +
                         std::to_string(mode) + ", only 0 to 3");
    saveKind_ = kSaveVariants[static_cast<std::size_t>(mode)].kind;
    fillMenu();
}

void SmartButton::fillMenu() {
    if (!variants_) {
        variants_ = new QToolButton(this);
        variants_->setObjectName(objectName() + QStringLiteral("_Variants"));
        variants_->setProperty("kind", QStringLiteral("split"));
        variants_->setArrowType(Qt::NoArrow);
        variants_->setText(QStringLiteral("▾"));
        variants_->setToolTip(QStringLiteral("روش‌های دیگر ذخیره"));
        variants_->setAccessibleName(variants_->toolTip());
        variants_->setPopupMode(QToolButton::InstantPopup);
        variants_->setFocusPolicy(Qt::StrongFocus);
        variants_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);  // as high as the button
        menu_ = new QMenu(variants_);
        variants_->setMenu(menu_);
        layout()->addWidget(variants_);
        // Made late, it would be the last of the screen that Tab reaches.
        QWidget::setTabOrder(button_, variants_);
    }
    menu_->clear();
    for (const SaveVariant& variant : kSaveVariants) {
        if (variant.kind == saveKind_ || variant.kind == leftOut_) continue;
        QAction* action = menu_->addAction(QString::fromUtf8(variant.title), this, [this, kind = variant.kind] {
            if (isEnabled() && onSave_) context_.guarded(this, [this, kind] { onSave_(kind); });
        });
        action->setObjectName(QString::fromLatin1(variant.objectName));
    }
}

void SmartButton::keyPressEvent(QKeyEvent* event) {
    if (!button_->take(event)) event->ignore();
}
void SmartButton::keyReleaseEvent(QKeyEvent* event) {
    if (!button_->take(event)) event->ignore();
}

void SmartButton::pass(QMouseEvent* event) {
    // An event aimed at the whole control means its button, wherever in the control it fell.
    QMouseEvent inside(event->type(), QPointF(button_->rect().center()), event->globalPosition(), event->button(),
                       event->buttons(), event->modifiers());
    button_->take(&inside);
    event->setAccepted(true);
}
void SmartButton::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) pass(event);
}
void SmartButton::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) pass(event);
}

}  // namespace basalt::host
