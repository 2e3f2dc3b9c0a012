#include "host/counter/counter_page.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScopeGuard>
#include <QShortcut>
#include <QStringList>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "host/counter/amount_dialog.h"
#include "host/counter/counter_ledger.h"
#include "host/counter/counter_sale.h"
#include "host/counter/named_goods.h"
#include "host/counter/scale_starts.h"
#include "host/counter/shortage_text.h"
#include "host/screens/disabled_reason.h"
#include "host/screens/flow_layout.h"
#include "host/screens/persian_digits.h"
#include "host/screens/persian_inputs.h"
#include "host/screens/theme.h"
#include "host/screens/unsaved_changes.h"
#include "host/services/host_parts.h"
#include "host/services/sql_access.h"
#include "host/services/system_errors.h"
#include "package/numbers.h"
#include "package/screens/tool_tip.h"

namespace basalt::host {

namespace {

constexpr int kMostPersons = 999'999'999;
constexpr int kNameColumn = 1;
constexpr int kOneByOne = 1;             // of the kinds of scales
constexpr std::size_t kMostFolders = 6;  // that a message lists
constexpr int kBetweenTones = 200;       // milliseconds
// The formatter would cut the sentence to pieces.
// clang-format off
const QString kNoStore = QStringLiteral("انباری تعریف نشده است و تا نباشد فاکتوری ثبت نمی‌شود؛ نخست یک انبار تعریف کنید.");
// clang-format on

QString moodName(ScanMood mood) {
    switch (mood) {
        case ScanMood::Added:
            return QStringLiteral("added");
        case ScanMood::Removed:
            return QStringLiteral("removed");
        case ScanMood::Matched:
            return QStringLiteral("matched");
        case ScanMood::Warned:
            return QStringLiteral("warned");
        case ScanMood::Refused:
            break;
    }
    return QStringLiteral("refused");
}

QString pageStyle() {
    return withThemeColors(QStringLiteral(
        "#Result_LBL { border-radius: 8px; padding: 8px 14px; font-size: 12pt; font-weight: 700; background: @raised@; "
        "}"
        "#Result_LBL[mood=\"added\"], #Result_LBL[mood=\"matched\"] { background: @accentSoft@; color: @success@; }"
        "#Result_LBL[mood=\"removed\"], #Result_LBL[mood=\"warned\"] { background: @warningSoft@; color: @warning@; }"
        "#Result_LBL[mood=\"refused\"] { background: @dangerSoft@; color: @danger@; }"
        "#Removing_BTN:checked { background: @dangerSoft@; color: @danger@; border-color: @danger@; }"
        "#Progress_BAR { border: 1px solid @border@; border-radius: 6px; background: @surface@; text-align: center; }"
        "#Progress_BAR::chunk { background: @selection@; border-radius: 5px; }"
        "#Total_LBL { font-size: 15pt; font-weight: 700; }"));
}

// A word that no line has room for, a barcode for one, with its middle left out.
QString shortened(const QString& text) {
    constexpr qsizetype kLongestWord = 48;
    constexpr qsizetype kKept = 20;
    QStringList words = text.split(QLatin1Char(' '));
    for (QString& word : words) {
        if (word.size() > kLongestWord) word = word.left(kKept) + QStringLiteral("…") + word.right(kKept);
    }
    return words.join(QLatin1Char(' '));
}

void addField(QBoxLayout& row, const QString& title, QWidget* input) {
    auto* label = new QLabel(title);
    label->setProperty("kind", QStringLiteral("field"));
    label->setBuddy(input);
    input->setAccessibleName(title);
    row.addWidget(label);
    row.addWidget(input);
}

// Paths read from the left, in a Persian sentence too.
std::string fromTheLeft(const std::string& path) {
    return "\u2066" + path + "\u2069";
}

// Why a program did not start, for the user, and below it what the system says.
std::string whyNotStarted(const StartResult& result) {
    const std::string why = programErrorSentence(result.reason);
    return (why.empty() ? "پاسخ سیستم:" : why) + "\n" + fromTheLeft(result.reason);
}

// The place of the first line that is not what it was; nullopt when all are.
std::optional<int> firstDifference(const std::vector<CounterLine>& before, const std::vector<CounterLine>& after) {
    const auto [was, is] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    if (was == before.end() && is == after.end()) return std::nullopt;
    return static_cast<int>(is - after.begin());
}

std::string listed(const std::vector<std::string>& folders) {
    std::string text;
    for (std::size_t i = 0; i < std::min(folders.size(), kMostFolders); ++i)
        text += (i == 0 ? "" : "\n") + fromTheLeft(folders[i]);
    if (folders.size() > kMostFolders)
        text += QStringLiteral("\nو %1 پوشهٔ دیگر از مسیر جست‌وجوی سیستم")
                    .arg(persianDigits(QString::number(folders.size() - kMostFolders)))
                    .toStdString();
    return text;
}

}  // namespace

CounterPage::CounterPage(DesktopContext context, QWidget* parent)
    : ShellPage(parent),
      onTone(&QApplication::beep),
      context_(context),
      calls_(context.registry),
      invoice_(context.host.SettingRecord().CurrencyDecimals),
      scanner_(context.host, calls_, invoice_) {
    setObjectName(QStringLiteral("Counter_PNL"));
    setStyleSheet(pageStyle());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 16, 28, 12);
    layout->setSpacing(8);
    auto* title = new QLabel(QStringLiteral("پیشخوان فروش"));
    title->setProperty("kind", QStringLiteral("pageTitle"));
    // Beside the title: the lines have what room there is.
    auto* heading = new QHBoxLayout;
    heading->addWidget(title);
    heading->addStretch();
    total_ = new QLabel;
    total_->setObjectName(QStringLiteral("Total_LBL"));
    heading->addWidget(total_);
    layout->addLayout(heading);
    makeScanRow(*layout);
    makeInvoice(*layout);
    makeFooter(*layout);
}

