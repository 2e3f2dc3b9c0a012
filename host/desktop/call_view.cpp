#include "host/desktop/call_view.h"

#include <QHeaderView>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <algorithm>

#include "host/calls/answer.h"
#include "host/screens/disabled_reason.h"
#include "host/screens/marked_statement.h"
#include "host/screens/persian_digits.h"
#include "host/screens/theme.h"
#include "package/screens/tool_tip.h"

namespace basalt::host {
namespace {

constexpr int kFewestErrorLines = 2;
constexpr int kMostErrorLines = 6;

enum Tab { kResult, kStatements, kQueries, kMessages, kEvents };

// Persian cells among Latin ones read from the right all the same: the mark of a cut text stands at its end.
class CellDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (option->text.isRightToLeft()) option->direction = Qt::RightToLeft;
    }
};

void prepare(QTableView& table) {
    // Names, statements and values of a call read from the left.
    table.setLayoutDirection(Qt::LeftToRight);
    table.setItemDelegate(new CellDelegate(&table));
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setAlternatingRowColors(true);
    table.setShowGrid(false);
    table.setWordWrap(true);
    table.setTabKeyNavigation(false);
    table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter);
    table.horizontalHeader()->setHighlightSections(false);
    table.horizontalHeader()->setStretchLastSection(true);
}

// As wide as what they hold, within limits; the last one takes the rest.
void sizeColumns(QTableView& table) {
    constexpr int kLeast = 70;
    constexpr int kMost = 320;
    table.resizeColumnsToContents();
    for (int column = 0; column + 1 < table.model()->columnCount(); ++column)
        table.setColumnWidth(column, std::clamp(table.columnWidth(column), themePixels(kLeast), themePixels(kMost)));
}

void fill(QTableWidget& table, const std::vector<QStringList>& rows) {
    table.setRowCount(static_cast<int>(rows.size()));
    for (std::size_t row = 0; row < rows.size(); ++row) {
        int column = 0;
        for (const QString& text : rows[row]) {
            auto* item = new QTableWidgetItem(text);
            item->setToolTip(plainToolTip(text));
            table.setItem(static_cast<int>(row), column++, item);
        }
    }
    sizeColumns(table);
    table.resizeRowsToContents();
}

QString textOf(const Datum& value) {
    if (value.isNull()) return QStringLiteral("null");
    return QString::fromStdString(value.isRecord() || value.isList() ? value.toJson() : value.asText());
}

QString statementText(const SentStatement& statement) {
    std::string text = statement.procedure.empty() ? statement.text : statement.procedure;
    std::string values;
    for (const Argument& parameter : statement.parameters)
        values += (values.empty() ? "" : ", ") + parameter.name + " = " + Datum::from(parameter.value).toJson();
    if (!values.empty()) text += "\n" + values;
    return QString::fromStdString(text);
}

}  // namespace

CallView::CallView(const MessageCatalogue& catalogue, QWidget* parent) : QWidget(parent), catalogue_(catalogue) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    state_ = new QLabel;
    state_->setObjectName(QStringLiteral("CallState_LBL"));
    state_->setWordWrap(true);
    state_->setTextFormat(Qt::PlainText);
    layout->addWidget(state_);
    tabs_ = new QTabWidget;
    tabs_->setObjectName(QStringLiteral("Result_TAB"));
    tabs_->setDocumentMode(true);
    layout->addWidget(tabs_, 1);
    addResult();
    statements_ = addTable("Statements_GRD", QStringLiteral("دستورها"),
                           {QStringLiteral("جزء"), QStringLiteral("کار"), QStringLiteral("متن")});
    addQueries();
    messages_ = addTable("Messages_GRD", QStringLiteral("پیام‌ها"),
                         {QStringLiteral("پیام"), QStringLiteral("پاسخ"), QStringLiteral("متن")});
    events_ = addTable("Events_GRD", QStringLiteral("رویدادها"),
                       {QStringLiteral("بخش"), QStringLiteral("مجوز"), QStringLiteral("متن")});
    clear();
}

