#include "host/counter/layout_page.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>
#include <tuple>

#include "ado/error.h"
#include "host/counter/layout_list.h"
#include "host/counter/scan_text.h"
#include "host/screens/disabled_reason.h"
#include "host/screens/persian_digits.h"
#include "host/screens/persian_inputs.h"
#include "host/screens/theme.h"
#include "host/screens/unsaved_changes.h"
#include "host/services/message_catalogue.h"
#include "host/services/sql_access.h"
#include "package/messages.h"
#include "package/screens/exact_text.h"

namespace basalt::host {

namespace {

constexpr int kLongestBarcode = 100;
constexpr int kLongestPrefix = 20;
constexpr int kLongestTitle = 50;
constexpr int kMostGoods = 999'999'999;
constexpr int kListWidth = 260;
constexpr int kTryingWidth = 180;
const QString kTitle = QStringLiteral("الگوهای بارکد ترازو");
// The formatter would cut the sentence to pieces.
// clang-format off
// A mark that ends a line of a sentence reaches a little beyond its place.
constexpr int kRoomForMarks = 3;  // pixels
const QString kReadOnly = QStringLiteral("اجازهٔ تغییر این الگو را ندارید؛ می‌توانید آن را ببینید و با یک بارکد بیازمایید.");
// clang-format on

struct FieldLook {
    LayoutField field;
    const char* background;
};
constexpr FieldLook kLooks[] = {{LayoutField::Constant, "#DDE2EA"},
                                {LayoutField::Item, "#CFE8D8"},
                                {LayoutField::Amount, "#FBE3B3"},
                                {LayoutField::Balance, "#DCD3F2"},
                                {LayoutField::Price, "#CFE3F5"}};

QString backgroundOf(LayoutField field) {
    for (const FieldLook& look : kLooks) {
        if (look.field == field) return QString::fromLatin1(look.background);
    }
    return {};
}

QString coloured(const QString& text, const QString& background) {
    return QStringLiteral("<span style=\"background-color:%1\">%2</span>").arg(background, text.toHtmlEscaped());
}

// Lines may break within a barcode of a hundred digits, that it does not widen the window.
constexpr int kUnbroken = 20;
const QChar kMayBreak(0x200B);

QString breakable(const QString& text) {
    QString broken;
    int run = 0;
    for (const QChar c : text) {
        run = c.isSpace() ? 0 : run + 1;
        broken += c;
        if (run % kUnbroken == 0 && run > 0) broken += kMayBreak;
    }
    return broken;
}

// A sentence a line.
QString textOf(const std::vector<LayoutProblem>& problems) {
    QStringList texts;
    for (const LayoutProblem& problem : problems)
        texts << problem.text;
    return texts.join(QLatin1Char('\n'));
}

}  // namespace

QString previewOf(const BarcodeLayout& layout, const QString& barcode) {
    const std::vector<FieldSpan> spans = spansOf(layout);
    QString characters;
    for (int position = 1; position <= barcode.size(); ++position) {
        const QString character = persianDigits(barcode.mid(position - 1, 1));
        const auto covers = [position](const FieldSpan& span) { return span.begin <= position && position < span.end; };
        const auto count = std::count_if(spans.begin(), spans.end(), covers);
        if (count == 0) {
            characters += character.toHtmlEscaped();
        } else if (count > 1) {
            characters += coloured(character, themeColors().danger.lighter(170).name());
        } else {
            characters += coloured(character, backgroundOf(std::find_if(spans.begin(), spans.end(), covers)->field));
        }
        if (position % kUnbroken == 0) characters += kMayBreak;
    }
    QString legend;
    for (const FieldSpan& span : spans) {
        const int begin = std::max(span.begin, 1);
        const QString cut = persianDigits(barcode.mid(begin - 1, std::max(span.end - begin, 0)));
        // Tables go from left to right whatever is said of them.
        legend +=
            QStringLiteral(
                "<tr><td align=\"right\" style=\"padding:2px 12px\">%1</td>"
                "<td align=\"right\" style=\"padding:2px 0\">%2</td></tr>")
                .arg(breakable(cut).toHtmlEscaped(),
                     coloured(QStringLiteral("\u00A0%1\u00A0").arg(titleOf(span.field)), backgroundOf(span.field)));
    }
    return QStringLiteral(
               "<div dir=\"ltr\" align=\"center\" style=\"font-size:20pt\">%1</div>"
               "<table align=\"right\">%2</table>")
        .arg(characters, legend);
}

LayoutPage::LayoutPage(DesktopContext context, QWidget* parent)
    : ShellPage(parent), context_(context), store_(context.host.session()) {
    setObjectName(QStringLiteral("Layouts_PNL"));
    // In a window of its own, too.
    setStyleSheet(
        withThemeColors(QStringLiteral("#SampleNote_LBL { color: @muted@; } #LayoutState_LBL { color: @success@; }")));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 24, 28, 20);
    layout->setSpacing(12);
    auto* title = new QLabel(kTitle);
    title->setProperty("kind", QStringLiteral("pageTitle"));
    layout->addWidget(title);
    readOnly_ = new QLabel(kReadOnly);
    readOnly_->setObjectName(QStringLiteral("ReadOnly_LBL"));
    readOnly_->setProperty("kind", QStringLiteral("hint"));
    readOnly_->setWordWrap(true);
    readOnly_->setMargin(kRoomForMarks);
    layout->addWidget(readOnly_);
    makeColumns(*layout);
    makeButtons(*layout);
    // Behind the click, because choosing may fill the list anew.
    QObject::connect(
        list_, &QListWidget::currentRowChanged, this, [this] { context_.handlers.guarded(this, [this] { choose(); }); },
        Qt::QueuedConnection);
}