// A field that has the focus loses it as the window's last act, and would tell a page that is no more.
CounterPage::~CounterPage() {
    person_->disconnect(this);
}

void CounterPage::makeScanRow(QBoxLayout& layout) {
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    scan_ = new QLineEdit;
    scan_->setObjectName(QStringLiteral("Scan_EDT"));
    scan_->setPlaceholderText(QStringLiteral("بارکد را اسکن کنید یا بنویسید و Enter بزنید"));
    scan_->setClearButtonEnabled(true);
    readFromRight(*scan_);
    addField(*row, QStringLiteral("بارکد"), scan_);
    removing_ = new QPushButton(QStringLiteral("حالت حذف \u2066F6\u2069"));
    removing_->setObjectName(QStringLiteral("Removing_BTN"));
    removing_->setCheckable(true);
    // At once: a button's own short cut would wait with the click, and the next scan would not.
    auto* key = new QShortcut(QKeySequence(Qt::Key_F6), this);
    key->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(key, &QShortcut::activated, removing_, &QPushButton::toggle);
    row->addWidget(removing_);
    sound_ = new QCheckBox(QStringLiteral("با صدا"));
    sound_->setObjectName(QStringLiteral("Sound_CHK"));
    row->addWidget(sound_);
    layout.addLayout(row);
    // In a row of their own, so that a barcode has room at every size of the font.
    auto* terms = new QHBoxLayout;
    terms->setSpacing(8);
    person_ = new PersonInput(kMostPersons);
    person_->setObjectName(QStringLiteral("Person_EDT"));
    person_->onScan = [this](const QString& typed) {
        scan_->setFocus();
        const int code = person_->value();
        const QString kept = code == 0 ? QStringLiteral("کد شخص نوشته نشد.")
                                       : QStringLiteral("کد شخص %1 ماند.").arg(persianDigits(QString::number(code)));
        context_.handlers.guarded(this, [&] { scan(typed, {ScanMood::Added, {}}, kept); });
    };
    person_->knowsScan = [this](const QString& typed) { return scanner_.knows(typed); };
    intoList_.knows = person_->knowsScan;
    person_->onTooLong = [this](const QString& typed) {
        report(ScanMood::Refused,
               QStringLiteral("کد شخص بیش از %1 رقم ندارد: %2")
                   .arg(persianDigits(QString::number(QString::number(kMostPersons).size())), typed));
        context_.handlers.guarded(this, [this] { showPerson(); });
    };
    addField(*terms, QStringLiteral("کد شخص"), person_);
    personName_ = new ElidedLabel;
    personName_->setObjectName(QStringLiteral("PersonName_LBL"));
    personName_->setTextFormat(Qt::PlainText);
    personName_->setProperty("kind", QStringLiteral("hint"));
    terms->addWidget(personName_, 1);
    QObject::connect(person_, &QSpinBox::valueChanged, personName_, &QLabel::clear);
    store_ = new QComboBox;
    store_->setObjectName(QStringLiteral("Store_CMB"));
    store_->setSizeAdjustPolicy(QComboBox::AdjustToContents);  // the stores come when the page is shown
    store_->view()->installEventFilter(this);
    addField(*terms, QStringLiteral("انبار"), store_);
    policy_ = new QComboBox;
    policy_->setObjectName(QStringLiteral("Policy_CMB"));
    // In the order of the setting's values.
    policy_->addItems({QStringLiteral("ممنوع"), QStringLiteral("با پرسش"), QStringLiteral("مجاز")});
    policy_->installEventFilter(this);
    policy_->view()->installEventFilter(this);
    addField(*terms, QStringLiteral("موجودی منفی"), policy_);
    layout.addLayout(terms);
    result_ = new QLabel(QStringLiteral("آمادهٔ اسکن"));
    result_->setObjectName(QStringLiteral("Result_LBL"));
    result_->setTextFormat(Qt::PlainText);
    // What is said never makes the window wider.
    result_->setWordWrap(true);
    result_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    layout.addWidget(result_);
    for (QWidget* each : std::initializer_list<QWidget*>{scan_, removing_, sound_, store_})
        each->installEventFilter(this);
    QObject::connect(person_, &QSpinBox::editingFinished, this, [this] {
        if (person_->hasFocus()) scan_->setFocus();  // Enter; leaving it goes where the user wants
        context_.handlers.guarded(this, [this] {
            if (personIsKnown()) offerPrices();
        });
    });
    QObject::connect(scan_, &QLineEdit::returnPressed, this,
                     [this] { context_.handlers.guarded(this, [this] { scan(); }); });
}

