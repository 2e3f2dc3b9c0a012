#include "host/desktop/sign_in_dialog.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "host/desktop/line_icon.h"
#include "host/screens/theme.h"
#include "host/services/deploy.h"
#include "package/screens/tool_tip.h"

namespace basalt::host {
namespace {

constexpr int kUserNameRole = Qt::UserRole;
constexpr int kHasPasswordRole = Qt::UserRole + 1;

QLineEdit* addPassword(QBoxLayout& layout, const char* objectName, QLabel& title) {
    auto* input = new QLineEdit;
    input->setObjectName(QString::fromLatin1(objectName));
    input->setAccessibleName(title.text());
    input->setEchoMode(QLineEdit::Password);
    input->setMaxLength(200);
    // Passwords are typed from the left, whatever the interface's direction.
    input->setLayoutDirection(Qt::LeftToRight);
    title.setBuddy(input);
    layout.addWidget(input);
    return input;
}

QLabel* addLabel(QBoxLayout& layout, const QString& text, const char* kind) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setProperty("kind", QString::fromLatin1(kind));
    label->setWordWrap(true);
    layout.addWidget(label);
    return label;
}

}  // namespace

SignInDialog::SignInDialog(ReferenceHost& host, const QString& notice, QWidget* parent)
    : QDialog(parent), host_(host), demo_(holdsDemoData(host.session())) {
    setObjectName(QStringLiteral("SignIn_FRM"));
    setWindowTitle(QStringLiteral("ورود به بازالت"));
    setFixedWidth(themePixels(420));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(32, 28, 32, 28);
    layout->setSpacing(16);
    buildHeader(*layout);
    buildInputs(*layout, notice);
    fillUsers();
    showUser();
    password_->setFocus();
    if (user_->count() > 0) return;
    password_->setEnabled(false);
    signIn_->setEnabled(false);
    // The formatter would cut the sentence to pieces.
    // clang-format off
    showError(QStringLiteral("در این پایگاه داده هیچ کاربری اجازهٔ ورود ندارد. از مدیر سیستم بخواهید کاربری را فعال کند."));
    // clang-format on
}

void SignInDialog::buildHeader(QBoxLayout& layout) {
    auto* badge = new QLabel;
    badge->setPixmap(linePixmap(LineIcon::User, themeColors().accent, 36));
    badge->setAlignment(Qt::AlignHCenter);
    layout.addWidget(badge);
    const std::string& company = host_.SettingRecord().CompanyName;
    QLabel* title = addLabel(layout, QString::fromStdString(company.empty() ? "بازالت" : company), "title");
    title->setObjectName(QStringLiteral("Company_LBL"));
    title->setAlignment(Qt::AlignHCenter);
    QLabel* subtitle = addLabel(layout, QStringLiteral("برای ادامه وارد شوید"), "hint");
    subtitle->setAlignment(Qt::AlignHCenter);
}

void SignInDialog::buildInputs(QBoxLayout& layout, const QString& notice) {
    if (!notice.isEmpty()) {
        QLabel* label = addLabel(layout, notice, "notice");
        label->setObjectName(QStringLiteral("Notice_LBL"));
    }
    auto* inputs = new QVBoxLayout;
    inputs->setSpacing(6);
    layout.addLayout(inputs);

    QLabel* userTitle = addLabel(*inputs, QStringLiteral("کاربر"), "field");
    user_ = new QComboBox;
    user_->setObjectName(QStringLiteral("User_CMB"));
    user_->setAccessibleName(QStringLiteral("کاربر"));
    userTitle->setBuddy(user_);
    inputs->addWidget(user_);
    inputs->addSpacing(6);

    QLabel* passwordTitle = addLabel(*inputs, QStringLiteral("گذرواژه"), "field");
    password_ = addPassword(*inputs, "Password_EDT", *passwordTitle);
    repeatTitle_ = addLabel(*inputs, QStringLiteral("تکرار گذرواژه"), "field");
    repeat_ = addPassword(*inputs, "Repeat_EDT", *repeatTitle_);

    keyboard_ = addLabel(
        *inputs,
        QStringLiteral("صفحه‌کلید فارسی است؛ شاید گذرواژه به لاتین باشد."),
        "hint");
    keyboard_->setObjectName(QStringLiteral("Keyboard_LBL"));
    keyboard_->hide();
    error_ = addLabel(*inputs, {}, "error");
    error_->setObjectName(QStringLiteral("Error_LBL"));
    hint_ = addLabel(*inputs, {}, "hint");
    hint_->setObjectName(QStringLiteral("DemoHint_LBL"));

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    signIn_ = new QPushButton(QStringLiteral("ورود"));
    signIn_->setObjectName(QStringLiteral("SignIn_BTN"));
    signIn_->setDefault(true);
    auto* exit = new QPushButton(QStringLiteral("خروج"));
    exit->setObjectName(QStringLiteral("Exit_BTN"));
    exit->setAutoDefault(false);
    buttons->addWidget(signIn_, 2);
    buttons->addWidget(exit, 1);
    layout.addLayout(buttons);

    QObject::connect(signIn_, &QPushButton::clicked, this, [this] { signIn(); });
    QObject::connect(exit, &QPushButton::clicked, this, &QDialog::reject);
    for (const QLineEdit* input : {password_, repeat_}) {
        QObject::connect(input, &QLineEdit::textEdited, this, [this] { showError({}); });
        QObject::connect(input, &QLineEdit::textChanged, this, [this] { showKeyboard(); });
    }
    QObject::connect(user_, &QComboBox::currentIndexChanged, this, [this] { showUser(); });
}