void LayoutPage::makeColumns(QBoxLayout& layout) {
    // With a large font there is not room for all fields below each other.
    scroll_ = new QScrollArea;
    scroll_->setObjectName(QStringLiteral("Columns_PNL"));
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setWidgetResizable(true);
    auto* side = new QWidget;
    auto* columns = new QHBoxLayout(side);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(16);
    list_ = new QListWidget;
    list_->setObjectName(QStringLiteral("Layouts_LST"));
    list_->setItemDelegate(new LayoutRowDelegate(list_));
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setFixedWidth(themePixels(kListWidth));
    list_->setAccessibleName(kTitle);
    columns->addWidget(list_);
    fields_ = new QWidget;
    makeFields(*new QFormLayout(fields_));
    rest_ = new QHBoxLayout;
    rest_->setSpacing(16);
    rest_->addWidget(fields_, 1);
    auto* trying = new QVBoxLayout;
    makePreview(*trying);
    rest_->addLayout(trying, 1);
    columns->addLayout(rest_, 1);
    scroll_->setWidget(side);
    layout.addWidget(scroll_, 1);
}

// The barcode for trying stands beside the fields, or above them where there is no room: it is typed into first.
void LayoutPage::arrangeColumns() {
    const QMargins margins = layout()->contentsMargins();
    const int room = width() - margins.left() - margins.right() - scroll_->verticalScrollBar()->sizeHint().width();
    const int needed = list_->width() + fields_->sizeHint().width() + themePixels(kTryingWidth) + 2 * rest_->spacing();
    const bool isBeside = room >= needed;
    rest_->setDirection(isBeside ? QBoxLayout::LeftToRight : QBoxLayout::BottomToTop);
    rest_->setStretch(1, isBeside ? 1 : 0);
}

void LayoutPage::resizeEvent(QResizeEvent* event) {
    ShellPage::resizeEvent(event);
    arrangeColumns();
}

QSpinBox* LayoutPage::makeNumber(const QString& objectName, const QString& accessibleName, int BarcodeLayout::*field,
                                 int most) {
    auto* input = new PersianSpinBox;
    input->setObjectName(objectName);
    input->setRange(0, most);
    input->setAccessibleName(accessibleName);
    QObject::connect(input, &QSpinBox::valueChanged, this, [this] { edited(); });
    take_.emplace_back([input, field](BarcodeLayout& layout) { layout.*field = input->value(); });
    fill_.emplace_back([input, field, most](const BarcodeLayout& layout) {
        // A number that another program stored is shown as it is.
        input->setRange(std::min(layout.*field, 0), std::max(layout.*field, most));
        input->setValue(layout.*field);
    });
    return input;
}

QSpinBox* LayoutPage::addNumber(QFormLayout& form, const char* objectName, const QString& title,
                                int BarcodeLayout::*field, int most) {
    QSpinBox* input = makeNumber(QString::fromLatin1(objectName), title, field, most);
    form.addRow(title, input);
    return input;
}