void CounterPage::makeInvoice(QBoxLayout& layout) {
    grid_ = new QTableWidget(0, 7);
    grid_->setObjectName(QStringLiteral("Lines_GRD"));
    grid_->setHorizontalHeaderLabels({QStringLiteral("کد"), QStringLiteral("کالا"), QStringLiteral("مقدار"),
                                      QStringLiteral("واحد"), QStringLiteral("قیمت"), QStringLiteral("مبلغ"),
                                      QStringLiteral("ترازو")});
    // As wide as the longest of all lines: a number of which a part is missing reads as another number. Names have what
    // remains.
    grid_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    grid_->horizontalHeader()->setResizeContentsPrecision(-1);
    grid_->horizontalHeader()->setSectionResizeMode(kNameColumn, QHeaderView::Stretch);
    // What is said names a line by its place.
    grid_->verticalHeader()->setSectionsClickable(false);
    grid_->verticalHeader()->setDefaultAlignment(Qt::AlignCenter);
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setAlternatingRowColors(true);
    grid_->setAccessibleName(QStringLiteral("سطرهای فاکتور"));
    grid_->installEventFilter(this);
    QObject::connect(grid_, &QTableWidget::itemSelectionChanged, this, [this] {
        if (grid_->rowCount() > 0 && chosenLines().empty()) choose(grid_->currentRow());
    });
    layout.addWidget(grid_, 1);

    priceSum_ = new QLabel;
    priceSum_->setObjectName(QStringLiteral("PriceSum_LBL"));
    priceSum_->setProperty("kind", QStringLiteral("hint"));
    priceSum_->hide();
    layout.addWidget(priceSum_);
}

QPushButton* CounterPage::addButton(QLayout& row, const char* objectName, const QString& title, const QKeySequence& key,
                                    void (CounterPage::*work)()) {
    auto* button =
        new QPushButton(QStringLiteral("%1 \u2066%2\u2069").arg(title, key.toString(QKeySequence::NativeText)));
    button->setObjectName(QString::fromLatin1(objectName));
    button->installEventFilter(this);
    row.addWidget(button);
    const auto run = [this, work] { context_.handlers.guarded(this, [this, work] { (this->*work)(); }); };
    QObject::connect(button, &QPushButton::clicked, this, run);
    auto* shortCut = new QShortcut(key, this);
    shortCut->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(shortCut, &QShortcut::activated, this, run);
    return button;
}

void CounterPage::makeFooter(QBoxLayout& layout) {
    // With a large font there is not room for all of it in one row.
    auto* row = new FlowLayout(8);
    QPushButton* save =
        addButton(*row, "Save_BTN", QStringLiteral("ثبت"), QKeySequence(Qt::Key_F3), &CounterPage::save);
    save->setProperty("kind", QStringLiteral("primary"));
    addButton(*row, "Amount_BTN", QStringLiteral("مقدار"), QKeySequence(Qt::Key_F2), &CounterPage::changeAmount);
    addButton(*row, "Tare_BTN", QStringLiteral("وزن ظرف"), QKeySequence(Qt::Key_F8), &CounterPage::tare);
    addButton(*row, "RemoveLine_BTN", QStringLiteral("حذف سطر"), QKeySequence(Qt::Key_F7), &CounterPage::removeLine);
    addButton(*row, "Clear_BTN", QStringLiteral("فاکتور تازه"), QKeySequence(Qt::Key_F4), &CounterPage::startNew);
    progress_ = new QProgressBar;
    progress_->setObjectName(QStringLiteral("Progress_BAR"));
    progress_->setFixedWidth(160);
    progress_->hide();
    row->addWidget(progress_);
    scaleType_ = new QComboBox;
    scaleType_->setObjectName(QStringLiteral("ScaleType_CMB"));
    // In the order of the kinds of scales.
    scaleType_->addItems({QStringLiteral("همه با هم"), QStringLiteral("یک‌به‌یک")});
    scaleType_->setAccessibleName(QStringLiteral("روش ارسال به ترازو"));
    scaleType_->installEventFilter(this);
    scaleType_->view()->installEventFilter(this);
    // The choice stays with its button, in whatever row they come to stand.
    auto* sending = new QWidget;
    auto* together = new QHBoxLayout(sending);
    together->setContentsMargins(0, 0, 0, 0);
    together->setSpacing(4);
    together->addWidget(scaleType_);
    addButton(*together, "SendToScale_BTN", QStringLiteral("ارسال به ترازو"), QKeySequence(Qt::Key_F9),
              &CounterPage::sendToScale);
    row->addWidget(sending);
    layout.addLayout(row);
}

