#include "host/screens/busy_notice.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <algorithm>
#include <utility>

#include "host/screens/escape_rest.h"
#include "host/screens/persian_digits.h"

namespace basalt::host {
namespace {

constexpr const char* kWaiting = "در انتظار پایگاه داده";
constexpr int kPatienceMilliseconds = 500;
constexpr int kBetweenTurnsMilliseconds = 40;
// Questions of one request come every few milliseconds; after such a pause it is another request.
constexpr int kPauseMilliseconds = 150;

constexpr int kAround = 16;  // the least that is seen of a window around the notice

bool isWindowOfScreens(const QWidget& window) {
    const Qt::WindowType type = window.windowType();
    return window.isVisible() && !window.isMinimized() && (type == Qt::Window || type == Qt::Dialog);
}

// The window that the user works in; nullptr before there is one.
QWidget* windowInUse() {
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    if (QWidget* active = QApplication::activeWindow(); active && isWindowOfScreens(*active)) return active;
    QWidget* other = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (isWindowOfScreens(*window)) other = window;
    return other;
}

}  // namespace

BusyNotice::BusyNotice(Session& session)
    : session_(session), requests_(dynamic_cast<InterruptibleSession*>(&session)), patience_(kPatienceMilliseconds) {
    held_.onEscape = [this] {
        escaped_ = true;
        giveUp();
    };
    if (requests_)
        requests_->onProgress([this] {
            return goOn({kWaiting, [this] {
                             const int seconds = static_cast<int>(began_.elapsed() / 1000);
                             return QStringLiteral("در انتظار پایگاه داده… %1 ثانیه").arg(seconds);
                         }});
        });
}

BusyNotice::~BusyNotice() {
    if (requests_) requests_->onProgress({});
    delete notice_;
}

void BusyNotice::begin() {
    began_.restart();
    painted_.restart();
    cancelled_ = false;
}

bool BusyNotice::writes(int done, int all) {
    return goOn({"نوشتن خروجی", [done, all] {
                     const auto percent = static_cast<int>(all > 0 ? std::int64_t{done} * 100 / all : 100);
                     return QStringLiteral("نوشتن خروجی… %1٪").arg(std::max(0, percent));
                 }});
}

bool BusyNotice::goOn(const Text& text) {
    // A request that was given up asks no more, so whoever asks now is the next one: a list that takes its former rows
    // again, for instance.
    if (!asked_.isValid() || asked_.elapsed() > kPauseMilliseconds || cancelled_) begin();
    if (began_.elapsed() >= patience_ && painted_.elapsed() >= std::min(kBetweenTurnsMilliseconds, patience_)) {
        show(text);
        tell(true);
        inTurn_ = true;
        {
            const HeldInput::Turn turn(held_, notice_);
            QApplication::processEvents(QEventLoop::X11ExcludeTimers);
        }
        inTurn_ = false;
        painted_.restart();
        goWhenOver();
    }
    asked_.restart();
    return !cancelled_;
}

// Events come again when the request is over, this one before the keys that are pressed from then on.
void BusyNotice::goWhenOver() {
    if (leaving_) return;
    leaving_ = true;
    QMetaObject::invokeMethod(this, &BusyNotice::go, Qt::QueuedConnection);
}

void BusyNotice::go() {
    leaving_ = false;
    if (inTurn_) return;
    delete notice_;
    tell(false);
    // The key that was meant for the notice may still be down, or come once more.
    if (std::exchange(escaped_, false)) EscapeRest::ofApplication().begin();
    held_.giveBack();
}

void BusyNotice::tell(bool runs) {
    if (std::exchange(told_, runs) != runs && onRuns) onRuns(runs);
}

void BusyNotice::giveUp() {
    // What is being written cannot be given up half way.
    if (session_.inTransaction()) return;
    cancelled_ = true;
    notice_->hide();
    held_.keepTypedText();
}

void BusyNotice::make() {
    waiting_ = windowInUse();
    held_.waitFor(waiting_);
    notice_ = new QFrame(waiting_);
    notice_->setObjectName(QStringLiteral("Busy_FRM"));
    notice_->setProperty("kind", QStringLiteral("card"));
    notice_->setLayoutDirection(Qt::RightToLeft);
    notice_->setAttribute(Qt::WA_NoMousePropagation);
    text_ = new QLabel(notice_);
    text_->setObjectName(QStringLiteral("Busy_LBL"));
    text_->setMinimumWidth(260);
    auto* cancel = new QPushButton(QStringLiteral("انصراف \u2066Esc\u2069"), notice_);
    cancel->setObjectName(QStringLiteral("BusyCancel_BTN"));
    // The focus stays where it is, and Enter means what it means there.
    cancel->setFocusPolicy(Qt::NoFocus);
    cancel->setAutoDefault(false);
    cancel_ = cancel;
    auto* layout = new QHBoxLayout(notice_);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(16);
    layout->addWidget(text_, 1);
    layout->addWidget(cancel);
    QObject::connect(cancel, &QPushButton::clicked, this, &BusyNotice::giveUp);
}

// Inside of the window that waits; in front of it where it is too small, and alone where there is none.
void BusyNotice::place() {
    const QSize size = notice_->sizeHint();
    if (!waiting_) {
        notice_->setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
        notice_->resize(size);
        return;
    }
    const QSize room = waiting_->size() - 2 * QSize(kAround, kAround);
    QRect place(QPoint(), size);
    place.moveCenter(waiting_->rect().center());
    if (size.width() > room.width() || size.height() > room.height()) {
        notice_->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
        notice_->setAttribute(Qt::WA_ShowWithoutActivating);
        place.moveTopLeft(waiting_->mapToGlobal(place.topLeft()));
    }
    notice_->setGeometry(place);
}

void BusyNotice::show(const Text& text) {
    if (cancelled_) return;
    if (!notice_) make();
    notice_->setWindowTitle(QString::fromUtf8(text.title));
    notice_->setAccessibleName(notice_->windowTitle());
    text_->setText(persianDigits(text.text()));
    // What is being written cannot be given up half way.
    cancel_->setVisible(!session_.inTransaction());
    if (notice_->isVisible()) {
        notice_->resize(notice_->size().expandedTo(notice_->sizeHint()));
        return;
    }
    place();
    notice_->show();
    notice_->raise();
}

}  // namespace basalt::host
