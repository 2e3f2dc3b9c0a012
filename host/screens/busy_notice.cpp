#include "host/screens/busy_notice.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <algorithm>

#include "host/screens/persian_digits.h"

namespace basalt::host {
namespace {

constexpr const char* kWaiting = "در انتظار پایگاه داده";
constexpr int kPatienceMilliseconds = 500;
constexpr int kBetweenTurnsMilliseconds = 40;
// Questions of one request come every few milliseconds; after such a pause it is another request.
constexpr int kPauseMilliseconds = 150;

}  // namespace

BusyNotice::BusyNotice(Session& session)
    : session_(session),
      requests_(dynamic_cast<InterruptibleSession*>(&session)),
      text_(new QLabel(&window_)),
      patience_(kPatienceMilliseconds) {
    window_.setObjectName(QStringLiteral("Busy_FRM"));
    window_.setLayoutDirection(Qt::RightToLeft);
    window_.setWindowModality(Qt::ApplicationModal);
    window_.setWindowFlag(Qt::WindowCloseButtonHint, false);
    text_->setObjectName(QStringLiteral("Busy_LBL"));
    text_->setMinimumWidth(260);
    auto* cancel = new QPushButton(QStringLiteral("انصراف"), &window_);
    cancel->setObjectName(QStringLiteral("BusyCancel_BTN"));
    cancel_ = cancel;
    auto* layout = new QHBoxLayout(&window_);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(16);
    layout->addWidget(text_, 1);
    layout->addWidget(cancel);
    // Escape rejects the window, which is the same wish.
    QObject::connect(cancel, &QPushButton::clicked, &window_, &QDialog::reject);
    QObject::connect(&window_, &QDialog::rejected, this, [this] { cancelled_ = !session_.inTransaction(); });
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
        inTurn_ = true;
        QApplication::processEvents(QEventLoop::X11ExcludeTimers);
        inTurn_ = false;
        painted_.restart();
        goWhenOver();
    }
    asked_.restart();
    return !cancelled_;
}

// Events come again when the request is over, this one before the keys that were pressed meanwhile: they are meant for
// the windows behind.
void BusyNotice::goWhenOver() {
    if (leaving_) return;
    leaving_ = true;
    QMetaObject::invokeMethod(this, &BusyNotice::go, Qt::QueuedConnection);
}

void BusyNotice::go() {
    leaving_ = false;
    if (!inTurn_) window_.hide();
}

void BusyNotice::show(const Text& text) {
    window_.setWindowTitle(QString::fromUtf8(text.title));
    text_->setText(persianDigits(text.text()));
    // What is being written cannot be given up half way.
    cancel_->setVisible(!session_.inTransaction());
    if (!window_.isVisible() && !cancelled_) window_.show();
}

}  // namespace basalt::host