// Where a field begins and how long it is, side by side.
void LayoutPage::addPlace(QFormLayout& form, LayoutField field, const QString& name, const QString& title,
                          int BarcodeLayout::*start, int BarcodeLayout::*count) {
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    QSpinBox* first =
        makeNumber(name + QStringLiteral("Start_EDT"), QStringLiteral("%1 از رقم").arg(title), start, kLongestBarcode);
    row->addWidget(new QLabel(QStringLiteral("از")));
    row->addWidget(first, 1);
    row->addWidget(new QLabel(QStringLiteral("تعداد")));
    counts_[field] = makeNumber(name + QStringLiteral("Count_EDT"), QStringLiteral("تعداد رقم %1").arg(title), count,
                                kLongestBarcode);
    row->addWidget(counts_[field], 1);
    form.addRow(title, row);
}

void LayoutPage::makeFields(QFormLayout& form) {
    const auto makeText = [this, &form](const char* name, const QString& title, auto take) {
        auto* input = new QLineEdit;
        input->setObjectName(QString::fromLatin1(name));
        input->setAccessibleName(title);
        readFromRight(*input);
        form.addRow(title, input);
        // What nobody touches stays as it is stored, be it that the input shows it otherwise.
        QObject::connect(input, &QLineEdit::textEdited, this, [this, take](const QString& text) {
            take(edited_, text);
            edited();
        });
        return input;
    };
    const auto addFlag = [this, &form](const char* name, const QString& title, auto isOn, auto setOn) {
        auto* input = new QCheckBox(title);
        input->setObjectName(QString::fromLatin1(name));
        form.addRow(input);
        QObject::connect(input, &QCheckBox::toggled, this, [this] { edited(); });
        take_.emplace_back([input, setOn](BarcodeLayout& layout) { setOn(layout, input->isChecked()); });
        fill_.emplace_back([input, isOn](const BarcodeLayout& layout) { input->setChecked(isOn(layout)); });
    };

    title_ = makeText("Title_EDT", QStringLiteral("عنوان"),
                      [](BarcodeLayout& layout, const QString& text) { layout.title = text.toStdString(); });
    fill_.emplace_back([name = title_](const BarcodeLayout& layout) { name->setText(exactText(layout.title)); });
    auto* kind = new QComboBox;
    kind->setObjectName(QStringLiteral("BarCodeType_CMB"));
    // In the order of the kinds, from bftAmount.
    kind->addItems({QStringLiteral("کالا و مقدار"), QStringLiteral("جمع فاکتور"), QStringLiteral("مبلغ")});
    form.addRow(QStringLiteral("نوع بارکد"), kind);
    QObject::connect(kind, &QComboBox::currentIndexChanged, this, [this] { edited(); });
    take_.emplace_back([kind](BarcodeLayout& layout) {
        if (kind->currentIndex() >= 0) layout.barCodeType = kind->currentIndex() + bftAmount;
    });
    fill_.emplace_back([kind](const BarcodeLayout& layout) { kind->setCurrentIndex(layout.barCodeType - bftAmount); });
    addNumber(form, "DigitCount_EDT", QStringLiteral("تعداد رقم بارکد"), &BarcodeLayout::digitCount, kLongestBarcode);
    goodName_ = new QLabel;
    goodName_->setObjectName(QStringLiteral("ItemName_LBL"));
    goodName_->setTextFormat(Qt::PlainText);
    goodName_->setWordWrap(true);
    goodName_->setProperty("kind", QStringLiteral("hint"));
    prefix_ = makeText(
        "ConstantCode_EDT", QStringLiteral("پیش‌شماره"),
        [](BarcodeLayout& layout, const QString& text) { layout.constantCode = latinDigits(text).toStdString(); });
    prefix_->setValidator(new PersianDigitsShown(prefix_));
    fill_.emplace_back([prefix = prefix_](const BarcodeLayout& layout) {
        prefix->setText(persianDigits(latinDigits(QString::fromStdString(layout.constantCode))));
    });
    addPlace(form, LayoutField::Constant, QStringLiteral("Constant"), QStringLiteral("جای پیش‌شماره"),
             &BarcodeLayout::constantStart, &BarcodeLayout::constantCount);
    addNumber(form, "ItemConstantCode_EDT", QStringLiteral("کالای ثابت"), &BarcodeLayout::itemConstantCode, kMostGoods);
    form.addRow(goodName_);
    addFlag(
        "ItemCodeType_CHK", QStringLiteral("رقم‌های کالا همان کد کالاست"),
        [](const BarcodeLayout& layout) { return layout.itemCodeType == kGoodFieldIsItsCode; },
        [](BarcodeLayout& layout, bool on) {
            // Every other value means the same; the one that is stored stays.
            if (on != (layout.itemCodeType == kGoodFieldIsItsCode))
                layout.itemCodeType = on ? kGoodFieldIsItsCode : kGoodFieldIsItsCode + 1;
        });
    addPlace(form, LayoutField::Item, QStringLiteral("ItemCode"), QStringLiteral("کالا"), &BarcodeLayout::itemCodeStart,
             &BarcodeLayout::itemCodeCount);
    addPlace(form, LayoutField::Amount, QStringLiteral("Amount"), QStringLiteral("مقدار"), &BarcodeLayout::amountStart,
             &BarcodeLayout::amountCount);
    addFlag(
        "AmountDivide_CHK", QStringLiteral("مقدار به هزارم است"),
        [](const BarcodeLayout& layout) { return layout.amountDivide > 0; },
        [](BarcodeLayout& layout, bool on) {
            if (on != (layout.amountDivide > 0)) layout.amountDivide = on ? 1000 : 0;
        });
    addPlace(form, LayoutField::Balance, QStringLiteral("BalanceNo"), QStringLiteral("شمارهٔ ترازو"),
             &BarcodeLayout::balanceNoStart, &BarcodeLayout::balanceNoCount);
    addFlag(
        "BalanceNoAsStore_CHK", QStringLiteral("شمارهٔ ترازو خوانده شود"),
        [](const BarcodeLayout& layout) { return layout.balanceNoAsStore; },
        [](BarcodeLayout& layout, bool on) { layout.balanceNoAsStore = on; });
    addPlace(form, LayoutField::Price, QStringLiteral("Price"), QStringLiteral("مبلغ"), &BarcodeLayout::priceStart,
             &BarcodeLayout::priceCount);
}