// What came of the call: why it failed, and below it the outputs as they then stood.
void CallView::addResult() {
    result_ = makeTable("Result_GRD", QStringLiteral("نتیجه"), {QStringLiteral("نام"), QStringLiteral("مقدار")});
    error_ = new QPlainTextEdit;
    error_->setObjectName(QStringLiteral("CallError_EDT"));
    error_->setProperty("kind", QStringLiteral("detail"));
    error_->setAccessibleName(QStringLiteral("متن خطا"));
    error_->setReadOnly(true);
    error_->setTabChangesFocus(true);
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(error_, 0, Qt::AlignTop);
    layout->addWidget(result_, 1);
    addPage(page, result_->accessibleName());
}

void CallView::addPage(QWidget* page, const QString& title) {
    titles_.append(title);
    tabs_->addTab(page, title);
}

QTableWidget* CallView::addTable(const char* objectName, const QString& title, const QStringList& columns) {
    QTableWidget* table = makeTable(objectName, title, columns);
    addPage(table, title);
    return table;
}

QTableWidget* CallView::makeTable(const char* objectName, const QString& title, const QStringList& columns) {
    auto* table = new QTableWidget(0, static_cast<int>(columns.size()));
    table->setObjectName(QString::fromLatin1(objectName));
    table->setAccessibleName(title);
    table->setHorizontalHeaderLabels(columns);
    prepare(*table);
    table->verticalHeader()->hide();
    return table;
}

void CallView::addQueries() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 8, 0, 0);
    query_ = new QComboBox;
    query_->setObjectName(QStringLiteral("Query_CMB"));
    query_->setAccessibleName(QStringLiteral("پرس‌وجو"));
    query_->setLayoutDirection(Qt::LeftToRight);
    layout->addWidget(query_);
    queryText_ = new QLabel;
    queryText_->setObjectName(QStringLiteral("QueryText_LBL"));
    queryText_->setWordWrap(true);
    queryText_->setTextFormat(Qt::PlainText);
    queryText_->setProperty("kind", QStringLiteral("hint"));
    queryText_->setAlignment(Qt::AlignLeft | Qt::AlignTop | Qt::AlignAbsolute);
    queryText_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(queryText_);
    rowTable_ = new QTableView;
    rowTable_->setObjectName(QStringLiteral("Rows_GRD"));
    rowTable_->setAccessibleName(QStringLiteral("ردیف‌ها"));
    rowTable_->setModel(&rows_);
    prepare(*rowTable_);
    rowTable_->verticalHeader()->setDefaultSectionSize(themePixels(34));
    layout->addWidget(rowTable_, 1);
    addPage(page, QStringLiteral("ردیف‌ها"));
    QObject::connect(query_, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index < 0) return;
        const QueryReport& query = queries_.at(static_cast<std::size_t>(index));
        queryText_->setText(QString::fromStdString(query.text));
        showRows(query.rows);
    });
}

void CallView::showRows(Datum::List rows) {
    rows_.setRecords(std::move(rows));
    sizeColumns(*rowTable_);
}

void CallView::setTitle(int tab, std::size_t count) {
    const QString& title = titles_.at(tab);
    tabs_->setTabText(tab, count == 0 ? title : persianDigits(QStringLiteral("%1 (%2)").arg(title).arg(count)));
}

void CallView::showState(const QString& text, bool success) {
    state_->setProperty("kind", success ? QStringLiteral("success") : QStringLiteral("error"));
    state_->style()->unpolish(state_);
    state_->style()->polish(state_);
    state_->setText(text);
    state_->setVisible(!text.isEmpty());
    error_->hide();
    result_->show();
}

// What the program says is for the one who calls functions, and reads from the left.
void CallView::showDetail(const QString& detail) {
    showMarked(*error_, detail);
    // Its lines, and one more where a long one wraps; a longer message is scrolled.
    const int lines = std::clamp(error_->blockCount() + 1, kFewestErrorLines, kMostErrorLines);
    const QMargins margins = error_->contentsMargins();
    const int rim = margins.top() + margins.bottom() + 2 * static_cast<int>(error_->document()->documentMargin());
    error_->setMinimumHeight(kFewestErrorLines * error_->fontMetrics().lineSpacing() + rim);
    error_->setMaximumHeight(lines * error_->fontMetrics().lineSpacing() + rim);
    error_->show();
    result_->hide();
    tabs_->setCurrentIndex(kResult);
}