void SignInDialog::fillUsers() {
    const QString last = QString::fromStdString(host_.optionFile().options().lastUserName);
    for (const UserListItem& user : host_.users().list()) {
        if (!user.enabled) continue;
        const QString name = QString::fromStdString(user.userName);
        user_->addItem(QString::fromStdString(user.fullName.empty() ? user.userName : user.fullName), name);
        user_->setItemData(user_->count() - 1, plainToolTip(name), Qt::ToolTipRole);
        user_->setItemData(user_->count() - 1, user.hasPassword, kHasPasswordRole);
        if (name.compare(last, Qt::CaseInsensitive) == 0) user_->setCurrentIndex(user_->count() - 1);
    }
}

bool SignInDialog::isFirstTime() const {
    return user_->count() > 0 && !user_->currentData(kHasPasswordRole).toBool();
}

void SignInDialog::showUser() {
    repeatTitle_->setVisible(isFirstTime());
    repeat_->setVisible(isFirstTime());
    repeat_->clear();
    keyboard_->hide();
    showHint();
    showError({});
}

void SignInDialog::showHint() {
    hint_->setVisible(user_->count() > 0 && (demo_ || isFirstTime()));
    if (isFirstTime()) {
        hint_->setText(QStringLiteral(
            "این کاربر هنوز گذرواژه‌ای ندارد. آنچه اکنون می‌نویسید گذرواژهٔ او می‌شود."));
        return;
    }
    // The demo users' passwords are their user names.
    hint_->setText(QStringLiteral("دادهٔ این پایگاه نمایشی است؛ گذرواژهٔ این کاربر «%1» است.")
                       .arg(user_->currentData(kUserNameRole).toString()));
}

// Only dots are seen of what is typed.
void SignInDialog::showKeyboard() {
    const QString typed = password_->text() + repeat_->text();
    // Emptied because it was wrong: that is when the reason is wanted.
    if (typed.isEmpty()) return;
    const bool persian =
        std::any_of(typed.begin(), typed.end(), [](QChar letter) { return letter.script() == QChar::Script_Arabic; });
    keyboard_->setVisible(persian);
    fitHeight();
}

void SignInDialog::showError(const QString& text) {
    error_->setText(text);
    error_->setVisible(!text.isEmpty());
    fitHeight();
}

// Never lower again: the buttons would jump away from under the mouse.
void SignInDialog::fitHeight() {
    layout()->activate();
    const int needed = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width()) : sizeHint().height();
    if (needed > height()) resize(width(), needed);
}

void SignInDialog::rememberUser(const std::string& name) {
    try {
        host_.optionFile().change([&name](WorkstationOptions& options) { options.lastUserName = name; });
    } catch (const std::exception&) {
        // Only a convenience for the next time: nobody is kept out because it cannot be written.
    }
}

QString SignInDialog::chooseFirstPassword(const std::string& name) {
    if (password_->text().isEmpty()) return QStringLiteral("گذرواژه را بنویسید.");
    if (password_->text() != repeat_->text())
        return QStringLiteral("تکرار گذرواژه با خود آن یکی نیست. دوباره وارد کنید.");
    if (host_.users().chooseFirstPassword(name, password_->text().toStdString())) return {};
    user_->setItemData(user_->currentIndex(), true, kHasPasswordRole);
    showUser();
    return QStringLiteral(
        "برای این کاربر در این میان گذرواژه‌ای گذاشته شده است؛ همان را وارد کنید.");
}

void SignInDialog::signIn() {
    const std::string name = user_->currentData(kUserNameRole).toString().toStdString();
    QString problem;
    try {
        if (isFirstTime()) problem = chooseFirstPassword(name);
        if (problem.isEmpty()) {
            if (host_.signIn(name, password_->text().toStdString())) {
                rememberUser(name);
                accept();
                return;
            }
            problem = QStringLiteral("گذرواژه درست نیست. دوباره وارد کنید.");
        }
    } catch (const std::exception& error) {
        // The password may well be right, and is not to be typed again.
        password_->setFocus();
        showError(QString::fromStdString(host_.catalogue().errorText(error)));
        return;
    }
    password_->clear();
    repeat_->clear();
    password_->setFocus();
    showError(problem);
}

}  // namespace basalt::host