void LayoutPage::makePreview(QBoxLayout& layout) {
    auto* title = new QLabel(QStringLiteral("آزمایش با یک بارکد"));
    title->setProperty("kind", QStringLiteral("sectionTitle"));
    layout.addWidget(title);
    sample_ = new QLineEdit;
    sample_->setObjectName(QStringLiteral("Sample_EDT"));
    sample_->setPlaceholderText(QStringLiteral("بارکد"));
    sample_->setAccessibleName(title->text());
    sample_->setValidator(new PersianDigitsShown(sample_));
    sample_->setMaxLength(kLongestBarcode);
    readFromRight(*sample_);
    layout.addWidget(sample_);
    preview_ = new QLabel;
    preview_->setObjectName(QStringLiteral("Preview_LBL"));
    preview_->setTextFormat(Qt::RichText);
    preview_->setWordWrap(true);
    layout.addWidget(preview_);
    problems_ = new QLabel;
    problems_->setObjectName(QStringLiteral("Problems_LBL"));
    problems_->setProperty("kind", QStringLiteral("problem"));
    problems_->setTextFormat(Qt::PlainText);
    problems_->setWordWrap(true);
    problems_->setMargin(kRoomForMarks);
    layout.addWidget(problems_);
    sampleNote_ = new QLabel;
    sampleNote_->setObjectName(QStringLiteral("SampleNote_LBL"));
    sampleNote_->setTextFormat(Qt::PlainText);
    sampleNote_->setWordWrap(true);
    sampleNote_->setMargin(kRoomForMarks);
    layout.addWidget(sampleNote_);
    layout.addStretch();
    QObject::connect(sample_, &QLineEdit::textChanged, this, [this] { refresh(); });
}

QPushButton* LayoutPage::addButton(QBoxLayout& row, const char* objectName, const QString& title,
                                   const QKeySequence& key, void (LayoutPage::*work)()) {
    auto* button =
        new QPushButton(QStringLiteral("%1 \u2066%2\u2069").arg(title, key.toString(QKeySequence::NativeText)));
    button->setObjectName(QString::fromLatin1(objectName));
    row.addWidget(button);
    const auto run = [this, button, work] {
        if (button->isEnabled()) context_.handlers.guarded(this, [this, work] { (this->*work)(); });
    };
    QObject::connect(button, &QPushButton::clicked, this, run);
    auto* shortCut = new QShortcut(key, this);
    shortCut->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(shortCut, &QShortcut::activated, this, run);
    return button;
}