void CallView::showProblem(const ArgumentError& problem) {
    clear();
    const QString name = QStringLiteral("\u2066%1\u2069").arg(QString::fromStdString(problem.parameter()));
    if (problem.kind() == ArgumentError::Kind::Missing) {
        showState(QStringLiteral("ورودی «%1» داده نشده است.").arg(name), false);
        return;
    }
    showState(QStringLiteral("آنچه برای ورودی «%1» نوشته شده از نوع آن نیست.").arg(name), false);
    showDetail(QString::fromStdString(problem.what()));
}

void CallView::showError(const CallError& error) {
    const QString what = error.type == "DatabaseError" ? QStringLiteral("پایگاه داده دستور را اجرا نکرد")
                         : error.type == "UsageError" ? QStringLiteral("فراخوانی درست نیست")
                                                      : QStringLiteral("اجرا ناتمام ماند");
    showState(what + QLatin1Char('.'), false);
    showDetail(QString::fromStdString(error.message));
}

void CallView::clear() {
    show(CallReport{});
    showState({}, true);
}

void CallView::show(CallReport report) {
    showResult(report);
    showStatements(report);
    showMessages(report);
    showEvents(report);
    queries_ = std::move(report.queries);
    showQueries();
    if (report.error) {
        showError(*report.error);
        // A result that never came is no news.
        result_->setVisible(!report.out.empty());
    } else {
        showState(QStringLiteral("اجرا شد."), true);
    }
}

void CallView::showResult(const CallReport& report) {
    std::vector<QStringList> rows;
    if (!report.function.empty()) rows.push_back({QStringLiteral("نتیجه"), textOf(report.result)});
    for (const auto& [name, value] : report.out) {
        if (!value.isRecord()) {
            rows.push_back({QString::fromStdString(name), textOf(value)});
            continue;
        }
        for (const auto& [field, content] : value.asRecord())
            rows.push_back({QString::fromStdString(name + "." + field), textOf(content)});
    }
    fill(*result_, rows);
}

void CallView::showStatements(const CallReport& report) {
    std::vector<QStringList> rows;
    for (const SentStatement& statement : report.statements)
        rows.push_back({QString::fromStdString(statement.component), QString::fromStdString(statement.action),
                        statementText(statement)});
    fill(*statements_, rows);
    setTitle(kStatements, rows.size());
}

void CallView::showQueries() {
    const QSignalBlocker quiet(query_);
    query_->clear();
    for (const QueryReport& query : queries_)
        query_->addItem(QStringLiteral("\u2066%1\u2069 — \u2067%2\u2069")
                            .arg(QString::fromStdString(query.name),
                                 query.active ? persianDigits(QStringLiteral("%1 ردیف").arg(query.rows.size()))
                                              : QStringLiteral("بسته")));
    setTitle(kQueries, queries_.size());
    const bool any = !queries_.empty();
    enableUnless(
        *query_,
        any ? QString() : QStringLiteral("این فراخوانی پرس‌وجویی را باز نکرده است."));
    queryText_->setText(any ? QString::fromStdString(queries_.front().text) : QString());
    showRows(any ? queries_.front().rows : Datum::List{});
}

void CallView::showMessages(const CallReport& report) {
    std::vector<QStringList> rows;
    for (const MessageReport& message : report.messages) {
        rows.push_back({QString::fromStdString(describe(message.request)),
                        message.answer ? QString::fromStdString(answerName(*message.answer)) : QString(),
                        QString::fromStdString(catalogue_.render(message.request).text)});
    }
    fill(*messages_, rows);
    setTitle(kMessages, rows.size());
}

void CallView::showEvents(const CallReport& report) {
    std::vector<QStringList> rows;
    for (const EventReport& event : report.events)
        rows.push_back(
            {QString::number(event.part), QString::number(event.permission), QString::fromStdString(event.text)});
    fill(*events_, rows);
    setTitle(kEvents, rows.size());
}

}  // namespace basalt::host