void CounterPage::readStores() {
    const QVariant chosen = store_->currentData();
    store_->clear();
    const RowSet stores = rowsOf(context_.host.session(), "SELECT Code, Name FROM dbo.Stores ORDER BY Code");
    for (std::size_t i = 0; i < stores.rowCount(); ++i)
        store_->addItem(screenText(QString::fromStdString(textAt(stores, 1, i))),
                        static_cast<int>(integerAt(stores, 0, i)));
    if (const int index = store_->findData(chosen); chosen.isValid() && index >= 0) store_->setCurrentIndex(index);
}

void CounterPage::enter() {
    readStores();
    showPolicy();
    showLines();
    if (store_->count() == 0) showResult(moodName(ScanMood::Warned), kNoStore);
    scan_->setFocus();
}

bool CounterPage::mayLeave() {
    return mayForget("ترک پیشخوان");
}

bool CounterPage::mayForget(const char* before) {
    if (isEmpty()) return true;
    // Neither saved nor forgotten without being meant: whoever sells has the hands on a scanner.
    const MessageRequest question{.operation = "MsgUnsavedInvoice",
                                  .arguments = {before},
                                  .buttons = {TMessageButton::Yes, TMessageButton::No, TMessageButton::Cancel},
                                  .defaultButton = TMessageButton::Cancel,
                                  .form = this};
    return mayLeaveUnsaved(
        context_.host.Messages(), question, [this] { return write(); }, [this] { clearInvoice(); });
}

void CounterPage::showPolicy() {
    policy_->setCurrentIndex(context_.host.settings().record().NegativeType);
    const bool may = context_.host.HavePermission(context_.host.UserInfo(), hpSettings, prEdit, false, false, "");
    enableUnless(*policy_, may ? QString() : notPermittedReason());
}

bool CounterPage::personIsKnown() {
    showPerson();
    const std::int64_t code = person_->value();
    if (code == 0 || !personName_->text().isEmpty()) return true;
    report(ScanMood::Refused,
           QStringLiteral("شخصی با کد %1 تعریف نشده است.").arg(persianDigits(QString::number(code))));
    return false;
}

void CounterPage::showPerson() {
    const std::int64_t code = person_->value();
    const RowSet found = rowsOf(context_.host.session(), "SELECT FullName FROM dbo.PerInf WHERE Code = ?", {code});
    QString name;
    if (code != 0 && found.rowCount() > 0) {
        name = screenText(QString::fromStdString(textAt(found, 0, 0))).trimmed();
        if (name.isEmpty()) name = QStringLiteral("بی‌نام");
    }
    personName_->setText(name);
    personName_->setToolTip(plainToolTip(name));
}

void CounterPage::offerPrices() {
    const int person = person_->value();
    const std::vector<Extended> prices = scanner_.pricesFor(person);
    const auto& lines = invoice_.lines();
    const bool same = std::equal(prices.begin(), prices.end(), lines.begin(), lines.end(),
                                 [](Extended price, const CounterLine& line) { return price == line.price; });
    if (same) return;
    const MessageRequest question{.operation = "MsgTakePersonsPrices",
                                  .buttons = {TMessageButton::Yes, TMessageButton::No},
                                  .defaultButton = TMessageButton::Yes,
                                  .form = this};
    if (context_.host.Messages().show(question) == mrYes) {
        invoice_.setPrices(prices, person);
        showLines();
        const auto below = std::find_if(lines.begin(), lines.end(), [](const auto& line) { return line.price < 0; });
        if (below == lines.end())
            report(ScanMood::Added, QStringLiteral("قیمت سطرها از نو گرفته شد."));
        else
            report(
                ScanMood::Warned,
                QStringLiteral(
                    "قیمت سطرها از نو گرفته شد. قیمت «%1» کمتر از صفر است و تا درست نشود فاکتور ثبت نمی‌شود.")
                    .arg(screenText(QString::fromStdString(below->name))));
        return;
    }
    std::vector<Extended> kept;
    kept.reserve(lines.size());
    for (const CounterLine& line : lines)
        kept.push_back(line.price);
    invoice_.setPrices(kept, person);
    report(ScanMood::Warned, QStringLiteral("سطرهای پیشین با همان قیمت ماندند."));
}

// Typing anywhere but into the person's code is a scan: a scanner does not know where the focus is.
void CounterPage::changeEvent(QEvent* event) {
    ShellPage::changeEvent(event);
    if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
    // Setting the sheet changes the style, and so comes here again.
    if (const QString sheet = pageStyle(); sheet != styleSheet()) setStyleSheet(sheet);
}