void LayoutPage::makeButtons(QBoxLayout& layout) {
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    save_ = addButton(*row, "Save_BTN", QStringLiteral("ذخیره"), QKeySequence(Qt::Key_F3), &LayoutPage::save);
    save_->setProperty("kind", QStringLiteral("primary"));
    new_ = addButton(*row, "New_BTN", QStringLiteral("جدید"), QKeySequence(Qt::Key_F4), &LayoutPage::startNew);
    remove_ = addButton(*row, "Delete_BTN", QStringLiteral("حذف"), QKeySequence(Qt::Key_F7), &LayoutPage::remove);
    remove_->setProperty("kind", QStringLiteral("danger"));
    state_ = new QLabel;
    state_->setObjectName(QStringLiteral("LayoutState_LBL"));
    row->addSpacing(8);
    row->addWidget(state_);
    row->addStretch();
    layout.addLayout(row);
}

void LayoutPage::changeEvent(QEvent* event) {
    ShellPage::changeEvent(event);
    const bool follows = event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
    if (list_ != nullptr && follows)  // the style is set before there is a list
        list_->setFixedWidth(themePixels(kListWidth));
}

void LayoutPage::enter() {
    rights_ = {.insert = may(prInsert, false), .edit = may(prEdit, false), .remove = may(prDelete, false)};
    reload(stored_.id);
    arrangeColumns();
    sample_->setFocus();
    // Behind the layouting, which a page that has just come to the front has yet to go through.
    QMetaObject::invokeMethod(
        scroll_, [this] { scroll_->ensureWidgetVisible(sample_); }, Qt::QueuedConnection);
}

bool LayoutPage::mayLeave() {
    return settleChanges({});
}

bool LayoutPage::settleChanges(const std::vector<std::string>& before) {
    if (edited_ == stored_) return true;
    const auto save = [this] {
        if (!write()) return false;
        reload(stored_.id);
        return true;
    };
    return mayLeaveUnsaved(
        context_.host.Messages(), *window(), save, [this] { show(stored_); }, before);
}

void LayoutPage::reload(int id) {
    layouts_ = store_.all();
    const QSignalBlocker quiet(list_);
    list_->clear();
    int current = layouts_.empty() ? -1 : 0;
    for (std::size_t i = 0; i < layouts_.size(); ++i) {
        list_->addItem(newLayoutRow(layouts_[i]));
        if (layouts_[i].id == id) current = static_cast<int>(i);
    }
    list_->setCurrentRow(current);
    show(current < 0 ? BarcodeLayout{} : layouts_[static_cast<std::size_t>(current)]);
}

void LayoutPage::choose() {
    const int row = list_->currentRow();
    if (row < 0) return;
    const BarcodeLayout chosen = layouts_[static_cast<std::size_t>(row)];
    if (chosen.id == stored_.id) return;
    if (settleChanges({"رفتن به الگوی دیگر"})) {
        reload(chosen.id);
        return;
    }
    const QSignalBlocker quiet(list_);
    const auto back =
        std::find_if(layouts_.begin(), layouts_.end(), [this](const auto& l) { return l.id == stored_.id; });
    list_->setCurrentRow(back == layouts_.end() ? -1 : static_cast<int>(back - layouts_.begin()));
}

void LayoutPage::show(const BarcodeLayout& layout) {
    stored_ = edited_ = layout;
    showing_ = true;
    for (const auto& fill : fill_)
        fill(layout);
    showing_ = false;
    state_->clear();
    refresh();
}

void LayoutPage::edited() {
    if (showing_) return;
    for (const auto& take : take_)
        take(edited_);
    state_->clear();
    refresh();
}

void LayoutPage::showGood() {
    if (namedGood_ == edited_.itemConstantCode) return;
    namedGood_ = edited_.itemConstantCode;
    const RowSet found = rowsOf(context_.host.session(), "SELECT Name FROM dbo.GoodInf WHERE Code = ?",
                                {std::int64_t{edited_.itemConstantCode}});
    goodName_->setText(found.rowCount() > 0 ? screenText(QString::fromStdString(textAt(found, 0, 0)))
                                            : QStringLiteral("کالایی با این کد تعریف نشده است."));
    goodName_->setVisible(edited_.itemConstantCode > 0);
}

