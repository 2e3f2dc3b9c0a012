#include "host/desktop/log_filter.h"

#include <QHBoxLayout>
#include <QRegularExpression>
#include <QStyle>
#include <optional>
#include <utility>
#include <vector>

#include "host/screens/persian_digits.h"
#include "host/screens/persian_inputs.h"
#include "host/screens/search_condition.h"
#include "host/screens/theme.h"
#include "host/services/jalali_calendar.h"

namespace basalt::host {
namespace {

// The day in the form that the log keeps; nullopt for an empty edit and for what is no day.
std::optional<std::string> dayIn(const QLineEdit& edit) {
    QString text = latinDigits(edit.text().trimmed());
    // Eight digits on end are a day too: 14050830.
    static const QRegularExpression digits(QStringLiteral("^([0-9]{4})([0-9]{2})([0-9]{2})$"));
    text.replace(digits, QStringLiteral("\\1/\\2/\\3"));
    const std::optional<JalaliDate> date = parseJalali(text.toStdString());
    if (!date) return std::nullopt;
    return toText(*date, "/");
}

bool isWrong(const QLineEdit& edit) {
    return !edit.text().trimmed().isEmpty() && !dayIn(edit);
}

}  // namespace

LogFilter::LogFilter(QWidget* parent) : TSearchFrame(parent) {
    setObjectName(QStringLiteral("LogFilter_FRM"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    auto* title = new QLabel(QStringLiteral("بخش:"));
    layout->addWidget(title);
    part_ = new QComboBox;
    part_->setObjectName(QStringLiteral("Part_CMB"));
    part_->setAccessibleName(QStringLiteral("بخش"));
    part_->setMinimumWidth(themePixels(150));
    title->setBuddy(part_);
    layout->addWidget(part_);
    from_ = addDate("DateFrom_EDT", QStringLiteral("از:"));
    to_ = addDate("DateTo_EDT", QStringLiteral("تا:"));
    problem_ = new QLabel(QStringLiteral("تاریخ درستی نیست و در جستجو نیامد؛ آن را مانند ۱۴۰۵/۰۸/۳۰ بنویسید."));
    problem_->setObjectName(QStringLiteral("DateProblem_LBL"));
    problem_->setWordWrap(true);
    problem_->setProperty("kind", QStringLiteral("problem"));
    problem_->hide();
    layout->addWidget(problem_);
    QObject::connect(part_, &QComboBox::currentIndexChanged, this, [this] {
        if (OnChange) OnChange();
    });
}

QLineEdit* LogFilter::addDate(const char* objectName, const QString& title) {
    auto* label = new QLabel(title);
    auto* edit = new QLineEdit;
    edit->setObjectName(QString::fromLatin1(objectName));
    edit->setAccessibleName(title.chopped(1) + QStringLiteral(" تاریخ"));
    // No day of the calendar: it would read as one that has been entered.
    edit->setPlaceholderText(QStringLiteral("سال/ماه/روز"));
    edit->setMaxLength(10);
    edit->setValidator(new PersianDigitsShown(edit));
    readFromRight(*edit);
    edit->setFixedWidth(themePixels(110));
    label->setBuddy(edit);
    layout()->addWidget(label);
    layout()->addWidget(edit);
    QObject::connect(edit, &QLineEdit::textEdited, this, [this, edit] { dateEdited(*edit); });
    // However it was typed, it is read as the days of the list are.
    QObject::connect(edit, &QLineEdit::editingFinished, edit, [edit] {
        if (const auto day = dayIn(*edit)) edit->setText(QString::fromStdString(*day));
    });
    return edit;
}

void LogFilter::dateEdited(QLineEdit& edit) {
    edit.setProperty("wrong", isWrong(edit));
    edit.style()->unpolish(&edit);
    edit.style()->polish(&edit);
    problem_->setVisible(isWrong(*from_) || isWrong(*to_));
    if (OnChange) OnChange();
}

void LogFilter::addPart(int part, const QString& title) {
    const QSignalBlocker quiet(part_);
    part_->addItem(title, part);
}

void LogFilter::init() {
    const QSignalBlocker quiet(part_);
    part_->clear();
    part_->addItem(QStringLiteral("همهٔ بخش‌ها"), 0);
    from_->clear();
    to_->clear();
}

std::string LogFilter::Filter() const {
    std::vector<std::string> conditions;
    const int part = part_->currentData().toInt();
    if (part != 0) conditions.push_back("[SoftwarePart] = " + std::to_string(part));
    // Days of the log are texts of one length, so that their order is that of the days.
    if (const auto day = dayIn(*from_)) conditions.push_back("[LogDate] >= N'" + *day + "'");
    if (const auto day = dayIn(*to_)) conditions.push_back("[LogDate] <= N'" + *day + "'");
    return joinedConditions(conditions);
}

QString LogFilter::narrowing() const {
    QStringList parts;
    if (part_->currentData().toInt() != 0) parts << QStringLiteral("بخش «%1»").arg(part_->currentText());
    QString days;
    for (const auto& [word, edit] : {std::pair("از", from_), std::pair("تا", to_)})
        if (const auto day = dayIn(*edit))
            days += QStringLiteral(" %1 %2").arg(QString::fromUtf8(word), screenText(QString::fromStdString(*day)));
    if (!days.isEmpty()) parts << QStringLiteral("تاریخ") + days;
    return parts.join(QStringLiteral("، "));
}

void LogFilter::Clear() {
    part_->setCurrentIndex(0);
    for (QLineEdit* edit : {from_, to_}) {
        edit->clear();
        dateEdited(*edit);
    }
}

void LogFilter::FocusFirst() {
    part_->setFocus();
}

}  // namespace basalt::host