// A list that is open has the keys to itself, and what it does with them is to choose.
bool CounterPage::endsScanIntoList(QObject* watched, QEvent& event) {
    // The list chooses before the key press comes, when it is asked whether it wants the key for itself.
    if (event.type() != QEvent::KeyPress && event.type() != QEvent::ShortcutOverride) return false;
    const auto& key = static_cast<QKeyEvent&>(event);
    const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (isEnter != (event.type() == QEvent::ShortcutOverride)) return false;
    for (QComboBox* each : {store_, policy_, scaleType_}) {
        if (each == nullptr || watched != each->view()) continue;
        const auto typed = intoList_.endedBy(key, {});
        if (!typed) return false;
        each->hidePopup();
        scan_->setFocus();
        context_.handlers.guarded(this, [this, &typed] { scan(typed->text); });
        return true;
    }
    return false;
}

bool CounterPage::eventFilter(QObject* watched, QEvent* event) {
    if (endsScanIntoList(watched, *event)) return true;
    if (qobject_cast<QAbstractItemView*>(watched) && watched != grid_) return false;
    if (event->type() == QEvent::KeyPress && watched == scan_) {
        const int key = static_cast<QKeyEvent&>(*event).key();
        if (key != Qt::Key_Up && key != Qt::Key_Down) return false;
        if (grid_->rowCount() > 0) choose(std::max(0, grid_->currentRow() + (key == Qt::Key_Up ? -1 : 1)));
        return true;
    }
    if (event->type() == QEvent::KeyPress) {
        auto& key = static_cast<QKeyEvent&>(*event);
        const bool plain = (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
        if (plain && !key.text().isEmpty() && key.text()[0].isPrint() && key.text()[0] != QLatin1Char(' ')) {
            scan_->setFocus();
            QApplication::sendEvent(scan_, &key);
            return true;
        }
        if (watched == grid_ && key.key() == Qt::Key_Delete) {
            context_.handlers.guarded(this, [this] { removeLine(); });
            return true;
        }
    }
    return ShellPage::eventFilter(watched, event);
}

void CounterPage::scan() {
    const QString typed = scan_->text();
    scan_->clear();
    scan(typed);
}

template <class Work>
auto CounterPage::orReport(const QString& text, Work work) {
    try {
        return work();
    } catch (...) {
        report(ScanMood::Refused, text);
        throw;
    }
}

void CounterPage::scan(const QString& typed, const ScanReport& before, const QString& ifRefused) {
    if (typed.trimmed().isEmpty()) return;
    // The setting may have changed since the invoice before.
    if (isEmpty()) invoice_.begin(context_.host.SettingRecord().CurrencyDecimals);
    const std::vector<CounterLine> linesBefore = invoice_.lines();
    const QString failed = QStringLiteral("بارکد %1 خوانده نشد.").arg(persianDigits(typed.trimmed()));
    const ScanReport done = orReport((before.text + QLatin1Char(' ') + failed).trimmed(), [&] {
        return scanner_.scan(typed, {.person = person_->value(), .removing = removing_->isChecked()});
    });
    showPerson();
    // What is done next, a tare for instance, is meant for what was just scanned.
    const auto changed = firstDifference(linesBefore, invoice_.lines());
    lastScanned_ = invoice_.lines().size() > linesBefore.size() ? *changed : -1;
    showLines(changed);
    // What did not go well is what has to be seen.
    const bool isBetter = done.mood != ScanMood::Refused && before.mood == ScanMood::Refused;
    const QString besides = done.mood == ScanMood::Refused ? ifRefused : QString();
    report(isBetter ? ScanMood::Warned : done.mood,
           (before.text + QLatin1Char(' ') + done.text + QLatin1Char(' ') + besides).trimmed());
    scan_->setFocus();
}

void CounterPage::showResult(const QString& mood, const QString& text) {
    result_->setText(shortened(text));
    result_->setToolTip(result_->text() == text ? QString() : plainToolTip(text));
    result_->setProperty("mood", mood);
    result_->style()->unpolish(result_);
    result_->style()->polish(result_);
}

void CounterPage::report(ScanMood mood, const QString& text) {
    showResult(moodName(mood), text);
    if (!sound_->isChecked()) return;
    onTone();
    // Apart, or they sound as one.
    if (mood == ScanMood::Refused || mood == ScanMood::Warned)
        QTimer::singleShot(kBetweenTones, this, [this] { onTone(); });
}

void CounterPage::choose(int row) {
    const int last = grid_->rowCount() - 1;
    if (last < 0) return;
    const int chosen = row < 0 ? last : std::min(row, last);
    grid_->setCurrentCell(chosen, kNameColumn, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    grid_->scrollToItem(grid_->item(chosen, kNameColumn));
}

void CounterPage::showLines(std::optional<int> chosen) {
    const auto& lines = invoice_.lines();
    const bool sameCount = grid_->rowCount() == static_cast<int>(lines.size());
    const int before = grid_->currentRow();
    const QSignalBlocker quiet(grid_);  // rows that go take the choice with them
    grid_->setRowCount(static_cast<int>(lines.size()));
    for (int row = 0; row < grid_->rowCount(); ++row) {
        const auto index = static_cast<std::size_t>(row);
        const CounterLine& line = lines[index];
        const QStringList cells = {persianDigits(QString::number(line.good)),
                                   screenText(QString::fromStdString(line.name)),
                                   amountText(line.amount),
                                   screenText(QString::fromStdString(line.unit)),
                                   amountText(line.price),
                                   amountText(invoice_.lineTotal(index)),
                                   persianDigits(QString::fromStdString(line.scale))};
        for (int column = 0; column < cells.size(); ++column)
            grid_->setItem(row, column, new QTableWidgetItem(cells[column]));
        grid_->item(row, kNameColumn)->setToolTip(plainToolTip(cells[kNameColumn]));
        grid_->setVerticalHeaderItem(row, new QTableWidgetItem(persianDigits(QString::number(row + 1))));
    }
    if (chosen || !sameCount || chosenLines().empty()) choose(chosen.value_or(before));
    const Extended sum = scanner_.priceSum();
    priceSum_->setText(sum == 0 ? QString() : QStringLiteral("جمع بارکدهای مبلغی: %1").arg(amountText(sum)));
    priceSum_->setVisible(sum != 0);
    total_->setText(QStringLiteral("جمع فاکتور: %1").arg(amountText(invoice_.total(sum))));
}

std::optional<std::size_t> CounterPage::theLine() {
    const std::set<int> rows = chosenLines();
    if (rows.size() == 1) return static_cast<std::size_t>(*rows.begin());
    report(ScanMood::Warned, rows.empty() ? QStringLiteral("فاکتور سطری ندارد.")
                                          : QStringLiteral("%1 سطر برگزیده شده است؛ تنها یکی را برگزینید.")
                                                .arg(persianDigits(QString::number(rows.size()))));
    return std::nullopt;
}

QString CounterPage::placeOf(int row) const {
    return QStringLiteral("سطر %1").arg(persianDigits(QString::number(row + 1)));
}

int CounterPage::store() const {
    return store_->currentData().toInt();
}

void CounterPage::save() {
    (void)write();
}

bool CounterPage::isEmpty() {
    return invoice_.lines().empty() && scanner_.priceSum() == 0;
}

bool CounterPage::isReady() {
    if (isEmpty()) {
        report(ScanMood::Warned, QStringLiteral("فاکتور سطری ندارد."));
        return false;
    }
    if (invoice_.lines().empty()) {
        // The ledger is of goods.
        report(ScanMood::Refused, QStringLiteral("فاکتور ثبت نشد؛ تنها بارکد مبلغی دارد و کالایی در آن نیست."));
        return false;
    }
    if (const Extended sum = scanner_.priceSum(); sum != 0) {
        report(ScanMood::Refused,
               QStringLiteral("فاکتور ثبت نشد؛ برای مبلغ %1 کالایی در فاکتور نیست. کالاهای آن را بیفزایید و بارکدهای "
                              "مبلغی را در حالت حذف بردارید.")
                   .arg(amountText(sum)));
        return false;
    }
    if (!personIsKnown()) {
        person_->setFocus();
        person_->selectAll();
        return false;
    }
    offerPrices();
    for (const CounterLine& line : invoice_.lines()) {
        if (line.price >= 0) continue;
        report(
            ScanMood::Refused,
            QStringLiteral(
                "فاکتور ثبت نشد؛ قیمت «%1» کمتر از صفر است. قیمت را در فهرست قیمت‌ها درست کنید یا سطر را "
                "بردارید.")
                .arg(screenText(QString::fromStdString(line.name))));
        return false;
    }
    // One may have been made since the page was shown.
    if (store_->count() == 0) readStores();
    if (store_->count() == 0) {
        report(ScanMood::Refused, kNoStore);
        return false;
    }
    if (!context_.host.HavePermission(context_.host.UserInfo(), hpSales, prInsert, false, true, "")) {
        report(ScanMood::Refused, QStringLiteral("فاکتور ثبت نشد؛ شما اجازهٔ ثبت فروش را ندارید."));
        return false;
    }
    return true;
}

std::optional<int> CounterPage::post() {
    SaleTerms terms{.store = store(), .person = person_->value(), .negativeType = {}};
    if (policy_->isEnabled()) terms.negativeType = static_cast<std::uint8_t>(policy_->currentIndex());
    // Read before the answer, and again afterwards: the stock may have moved meanwhile.
    const auto lacking = [this](const std::string& codes) {
        const std::string today = context_.host.NowDate("/");
        return shortageText(invoice_, QString::fromStdString(codes), store_->currentText(),
                            [&](int good) { return stockOn(context_.host.session(), good, store(), today); });
    };
    const SaleOutcome outcome = sell(context_.host, calls_, invoice_, terms, [&](const std::string& codes) {
        showResult(moodName(ScanMood::Warned), lacking(codes));
    });
    if (!outcome.number) report(ScanMood::Refused, QStringLiteral("فاکتور ثبت نشد؛ %1").arg(lacking(outcome.missing)));
    return outcome.number;
}

bool CounterPage::write() {
    const auto posted =
        orReport(QStringLiteral("فاکتور ثبت نشد."), [this] { return isReady() ? post() : std::optional<int>(); });
    if (!posted) return false;
    const int number = *posted;
    const QString total = amountText(scanner_.total());
    clearInvoice();
    report(ScanMood::Matched,
           QStringLiteral("فاکتور %1 به مبلغ %2 ثبت شد.").arg(persianDigits(QString::number(number)), total));
    return true;
}

void CounterPage::changeAmount() {
    const auto chosen = theLine();
    if (!chosen) return;
    const int row = static_cast<int>(*chosen);
    const CounterLine line = invoice_.lines()[*chosen];
    const QString name = screenText(QString::fromStdString(line.name));
    if (line.weighed) {
        report(
            ScanMood::Refused,
            QStringLiteral(
                "%1: «%2» را ترازو وزن کرده است و مقدار آن نوشته نمی‌شود؛ کالا را دوباره وزن کنید.")
                .arg(placeOf(row), name));
        return;
    }
    AmountDialog dialog(
        placeOf(row), line, [this](const QString& typed) { return scanner_.knows(typed); }, this);
    dialog.exec();
    scan_->setFocus();
    ScanReport done{ScanMood::Added, {}};
    QString kept;
    if (dialog.amount()) {
        invoice_.setAmount(*chosen, *dialog.amount());
        lastScanned_ = -1;
        showLines(row);
        done.text =
            QStringLiteral("%1: مقدار «%2» شد %3.").arg(placeOf(row), name, amountText(*dialog.amount(), line.unit));
    } else if (!dialog.dropped().isEmpty()) {
        done = {ScanMood::Refused, QStringLiteral("%1: %2").arg(placeOf(row), dialog.dropped())};
    } else {
        // What was typed just before the scan may be part of it.
        kept =
            QStringLiteral("%1: مقدار «%2» همان %3 ماند.").arg(placeOf(row), name, amountText(line.amount, line.unit));
    }
    if (!dialog.scanned().isEmpty())
        scan(dialog.scanned(), done, kept);
    else if (!done.text.isEmpty())
        report(done.mood, done.text);
}

void CounterPage::tare() {
    const auto chosen = theLine();
    if (!chosen) return;
    const std::size_t index = *chosen;
    if (const CounterLine& line = invoice_.lines()[index]; !line.weighed) {
        report(
            ScanMood::Refused,
            QStringLiteral(
                "«%1» به تعداد فروخته می‌شود، نه به وزن؛ وزن ظرف از آن کم نمی‌شود. سطر کالایی را "
                "برگزینید که ترازو وزن کرده است.")
                .arg(screenText(QString::fromStdString(line.name))));
        return;
    }
    const ModuleReply reply = calls_("Get_BoxesWeight", {{"Weight", 0}, {"Count", 0}});
    if (!reply.result.asBool()) return;
    const Extended tareWeight = reply["Weight"].asAmount() * static_cast<Extended>(reply["Count"].asInteger());
    const CounterLine line = invoice_.lines()[index];
    const Extended net = asStored(line.amount - tareWeight);
    const QString where = placeOf(static_cast<int>(index));
    const QString name = screenText(QString::fromStdString(line.name));
    const auto measured = [&line](Extended weight) { return amountText(weight, line.unit); };
    if (tareWeight < 0 || net <= 0) {
        report(ScanMood::Refused,
               QStringLiteral("%1: وزن ظرف‌ها (%2) با مقدار «%3» (%4) نمی‌خواند.")
                   .arg(where, measured(tareWeight), name, measured(line.amount)));
        return;
    }
    invoice_.setAmount(index, net);
    showLines(static_cast<int>(index));
    report(ScanMood::Removed,
           QStringLiteral("%1: وزن ظرف‌ها (%2) از «%3» کم شد؛ وزن خالص %4.")
               .arg(where, measured(tareWeight), name, measured(net)));
}

std::set<int> CounterPage::chosenLines() const {
    std::set<int> rows;
    for (const QModelIndex& index : grid_->selectionModel()->selectedRows())
        rows.insert(index.row());
    return rows;
}

QString CounterPage::chosenCodes() const {
    QStringList codes;
    for (const int row : chosenLines()) {
        const QString code = QString::number(invoice_.lines()[static_cast<std::size_t>(row)].good);
        if (!codes.contains(code)) codes << code;
    }
    return codes.join(QLatin1Char(','));
}

QStringList CounterPage::chosenBut(std::set<int> goods) const {
    QStringList names;
    for (const int row : chosenLines()) {
        const CounterLine& line = invoice_.lines()[static_cast<std::size_t>(row)];
        if (goods.insert(line.good).second)
            names << QStringLiteral("«%1»").arg(screenText(QString::fromStdString(line.name)));
    }
    return names;
}

void CounterPage::sendToScale() {
    const QString codes = chosenCodes();
    if (codes.isEmpty()) {
        report(ScanMood::Warned, QStringLiteral("کالایی انتخاب نشده است."));
        return;
    }
    progress_->setRange(0, 0);
    progress_->show();
    const ScaleStarts starts(context_.host, *progress_);
    {
        const auto hide = qScopeGuard([this] { progress_->hide(); });
        orReport(QStringLiteral("ارسال به ترازو انجام نشد."), [&] {
            (void)calls_("GoodInf_SendToScale",
                         {{"Codes", codes.toStdString()}, {"ScaleType", scaleType_->currentIndex()}});
        });
    }
    if (starts.failure()) {
        const auto& [program, result] = *starts.failure();
        reportNotSent(starts.sent(), starts.asked(), program, result);
    } else if (starts.asked() == 0) {
        report(ScanMood::Warned, QStringLiteral("هیچ کلیدی از ترازوها برای این کالاها تعریف نشده است."));
    } else {
        const QString sent =
            QStringLiteral("%1 ارسال به برنامهٔ ترازو سپرده شد").arg(persianDigits(QString::number(starts.sent())));
        // Of all together the agent looks up the keys itself.
        const QStringList left = scaleType_->currentIndex() == kOneByOne ? chosenBut(starts.goods()) : QStringList();
        if (left.isEmpty())
            report(ScanMood::Added, sent + QLatin1Char('.'));
        else
            report(ScanMood::Warned, QStringLiteral("%1؛ برای %2 کلیدی در ترازوها تعریف نشده است.")
                                         .arg(sent, inSentence(left, left.size())));
    }
}

void CounterPage::reportNotSent(int sent, int asked, const std::string& program, const StartResult& result) {
    const bool missing = result.reason.empty();
    const QString what = sent == 0
                             ? QStringLiteral("چیزی به ترازو فرستاده نشد؛")
                             : QStringLiteral("از %1 ارسال تنها %2 تا به برنامهٔ ترازو سپرده شد؛")
                                   .arg(persianDigits(QString::number(asked)), persianDigits(QString::number(sent)));
    const QString why = missing ? QStringLiteral("برنامهٔ «%1» پیدا نشد.") : QStringLiteral("برنامهٔ «%1» اجرا نشد.");
    report(ScanMood::Refused, what + QLatin1Char(' ') + why.arg(QString::fromStdString(program)));
    context_.host.Messages().show({.operation = missing ? "MsgProgramMissing" : "MsgProgramFailed",
                                   .kind = MessageKind::Error,
                                   .arguments = {program, missing ? listed(result.searched) : whyNotStarted(result)},
                                   .form = this});
}

void CounterPage::removeLine() {
    const std::set<int> rows = chosenLines();
    if (rows.empty()) {
        report(ScanMood::Warned, QStringLiteral("فاکتور سطری ندارد."));
        return;
    }
    const int first = *rows.begin();
    const CounterLine& line = invoice_.lines()[static_cast<std::size_t>(first)];
    const QString name = screenText(QString::fromStdString(line.name));
    const QString amount = amountText(line.amount, line.unit);
    const bool isOne = rows.size() == 1;
    const QString what = isOne ? QStringLiteral("سطر (%1: «%2»)").arg(persianDigits(QString::number(first + 1)), name)
                               : QStringLiteral("%1 سطر").arg(persianDigits(QString::number(rows.size())));
    const MessageRequest question{.operation = "MsgDeleteItem",
                                  .arguments = {what.toStdString()},
                                  .buttons = {TMessageButton::Yes, TMessageButton::No},
                                  .defaultButton = TMessageButton::No,
                                  .form = this};
    // What one scan has brought can be scanned again; of other goods nobody has to know any more that they were there.
    const bool isNewest = isOne && first == lastScanned_;
    if (!isNewest && context_.host.Messages().show(question) != mrYes) return;
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        invoice_.remove(static_cast<std::size_t>(*row));
    lastScanned_ = -1;
    showLines(first);
    report(ScanMood::Removed, isOne ? QStringLiteral("%1: %2 «%3» حذف شد.").arg(placeOf(first), amount, name)
                                    : QStringLiteral("%1 حذف شد.").arg(what));
}

void CounterPage::startNew() {
    const bool wasEmpty = isEmpty();
    if (mayForget("آغاز فاکتور تازه") && wasEmpty) clearInvoice();  // else it is clear, and the result says how
}

void CounterPage::clearInvoice() {
    invoice_.clear();
    scanner_.resetPriceSum();
    lastScanned_ = -1;
    showLines();
    showPolicy();
    person_->setValue(0);
    removing_->setChecked(false);
    showResult({}, QStringLiteral("آمادهٔ اسکن"));
    scan_->setFocus();
}

}  // namespace basalt::host