void LayoutPage::refresh() {
    showGood();
    const QString sample = repairedScan(sample_->text());
    preview_->setText(sample.isEmpty() ? QString() : previewOf(edited_, sample));
    // One that nobody has begun yet lacks everything, and need not be told so.
    const bool begun = stored_.id != 0 || !(edited_ == stored_);
    problems_->setText(begun ? breakable(textOf(problemsOf(edited_, layouts_))) : QString());
    sampleNote_->setText(begun && !sample.isEmpty() ? breakable(noteOn(sample)) : QString());
    // What says nothing takes no room from the fields.
    for (QLabel* text : {preview_, problems_, sampleNote_})
        text->setVisible(!text->text().isEmpty());
    const bool mayChange = stored_.id == 0 ? rights_.insert : rights_.edit;
    const QString right = mayChange ? QString() : notPermittedReason();
    enableUnless(*fields_, right);
    readOnly_->setVisible(!mayChange);
    enableUnless(*save_, mayChange && edited_ == stored_ ? nothingChangedReason() : right);
    enableUnless(*new_, rights_.insert ? QString() : notPermittedReason());
    enableUnless(*remove_, !rights_.remove       ? notPermittedReason()
                           : stored_.id != 0     ? QString()
                           : list_->count() == 0 ? emptyListReason()
                                                 : nothingChosenReason());
}

QString LayoutPage::noteOn(const QString& sample) const {
    QStringList notes;
    const bool own = fits(edited_, sample);
    if (!own && isFoundFor(edited_, sample)) {
        notes << QStringLiteral(
            "این بارکد با این الگو نمی‌خواند؛ پیش‌شماره‌اش در بزرگی و کوچکی حرف‌ها، خط رقم‌ها، فاصله یا نشانه‌ای ناپیدا فرق دارد.");
    } else if (!own && sample.size() != edited_.digitCount) {
        notes << QStringLiteral(
                     "این بارکد با این الگو نمی‌خواند؛ %1 رقم دارد، نه %2.")
                     .arg(persianDigits(QString::number(sample.size())),
                          persianDigits(QString::number(edited_.digitCount)));
    } else if (!own) {
        notes << QStringLiteral(
            "این بارکد با این الگو نمی‌خواند؛ پیش‌شماره‌اش دیگر است.");
    } else if (const auto fault = faultOf(edited_, sample, context_.host.SettingRecord().FindGoodByScaleCode)) {
        notes << QStringLiteral("اسکن این بارکد پذیرفته نمی‌شود: %1").arg(*fault);
    }
    QStringList fitting;
    QStringList hiding;
    for (const BarcodeLayout& other : layouts_) {
        if (other.id == edited_.id || !isFoundFor(other, sample)) continue;
        (fits(other, sample) ? fitting : hiding) << nameOf(other);
    }
    if (!fitting.isEmpty())
        notes << (own ? QStringLiteral("این بارکد با الگوی %1 هم می‌خواند.")
                      : QStringLiteral("این بارکد با الگوی %1 می‌خواند."))
                     .arg(fitting.join(QStringLiteral("، ")));
    // The one that is found first is the only one that a scan looks at.
    if (!hiding.isEmpty() && (own || !fitting.isEmpty()))
        notes
            << QStringLiteral(
                   "الگوی %1 هم برای این بارکد پیدا می‌شود ولی پیش‌شماره‌اش حرف به حرف همان نیست؛ اگر "
                   "پیش از دیگران پیدا شود، بارکد خوانده نمی‌شود.")
                   .arg(hiding.join(QStringLiteral("، ")));
    return notes.join(QLatin1Char('\n'));
}

void LayoutPage::save() {
    if (!write()) return;
    reload(stored_.id);
    state_->setText(QStringLiteral("الگو ذخیره شد."));
}

bool LayoutPage::mayWrite() {
    std::vector<LayoutProblem> problems = problemsOf(edited_, layouts_);
    if (problems.empty()) return true;
    const auto isDoubtful = [](const LayoutProblem& problem) { return !problem.isHopeless; };
    if (std::all_of(problems.begin(), problems.end(), isDoubtful)) {
        const MessageRequest question{.operation = "MsgSaveAnyway",
                                      .arguments = {textOf(problems).toStdString()},
                                      .buttons = {TMessageButton::Yes, TMessageButton::No},
                                      .defaultButton = TMessageButton::No,
                                      .form = window()};
        if (context_.host.Messages().show(question) == mrYes) return true;
        focusField(problems.front());
        return false;
    }
    std::erase_if(problems, isDoubtful);
    context_.host.Messages().show(
        {.operation = "MsgLayoutUseless", .arguments = {textOf(problems).toStdString()}, .form = window()});
    focusField(problems.front());
    return false;
}

void LayoutPage::focusField(const LayoutProblem& problem) {
    // A prefix of the wrong length or with other signs is written anew; its count is only wrong below nothing.
    const bool isPrefix = problem.field == LayoutField::Constant && edited_.constantCount >= 0;
    if (isPrefix)
        prefix_->setFocus();
    else if (problem.field)
        counts_.at(*problem.field)->setFocus();
}

bool LayoutPage::areShortEnough() {
    const std::tuple<QLineEdit*, const std::string&, int> texts[] = {{title_, edited_.title, kLongestTitle},
                                                                     {prefix_, edited_.constantCode, kLongestPrefix}};
    for (const auto& [input, text, longest] : texts) {
        const auto length = QString::fromStdString(text).size();
        if (length <= longest) continue;
        MessageRequest request = MessageCatalogue().errorRequest(
            ValueTooLong(input->accessibleName().toStdString(), static_cast<std::size_t>(length),
                         static_cast<std::size_t>(longest), "a text of a layout is too long"));
        request.form = this;
        context_.host.Messages().show(request);
        input->setFocus();
        return false;
    }
    return true;
}

bool LayoutPage::write() {
    const bool isNew = stored_.id == 0;
    const TPermission permission = isNew ? prInsert : prEdit;
    if (!may(permission)) return false;
    if (QString::fromStdString(edited_.title).trimmed().isEmpty()) {
        context_.host.Messages().show(
            {.operation = "MsgRequiredField", .arguments = {"عنوان"}, .control = title_, .form = this});
        title_->setFocus();
        return false;
    }
    if (!areShortEnough()) return false;
    if (!mayWrite()) return false;
    BarcodeLayout written = edited_;
    const auto store = [&] {
        HostTransaction transaction(context_.host.session());
        auto outcome = LayoutOutcome::Written;
        if (isNew) {
            written.id = store_.add(edited_);
        } else {
            outcome = store_.change(stored_, edited_);
        }
        if (outcome != LayoutOutcome::Written) return outcome;
        log(permission, written);
        transaction.commit();
        return outcome;
    };
    if (const LayoutOutcome outcome = store(); outcome != LayoutOutcome::Written) {
        tellNotWritten(outcome);
        return false;
    }
    stored_ = edited_ = written;
    return true;
}

void LayoutPage::tellNotWritten(LayoutOutcome outcome) {
    const bool gone = outcome == LayoutOutcome::Gone;
    context_.host.Messages().show({.operation = gone ? "MsgRecordGone" : "MsgRecordChanged", .form = this});
    reload(stored_.id);
}

bool LayoutPage::may(TPermission permission, bool tell) {
    return context_.host.HavePermission(context_.host.UserInfo(), spGoods, permission, false, tell, "");
}

void LayoutPage::log(TPermission permission, const BarcodeLayout& layout) {
    context_.host.SetUserEvent(spGoods, permission,
                               "الگوی بارکد " + std::to_string(layout.id) + " «" + layout.title + "»", true, true);
}

void LayoutPage::startNew() {
    if (!settleChanges({"شروع الگوی تازه"})) return;
    const QSignalBlocker quiet(list_);
    list_->setCurrentRow(-1);
    show({});
    title_->setFocus();
}

void LayoutPage::remove() {
    if (!may(prDelete)) return;
    MessageRequest question{.operation = "MsgDeleteItem",
                            .arguments = {"الگو"},
                            .buttons = {TMessageButton::Yes, TMessageButton::No},
                            .defaultButton = TMessageButton::No};
    if (context_.host.Messages().show(question) != mrYes) return;
    const auto erase = [this] {
        HostTransaction transaction(context_.host.session());
        const LayoutOutcome outcome = store_.remove(stored_);
        if (outcome != LayoutOutcome::Written) return outcome;
        log(prDelete, stored_);
        transaction.commit();
        return outcome;
    };
    if (const LayoutOutcome outcome = erase(); outcome != LayoutOutcome::Written) {
        tellNotWritten(outcome);
        return;
    }
    reload(0);
}

}  // namespace basalt::host
