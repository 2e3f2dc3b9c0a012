// Tables as text, workbook and pages.
#include <gmock/gmock.h>

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <algorithm>
#include <functional>
#include <set>
#include <utility>
#include <vector>

#include "host/screens/number_room.h"
#include "host/screens/persian_digits.h"
#include "host/screens/record_content.h"
#include "host/screens/table_printer.h"
#include "host/screens/table_text.h"
#include "host/screens/table_workbook.h"
#include "host/screens/theme.h"
#include "host/screens/wrapped_text.h"
#include "host/services/output_error.h"
#include "tests/host_screens/painted_text.h"
#include "tests/host_screens/screen_test.h"
#include "tests/support/unzipped.h"
#ifndef _WIN32
#include "tests/support/small_files.h"
#endif

namespace basalt::host {
namespace {

using ::testing::EndsWith;
using ::testing::ThrowsMessage;

class Table final : public TableContent {
public:
    std::vector<TableColumn> columnList;
    std::vector<std::vector<Value>> rows;

    [[nodiscard]] QString title() const override { return QStringLiteral("سطوح قیمت"); }
    [[nodiscard]] std::vector<QString> headerLines() const override { return {QStringLiteral("شرکت نمونه")}; }
    [[nodiscard]] const std::vector<TableColumn>& columns() const override { return columnList; }
    [[nodiscard]] int rowCount() const override { return static_cast<int>(rows.size()); }
    [[nodiscard]] Value value(int row, int column) const override {
        return rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    }
    [[nodiscard]] QString shown(int row, int column) const override {
        return QString::fromStdString(toText(value(row, column)));
    }
};

Table sample() {
    Table table;
    table.columnList = {{QStringLiteral("کد"), FieldType::Integer, {}, 60},
                        {QStringLiteral("عنوان, \"شرح\""), FieldType::Text, {}, 200},
                        {QStringLiteral("قیمت"), FieldType::Decimal, "#,#0.##;-#,#0.##;0", 120},
                        {QStringLiteral("تاریخ"), FieldType::Date, {}, 100}};
    table.rows = {{std::int64_t{1}, std::string("ساده"), *Decimal::parse("12500.50"),
                   fromCivil({.year = 2026, .month = 11, .day = 21})},
                  {std::int64_t{2}, std::string("با \"گیومه\", ویرگول\nو سطر"), Value{}, Value{}},
                  {std::int64_t{-3}, std::string("تب\tدارد"), *Decimal::parse("1234567890123456.78"), Value{}}};
    return table;
}

QByteArray contents(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

bool holds(const std::string& text, const char* piece) {
    return text.find(piece) != std::string::npos;
}

class TableOutput : public ScreenTest {
protected:
    // The parts of a workbook with these prices, one a row.
    [[nodiscard]] auto workbookOf(std::initializer_list<const char*> prices) const {
        Table table = sample();
        table.rows.clear();
        for (const char* price : prices)
            table.rows.push_back({std::int64_t{1}, std::string("کالا"), *Decimal::parse(price), Value{}});
        const QString path = folder.filePath("t.xlsx");
        writeWorkbook(table, path);
        return unzipped(contents(path));
    }

    QTemporaryDir folder;
};

TEST_F(TableOutput, tabSeparatedQuotesWhatWouldBreakItsCells) {
    const int rows[]{2, 1};
    EXPECT_EQ(tabSeparated(sample(), rows).toStdString(),
              "کد\t\"عنوان, \"\"شرح\"\"\"\tقیمت\tتاریخ\n"
              "-3\t\"تب\tدارد\"\t1234567890123456.78\t\n"
              "2\t\"با \"\"گیومه\"\", ویرگول\nو سطر\"\t\t\n");
}

TEST_F(TableOutput, thePaperIsTheSameWhateverTheFontOfTheScreen) {
    const auto pages = [](qreal fontSize) {
        setThemeFontSize(fontSize);
        Table table;
        for (int column = 0; column < 5; ++column)
            table.columnList.push_back({QStringLiteral("شرح"), FieldType::Text, {}, qRound(themeSize(260))});
        for (int row = 0; row < 60; ++row)
            table.rows.emplace_back(
                5,
                Value(std::string("کالایی با شرحی که از چند سطر کوتاه‌تر نیست و ") +
                      "دنباله‌ای هم دارد که به آن نمی‌رسد"));
        TableDocument document(table, {});
        return document.layOut(pageLayout());
    };
    const int usual = pages(10);
    EXPECT_GT(usual, 1);
    EXPECT_EQ(pages(8), usual);
    EXPECT_EQ(pages(16), usual);
    setThemeFontSize(10);
}

TEST_F(TableOutput, csvQuotesWhatMustBeQuoted) {
    const QString path = folder.filePath("t.csv");
    writeCsv(sample(), path);
    EXPECT_EQ(contents(path).toStdString(),
              "\xEF\xBB\xBF"
              "کد,\"عنوان, \"\"شرح\"\"\",قیمت,تاریخ\r\n"
              "1,ساده,12500.5,2026-11-21\r\n"
              "2,\"با \"\"گیومه\"\", ویرگول\nو سطر\",,\r\n"
              "-3,تب\tدارد,1234567890123456.78,\r\n");
}

TEST_F(TableOutput, csvLeavesTheOldFileWhenItFails) {
    EXPECT_THROW(writeCsv(sample(), QStringLiteral("/nowhere/t.csv")), OutputError);
}

TEST_F(TableOutput, aWorkbookHoldsNumbersDatesAndFormats) {
    const QString path = folder.filePath("t.xlsx");
    writeWorkbook(sample(), path);
    const auto files = unzipped(contents(path));
    const std::string& sheet = files.at("xl/worksheets/sheet1.xml");
    EXPECT_TRUE(holds(sheet, "rightToLeft=\"1\""));
    EXPECT_TRUE(holds(sheet, "<c r=\"A2\"><v>1</v></c>")) << sheet;
    EXPECT_TRUE(holds(sheet, "<v>12500.5</v>"));
    EXPECT_TRUE(holds(sheet, "<v>46347</v>")) << "2026-11-21 as a date of a spreadsheet";
    EXPECT_TRUE(holds(sheet, "<t>ساده</t>"));
    EXPECT_TRUE(holds(sheet, "<t>1234567890123456.78</t>")) << "too many digits for a spreadsheet's number";
    EXPECT_TRUE(holds(files.at("xl/styles.xml"), "\"#,##0.0;-#,##0.0;0\""));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("t.xlsx")});
}

TEST_F(TableOutput, aWorkbookHoldsPricesOfTheColumnsScaleAsNumbers) {
    const auto files =
        workbookOf({"12500000.000000000", "-1234567.891000000", "99999999999999.999999999", "0.000000001"});
    const std::string& sheet = files.at("xl/worksheets/sheet1.xml");
    EXPECT_TRUE(holds(sheet, "<v>12500000</v>")) << sheet;
    EXPECT_TRUE(holds(sheet, "<v>-1234567.891</v>"));
    EXPECT_TRUE(holds(sheet, "<t>99999999999999.999999999</t>"));
    EXPECT_TRUE(holds(sheet, "<v>1E-09</v>") || holds(sheet, "<v>1e-09</v>"));
}

TEST_F(TableOutput, aWholeNumberHasNoPointInAWorkbook) {
    const auto files = workbookOf({"230000.000000000", "7", "0.5", "12.345678", "99.999", "-3.25", "-0.004", "-0.005"});
    const std::string& styles = files.at("xl/styles.xml");
    EXPECT_TRUE(holds(styles, "numFmts count=\"4\"")) << styles;
    EXPECT_TRUE(holds(styles, "\"#,##0;-#,##0;0\""));
    EXPECT_TRUE(holds(styles, "\"#,##0.0;-#,##0.0;0\""));
    EXPECT_TRUE(holds(styles, "\"#,##0.00;-#,##0.00;0\""));
    // The second style is that of the titles.
    const std::string& sheet = files.at("xl/worksheets/sheet1.xml");
    const auto style = [&](const char* cell) {
        const std::size_t at = sheet.find("<c r=\"" + std::string(cell) + "\" s=\"");
        return at == std::string::npos ? std::string() : sheet.substr(at, sheet.find('>', at) - at).substr(13);
    };
    EXPECT_FALSE(style("C2").empty()) << sheet;
    EXPECT_EQ(style("C3"), style("C2"));
    EXPECT_NE(style("C4"), style("C2"));
    EXPECT_EQ(style("C7"), style("C5"));
    EXPECT_EQ(style("C6"), style("C2")) << "as rounded";
    // What is rounded to zero has no sign.
    EXPECT_TRUE(holds(styles, "\"0;0;0\""));
    EXPECT_NE(style("C8"), style("C2"));
    EXPECT_EQ(style("C9"), style("C5"));
}

// The texts of a sheet's cells as a spreadsheet reads them: by an XML parser, and _xHHHH_ as the character.
std::vector<QString> cellTexts(const std::string& sheet) {
    std::vector<QString> texts;
    QXmlStreamReader xml(QByteArray::fromStdString(sheet));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != QLatin1String("t")) continue;
        const QString raw = xml.readElementText();
        static const QRegularExpression escape(QStringLiteral("_x([0-9A-Fa-f]{4})_"));
        QString text;
        qsizetype from = 0;
        for (const auto& match : escape.globalMatch(raw)) {
            text += raw.mid(from, match.capturedStart() - from) + QChar(match.captured(1).toUShort(nullptr, 16));
            from = match.capturedEnd();
        }
        texts.push_back(text + raw.mid(from));
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return texts;
}

TEST_F(TableOutput, rowsBeyondASheetGoOnOnTheNextUnderTheirTitles) {
    Table table = sample();
    table.rows.clear();
    for (int row = 1; row <= 7; ++row)
        table.rows.push_back({std::int64_t{row}, "کالای " + std::to_string(row), Value{}, Value{}});
    const QString path = folder.filePath("t.xlsx");
    // A row of titles and three others in each.
    writeWorkbook(table, path, {}, 4);
    const auto files = unzipped(contents(path));
    const std::string& book = files.at("xl/workbook.xml");
    EXPECT_TRUE(holds(book, "<sheet name=\"سطوح قیمت\" sheetId=\"1\"")) << book;
    EXPECT_TRUE(holds(book, "<sheet name=\"سطوح قیمت (2)\" sheetId=\"2\""));
    EXPECT_TRUE(holds(book, "<sheet name=\"سطوح قیمت (3)\" sheetId=\"3\""));
    EXPECT_FALSE(holds(book, "sheetId=\"4\""));
    const std::vector<int> rowsOf{3, 3, 1};
    int row = 0;
    for (std::size_t i = 0; i < rowsOf.size(); ++i) {
        const std::string& sheet = files.at("xl/worksheets/sheet" + std::to_string(i + 1) + ".xml");
        EXPECT_TRUE(holds(sheet, "rightToLeft=\"1\"")) << i;
        std::vector<std::string> texts{"کد", "عنوان, \"شرح\"", "قیمت", "تاریخ"};
        for (int line = 0; line < rowsOf[i]; ++line) {
            texts.push_back("کالای " + std::to_string(++row));
            const std::string cell =
                "<c r=\"A" + std::to_string(line + 2) + "\"><v>" + std::to_string(row) + "</v></c>";
            EXPECT_TRUE(holds(sheet, cell.c_str())) << sheet;
        }
        std::vector<std::string> read;
        for (const QString& text : cellTexts(sheet))
            read.push_back(text.toStdString());
        EXPECT_EQ(read, texts) << i;
    }
    EXPECT_EQ(row, 7);
    // A sheet that is just full is the last one.
    table.rows.resize(6);
    writeWorkbook(table, path, {}, 4);
    EXPECT_FALSE(unzipped(contents(path)).contains("xl/worksheets/sheet3.xml"));
}

TEST_F(TableOutput, aWorkbookHoldsEveryCharacter) {
    using namespace std::string_literals;
    const std::vector<std::string> written{"الف\0ب"s,
                                           "\0"s,
                                           "a\x01\x08\x0B\x1F"
                                           "b",
                                           "دو\nسطر\tو",
                                           "بازگشت\r\nسطر",
                                           "\uFFFE\uFFFF",
                                           "قبل\uFFFEبعد",
                                           "_x0041_",
                                           "a_x005F_x0001_b",
                                           "_x12_ _xFFFE",
                                           "\u007F\u0085",
                                           "\U0001F600\U0001FFFE",
                                           "<&>\"'",
                                           " دو سر ",
                                           "\uFEFFنشانه\x01"};
    Table table;
    QString title = QStringLiteral("عنوان");
    title += QChar(0xFFFF);
    table.columnList = {{title, FieldType::Text, {}, 200}};
    for (const std::string& text : written)
        table.rows.push_back({text});
    const QString path = folder.filePath("t.xlsx");
    writeWorkbook(table, path);
    const std::string sheet = unzipped(contents(path)).at("xl/worksheets/sheet1.xml");
    const std::vector<QString> read = cellTexts(sheet);
    ASSERT_EQ(read.size(), written.size() + 1) << sheet;
    EXPECT_EQ(read[0], title);
    for (std::size_t i = 0; i < written.size(); ++i)
        EXPECT_EQ(read[i + 1].toStdString(), written[i]) << i;
    EXPECT_TRUE(holds(sheet, "<t>الف_x0000_ب</t>"));
    EXPECT_TRUE(holds(sheet, "<t>_x005F_x0041_</t>"));
}

TEST_F(TableOutput, aLongTextIsCutToWhatACellHolds) {
    Table table;
    table.columnList = {{QStringLiteral("متن"), FieldType::Text, {}, 200}};
    // Characters of two units, and such that are written with seven: neither is cut in two.
    QString pairs;
    for (int i = 0; i < 20'000; ++i)
        pairs += QStringLiteral("\U0001F600");
    table.rows = {
        {std::string(40'000, 'a')}, {pairs.toStdString()}, {std::string(5'000, '\x01')}, {"bad \xFF\xED\xA0\x80"}};
    const QString path = folder.filePath("t.xlsx");
    writeWorkbook(table, path);
    const std::vector<QString> read = cellTexts(unzipped(contents(path)).at("xl/worksheets/sheet1.xml"));
    ASSERT_EQ(read.size(), 5U);
    EXPECT_EQ(read[1], QString(32'767, QLatin1Char('a')));
    EXPECT_EQ(read[2], pairs.left(32'766));
    EXPECT_EQ(read[3], QString(4'681, QChar(1)));
    EXPECT_TRUE(read[4].startsWith(QStringLiteral("bad \uFFFD")));
}

TEST_F(TableOutput, aWorkbookReplacesTheOneBefore) {
    const QString path = folder.filePath("t.xlsx");
    QFile old(path);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    writeWorkbook(sample(), path);
    EXPECT_TRUE(contents(path).startsWith("PK"));
    EXPECT_THROW(writeWorkbook(sample(), QStringLiteral("/nowhere/t.xlsx")), OutputError);
}

TEST_F(TableOutput, pagesRepeatTheTitlesAndCountThemselves) {
    Table table = sample();
    for (int i = 0; i < 200; ++i)
        table.rows.push_back({std::int64_t{i}, std::string("سطر"), Value{}, Value{}});
    const QString path = folder.filePath("t.pdf");
    TableDocument document(table, QStringLiteral("1405/08/30"));
    writePdf(document, pageLayout(), path);
    const QByteArray pdf = contents(path);
    EXPECT_TRUE(pdf.startsWith("%PDF"));
    const auto pages = pdf.count("/Type /Page\n");
    EXPECT_GE(pages, 4);
    EXPECT_LE(pages, 8);
    EXPECT_THROW(writePdf(document, pageLayout(), QStringLiteral("/nowhere/t.pdf")), OutputError);
}

#ifndef _WIN32
// What the rows take while the workbook is made is more than what it takes in the end.
TEST_F(TableOutput, aWorkbookWhoseRowsFoundNoRoomIsNotMade) {
    Table table = sample();
    for (int i = 0; i < 4000; ++i)
        table.rows.push_back({std::int64_t{1}, std::string("سطر"), Value{}, Value{}});
    const QString path = folder.filePath("t.xlsx");
    writeWorkbook(table, path);
    const QByteArray whole = contents(path);
    ASSERT_LT(whole.size(), 131'072);
    const test::SmallFiles full(131'072);
    EXPECT_THROW(writeWorkbook(table, path), OutputError);
    EXPECT_EQ(contents(path), whole);
}

// Neither the printer nor the maker of workbooks says why a write failed, and the printer not even that it did.
TEST_F(TableOutput, whatWasCutIsNotGivenItsPlaceAndTheReasonIsTold) {
    Table table = sample();
    for (int i = 0; i < 2000; ++i)
        table.rows.push_back({std::int64_t{i}, std::string("سطر"), Value{}, Value{}});
    TableDocument document(table, QStringLiteral("1405/08/30"));
    const std::vector<std::pair<QString, std::function<void(const QString&)>>> exports{
        {QStringLiteral("t.pdf"), [&](const QString& path) { writePdf(document, pageLayout(), path); }},
        {QStringLiteral("t.xlsx"), [&](const QString& path) { writeWorkbook(table, path); }},
        {QStringLiteral("t.csv"), [&](const QString& path) { writeCsv(table, path); }}};
    for (const auto& [name, write] : exports) {
        const QString path = folder.filePath(name);
        write(path);
        const QByteArray whole = contents(path);
        const test::SmallFiles full(4096);
        EXPECT_THAT(
            [&] { write(path); },
            ThrowsMessage<OutputError>(EndsWith(
                name.toStdString() +
                "\u2069» نوشته نشد: پرونده بزرگ‌تر از آن است که دیسک می‌پذیرد.")));
        EXPECT_EQ(contents(path), whole);
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 3);
}
#endif

// As a grid of prices shows them.
class Prices final : public TableContent {
public:
    Prices(int count, const std::vector<const char*>& amounts) {
        columnList.push_back({QStringLiteral("کد"), FieldType::Integer, {}, 60});
        columnList.push_back({QStringLiteral("نام کالا"), FieldType::Text, {}, 420});
        for (int i = 0; i < count; ++i)
            columnList.push_back({QStringLiteral("سطح قیمت"), FieldType::Decimal, format_, 110});
        for (const char* amount : amounts)
            rows.push_back(*Decimal::parse(amount));
    }
    std::vector<TableColumn> columnList;
    std::vector<Decimal> rows;

    [[nodiscard]] QString title() const override { return QStringLiteral("قیمت‌ها"); }
    [[nodiscard]] std::vector<QString> headerLines() const override { return {}; }
    [[nodiscard]] const std::vector<TableColumn>& columns() const override { return columnList; }
    [[nodiscard]] int rowCount() const override { return static_cast<int>(rows.size()); }
    [[nodiscard]] Value value(int row, int column) const override {
        if (column == 0) return std::int64_t{row};
        if (column == 1)
            return std::string(
                "کالایی با نامی که بسیار درازتر از همه‌ی نام‌های دیگر است");
        return rows[static_cast<std::size_t>(row)];
    }
    [[nodiscard]] QString shown(int row, int column) const override {
        const Value cell = value(row, column);
        if (column == 1) return QString::fromStdString(toText(cell));
        return screenNumber(DisplayFormat(columnList[static_cast<std::size_t>(column)].displayFormat)
                                .text(column == 0 ? Decimal(row, 0) : rows[static_cast<std::size_t>(row)]));
    }

private:
    std::string format_ = "#,#0.#########;-#,#0.#########;0";
};

QString paintedPages(PrintDocument& document, const QPageLayout& paper, int& pages) {
    PaintedText painted;
    pages = document.layOut(paper);
    QPainter painter(&painted);
    for (int page = 0; page < pages; ++page)
        document.paintPage(painter, page);
    painter.end();
    return painted.text();
}

TEST_F(TableOutput, textsMakeRoomForNumbersOnPaper) {
    const Prices table(10, {"1250000000", "7", "-98500000"});
    TableDocument document(table, {});
    int pages = 0;
    const QString text = paintedPages(document, pageLayout(), pages);
    EXPECT_EQ(text.count(QStringLiteral("۱٬۲۵۰٬۰۰۰٬۰۰۰")), 10) << text.toStdString();
    EXPECT_EQ(text.count(QStringLiteral("۹۸٬۵۰۰٬۰۰۰")), 10);
    EXPECT_FALSE(text.contains(QLatin1Char('#')));
    EXPECT_EQ(text.count(QStringLiteral("درازتر")), 3) << "the name goes on on further lines";
    EXPECT_FALSE(text.contains(QChar(0x2026)));
    EXPECT_EQ(pages, 1);
}

// Goods with many barcodes, between others with one or none.
class Barcodes final : public TableContent {
public:
    Barcodes(int rows, int prices) : rows_(rows) {
        columnList.push_back({QStringLiteral("کد کالا"), FieldType::Integer, {}, 80});
        columnList.push_back({QStringLiteral("بارکد کالا"), FieldType::Text, {}, 200});
        columnList.push_back({QStringLiteral("نام کالا"), FieldType::Text, {}, 200});
        for (int i = 0; i < prices; ++i)
            columnList.push_back({QStringLiteral("سطح قیمت"), FieldType::Decimal, {}, 110});
    }
    std::vector<TableColumn> columnList;

    // As the price report cleans a list of them: the last one has no bracket behind it.
    [[nodiscard]] static QString barcode(int row, int number) {
        return screenNumber(std::to_string(6'260'000'000'000 + row * 100 + number));
    }
    [[nodiscard]] static int barcodesOf(int row) { return row % 5 == 3 ? 10 : row % 2; }
    [[nodiscard]] QString title() const override { return QStringLiteral("قیمت‌ها"); }
    [[nodiscard]] std::vector<QString> headerLines() const override { return {}; }
    [[nodiscard]] const std::vector<TableColumn>& columns() const override { return columnList; }
    [[nodiscard]] int rowCount() const override { return rows_; }
    [[nodiscard]] Value value(int row, int column) const override { return shown(row, column).toStdString(); }
    [[nodiscard]] QString shown(int row, int column) const override {
        if (column == 0) return screenNumber(std::to_string(10'001 + row));
        if (column == 2) return QStringLiteral("بیسکویت ساقه‌طلایی");
        if (column > 2) return QStringLiteral("۱٬۲۵۰٬۰۰۰");
        QStringList barcodes;
        for (int i = 0; i < barcodesOf(row); ++i)
            barcodes += QLatin1Char('(') + barcode(row, i);
        return barcodes.join(QLatin1Char(')'));
    }

private:
    int rows_;
};

TEST_F(TableOutput, tenBarcodesAreWholeOnEveryPaper) {
    for (const int prices : {0, 2, 10}) {
        for (const auto size : {QPageSize::A4, QPageSize::A5, QPageSize::A3, QPageSize::Letter}) {
            for (const auto orientation : {QPageLayout::Portrait, QPageLayout::Landscape}) {
                const std::string which =
                    std::to_string(prices) + " on " + QPageSize::key(size).toStdString() + std::to_string(orientation);
                const Barcodes table(12, prices);
                TableDocument document(table, {});
                PaintedText painted;
                const int pages = document.layOut(pageLayout(size, orientation));
                {
                    QPainter painter(&painted);
                    for (int page = 0; page < pages; ++page)
                        document.paintPage(painter, page);
                }
                // Ten prices leave the smallest paper no line that is as long as a barcode.
                const bool narrow = prices == 10 && size == QPageSize::A5 && orientation == QPageLayout::Portrait;
                for (int row = 0; row < table.rowCount(); ++row)
                    for (int i = 0; i < Barcodes::barcodesOf(row) && !narrow; ++i)
                        EXPECT_EQ(painted.pieces().filter(Barcodes::barcode(row, i)).size(), 1)
                            << row << ' ' << i << ' ' << which;
                EXPECT_FALSE(painted.text().contains(QChar(0x2026))) << which;
                EXPECT_FALSE(painted.text().contains(QLatin1Char('#'))) << which;
            }
        }
    }
}

TEST_F(TableOutput, rowsOfSeveralLinesDivideThePages) {
    const Barcodes table(400, 3);
    TableDocument document(table, {});
    const int pages = document.layOut(pageLayout());
    int next = 0;
    for (int page = 0; page < pages; ++page) {
        PaintedText painted;
        {
            QPainter painter(&painted);
            document.paintPage(painter, page);
        }
        const QStringList& pieces = painted.pieces();
        EXPECT_EQ(pieces.filter(QStringLiteral("بارکد")).size(), 1) << page;
        const QString foot = painted.text().right(20);
        for (const int number : {page + 1, pages})
            EXPECT_TRUE(foot.contains(
                QRegularExpression(QStringLiteral("(^|[^۰-۹])%1([^۰-۹]|$)").arg(screenNumber(std::to_string(number))))))
                << page << ' ' << foot.toStdString();
        // Rows go on where the page before ended, and none reaches into the next.
        const int first = next;
        qreal bottom = 0;
        qreal lowest = 0;
        for (; next < table.rowCount(); ++next) {
            const auto at = pieces.indexOf(QRegularExpression(QStringLiteral(".?%1.?").arg(table.shown(next, 0))));
            if (at < 0) break;
            qreal top = painted.places()[static_cast<std::size_t>(at)].y();
            for (int i = 0; i < Barcodes::barcodesOf(next); ++i) {
                const QStringList found = pieces.filter(Barcodes::barcode(next, i));
                ASSERT_EQ(found.size(), 1) << next;
                const qreal y = painted.places()[static_cast<std::size_t>(pieces.indexOf(found[0]))].y();
                top = std::min(top, y);
                lowest = std::max(lowest, y);
            }
            EXPECT_GT(top, bottom) << next;
            lowest = std::max(lowest, top);
            bottom = lowest;
        }
        EXPECT_GT(next, first) << page;
        EXPECT_LT(lowest, pageLayout().paintRectPixels(kPageDpi).height()) << page;
    }
    EXPECT_EQ(next, table.rowCount());
    // The first page is well used: no more room is left than a row could want.
    EXPECT_GT(table.rowCount() / pages, 20);
    EXPECT_EQ(document.layOut(pageLayout()), pages);
}

TEST_F(TableOutput, aTextLongerThanAPageIsCutAndTheNextRowFollows) {
    Table table;
    table.columnList = {{QStringLiteral("شرح"), FieldType::Text, {}, 200},
                        {QStringLiteral("کد"), FieldType::Text, {}, 60}};
    std::string words = "آغاز";
    for (int i = 0; i < 5000; ++i)
        words += " واژه";
    table.rows = {{std::string("پیش"), std::string("یکم")},
                  {words + " پایان", std::string("دوم")},
                  {std::string("پس"), std::string("سوم")}};
    TableDocument document(table, {});
    int pages = 0;
    const QString text = paintedPages(document, pageLayout(), pages);
    EXPECT_EQ(pages, 2);
    EXPECT_TRUE(text.contains(QStringLiteral("آغاز"))) << text.size();
    EXPECT_EQ(text.count(QChar(0x2026)), 1);
    EXPECT_FALSE(text.contains(QStringLiteral("پایان")));
    for (const char* row : {"یکم", "دوم", "سوم"})
        EXPECT_EQ(text.count(QString::fromUtf8(row)), 1) << row;
}

TEST_F(TableOutput, aLongWordOfALabelHasTheRoomThatTheColumnBesideLeaves) {
    QWidget form;
    std::vector<std::unique_ptr<QLineEdit>> prices;
    for (const QString& level :
         {QString(50, QChar(u'م')),
          QStringLiteral("ویژهٔ مشتریان عمدهٔ استان‌های شمالی درجه ۱۰۰۰")}) {
        prices.push_back(std::make_unique<QLineEdit>(QStringLiteral("۵"), &form));
        prices.back()->setAccessibleName(QStringLiteral("قیمت فروش ۱ (%1)").arg(level));
    }
    const RecordContent record(QStringLiteral("قیمت‌ها"), form);
    TableDocument document(record, {});
    document.layOut(pageLayout());
    PaintedText painted;
    {
        QPainter painter(&painted);
        document.paintPage(painter, 0);
    }
    EXPECT_FALSE(painted.text().contains(QChar(0x2026))) << painted.text().toStdString();
    EXPECT_TRUE(painted.text().contains(QString(50, QChar(u'م')))) << painted.text().toStdString();
    // The amount, which the column beside shows, stands on the line of each word of its label.
    for (int row = 0; row < record.rowCount(); ++row) {
        std::set<qreal> heights;
        for (qsizetype i = 0; i < painted.pieces().size(); ++i)
            for (const QString& word : record.shown(row, 0).split(QLatin1Char(' ')))
                if (word.size() > 4 && painted.pieces()[i].contains(word) && word != QStringLiteral("قیمت‌ها"))
                    heights.insert(painted.places()[static_cast<std::size_t>(i)].y());
        EXPECT_EQ(heights.size(), 1U) << row;
    }
}

// Many prices of goods with names of usual length.
class PriceList final : public TableContent {
public:
    explicit PriceList(int prices) {
        columnList.push_back({QStringLiteral("نام کالا"), FieldType::Text, {}, 190});
        for (int i = 0; i < prices; ++i)
            columnList.push_back({QStringLiteral("سطح"), FieldType::Decimal, {}, 100});
    }
    std::vector<TableColumn> columnList;

    [[nodiscard]] QString title() const override { return QStringLiteral("قیمت‌ها"); }
    [[nodiscard]] std::vector<QString> headerLines() const override { return {}; }
    [[nodiscard]] const std::vector<TableColumn>& columns() const override { return columnList; }
    [[nodiscard]] int rowCount() const override { return 500; }
    [[nodiscard]] Value value(int row, int column) const override {
        if (column > 0) return *Decimal::parse("18915000");
        // The longest of them stands far from the beginning.
        return std::string(row == 333 ? "اسپاگتی ۱٫۲ میلی‌متری ۷۰۰ گرمی ویژه" : "انار");
    }
    [[nodiscard]] QString shown(int row, int column) const override {
        return column == 0 ? QString::fromStdString(toText(value(row, column))) : QStringLiteral("۱۸٬۹۱۵٬۰۰۰");
    }
};

TEST_F(TableOutput, namesAreWholeWhereThePageHasRoomForThem) {
    for (const auto orientation : {QPageLayout::Portrait, QPageLayout::Landscape}) {
        const PriceList table(orientation == QPageLayout::Portrait ? 10 : 15);
        TableDocument document(table, {});
        int pages = 0;
        const QString text = paintedPages(document, pageLayout(QPageSize::A4, orientation), pages);
        EXPECT_FALSE(text.contains(QChar(0x2026))) << orientation;
        EXPECT_FALSE(text.contains(QLatin1Char('#'))) << orientation;
        EXPECT_TRUE(text.contains(QStringLiteral("گرمی ویژه"))) << orientation;
    }
}

TEST_F(TableOutput, headingsHaveTheDigitsOfTheNumbersBelowThem) {
    PriceList table(1);
    table.columnList[1].title = QStringLiteral("سطح 77");
    TableDocument document(table, QStringLiteral("1405/08/30"));
    int pages = 0;
    const QString text = paintedPages(document, pageLayout(), pages);
    EXPECT_GT(pages, 3);
    EXPECT_EQ(text.count(QStringLiteral("۷۷")), pages);
    EXPECT_EQ(text.count(QStringLiteral("۱۴۰۵/۰۸/۳۰")), pages);
    EXPECT_TRUE(
        std::none_of(text.begin(), text.end(), [](QChar character) { return character >= u'0' && character <= u'9'; }));
}

TEST_F(TableOutput, aFormOnPaperTellsWhatItIsOf) {
    QWidget form;
    QLabel good(QStringLiteral("57 – دارچین"), &form);
    good.setProperty(kHeadingProperty, true);
    QLabel hint(QStringLiteral("راهنما"), &form);
    QLabel hidden(QStringLiteral("پنهان"), &form);
    hidden.setProperty(kHeadingProperty, true);
    hidden.hide();
    QLineEdit price(QStringLiteral("-۱٬۲۵۰٫۷۵"), &form);
    price.setAccessibleName(QStringLiteral("قیمت فروش ۱ (همکار)"));
    const RecordContent record(QStringLiteral("قیمت‌ها"), form);
    EXPECT_EQ(record.headerLines(), std::vector<QString>{QStringLiteral("57 – دارچین")});
    ASSERT_EQ(record.rowCount(), 1);
    EXPECT_EQ(record.shown(0, 0).toStdString(), "قیمت فروش ۱ (همکار)");
    TableDocument document(record, {});
    int pages = 0;
    const QString text = paintedPages(document, pageLayout(), pages);
    EXPECT_TRUE(text.contains(QStringLiteral("۵۷"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("دارچین")));
    // The sign stands on the left, as before every number.
    EXPECT_TRUE(text.contains(QStringLiteral("-۱٬۲۵۰٫۷۵"))) << text.toStdString();
}

// A table of one cell under a title.
class UnderATitle final : public TableContent {
public:
    explicit UnderATitle(QString title) : title_(std::move(title)) {}
    [[nodiscard]] QString title() const override { return title_; }
    [[nodiscard]] std::vector<QString> headerLines() const override { return {QStringLiteral("سرخط")}; }
    [[nodiscard]] const std::vector<TableColumn>& columns() const override { return columns_; }
    [[nodiscard]] int rowCount() const override { return 1; }
    [[nodiscard]] Value value(int /*row*/, int /*column*/) const override { return std::string("خانه"); }
    [[nodiscard]] QString shown(int /*row*/, int /*column*/) const override { return QStringLiteral("خانه"); }

private:
    QString title_;
    std::vector<TableColumn> columns_{{QStringLiteral("ستون"), FieldType::Text, {}, 100}};
};

TEST_F(TableOutput, theCompanyStandsAboveTheTitle) {
    const UnderATitle table(QStringLiteral("فهرست"));
    TableDocument document(table, {}, QStringLiteral("بازرگانی"));
    int pages = 0;
    const QString text = paintedPages(document, pageLayout(), pages);
    EXPECT_TRUE(text.startsWith(QStringLiteral("بازرگانیفهرستسرخط"))) << text.toStdString();
    EXPECT_EQ(pages, 1);
    TableDocument nameless(table, {});
    EXPECT_TRUE(paintedPages(nameless, pageLayout(), pages).startsWith(QStringLiteral("فهرستسرخط")));
}

TEST_F(TableOutput, aLongTitleGoesOnOnFurtherLines) {
    QStringList words;
    for (int i = 0; i < 14; ++i)
        words << QStringLiteral("گزارش%1").arg(QChar(u'\u0627' + i));
    const UnderATitle table(words.join(QLatin1Char(' ')));
    TableDocument document(table, {});
    int pages = 0;
    const QString text = paintedPages(document, pageLayout(QPageSize::A5), pages);
    for (const QString& word : words)
        EXPECT_TRUE(text.contains(word)) << word.toStdString();
    EXPECT_FALSE(text.contains(QChar(0x2026)));
    EXPECT_LT(text.indexOf(words.back()), text.indexOf(QStringLiteral("سرخط")));
}

TEST_F(TableOutput, aWideTableLiesAcrossThePaper) {
    for (const int prices : {1, 5, 12, 20}) {
        const PriceList table(prices);
        TableDocument document(table, {});
        const QPageLayout paper = document.suitablePaper();
        EXPECT_EQ(paper.pageSize().id(), QPageSize::A4);
        EXPECT_EQ(paper.orientation(), prices < 10 ? QPageLayout::Portrait : QPageLayout::Landscape) << prices;
    }
}

TEST_F(TableOutput, numbersThatNoPageHoldsGoOnOnFurtherOnes) {
    const Prices table(10, {"-10000000000000.123456789", "99999999999999.999999999", "1"});
    TableDocument document(table, {});
    int pages = 0;
    const QString text = paintedPages(document, pageLayout(), pages);
    EXPECT_GT(pages, 1);
    EXPECT_EQ(text.count(QStringLiteral("۱۰٬۰۰۰٬۰۰۰٬۰۰۰٬۰۰۰٫۱۲۳۴۵۶۷۸۹")), 10) << text.toStdString();
    EXPECT_EQ(text.count(QStringLiteral("۹۹٬۹۹۹٬۹۹۹٬۹۹۹٬۹۹۹٫۹۹۹۹۹۹۹۹۹")), 10);
    EXPECT_FALSE(text.contains(QLatin1Char('#')));
    // Each page tells whose prices they are.
    EXPECT_EQ(text.count(QStringLiteral("کد")), pages);
}

TEST_F(TableOutput, aNumberLongerThanThePageIsNotShortened) {
    Prices table(1, {"-99999999999999999999999999999.999999999"});
    const QPageLayout narrow(QPageSize(QSizeF(30, 60), QPageSize::Millimeter), QPageLayout::Portrait, {});
    TableDocument document(table, {});
    int pages = 0;
    const QString text = paintedPages(document, narrow, pages);
    EXPECT_TRUE(text.contains(QStringLiteral("####"))) << text.toStdString();
    EXPECT_FALSE(text.contains(QStringLiteral("۹۹")));
}

TEST(NumberShapes, areAsLongAsTheLongestNumber) {
    const DisplayFormat format("#,#0.##;-#,#0.##;0");
    for (const char* number : {"0", "7", "-7", "0.5", "999.994", "999.995", "-999.999", "12500.50", "1250000000.000",
                               "-99999999999999.999999999", "0.001", "100.10"}) {
        NumberShapes shapes(format);
        shapes.add(*Decimal::parse(number));
        const QStringList texts = shapes.texts();
        ASSERT_EQ(texts.size(), 1) << number;
        const QString shown = screenNumber(format.text(*Decimal::parse(number)));
        // A zero has a text of its own, without a sign.
        EXPECT_GE(texts[0].size(), shown.size()) << number;
        if (shown != QStringLiteral("۰")) {
            EXPECT_EQ(texts[0].size(), shown.size()) << number << " as " << texts[0].toStdString();
        }
    }
}

TEST_F(TableOutput, aTitleOfOneLongWordIsBroken) {
    Table table = sample();
    for (TableColumn& column : table.columnList)
        column.title = QString(50, QLatin1Char('W'));
    PaintedText painted;
    TableDocument document(table, {});
    document.layOut(pageLayout());
    QPainter painter(&painted);
    document.paintPage(painter, 0);
    painter.end();
    EXPECT_TRUE(painted.text().contains(QString(200, QLatin1Char('W')))) << painted.text().toStdString();
}

TEST(WrappedText, keepsToItsLines) {
    const QFont font = themeFont(10, QFont::Normal);
    const QFontMetricsF metrics(font);
    const QString word(50, QLatin1Char('W'));
    const qreal width = metrics.horizontalAdvance(word) / 3;
    const QStringList lines = wrappedLines(word, font, width, 9);
    EXPECT_EQ(lines.join(QString()), word);
    EXPECT_GE(lines.size(), 3);
    for (const QString& line : lines)
        EXPECT_LE(metrics.horizontalAdvance(line), width + 1);
    const QStringList cut = wrappedLines(word, font, width, 2);
    ASSERT_EQ(cut.size(), 2);
    EXPECT_TRUE(cut[1].endsWith(QChar(0x2026))) << cut[1].toStdString();
    EXPECT_LE(metrics.horizontalAdvance(cut[1]), width + 1);
    EXPECT_EQ(wrappedLines(QStringLiteral("تک فروشی"), font, 1000, 2), QStringList{QStringLiteral("تک فروشی")});
    EXPECT_EQ(wrappedLines(QStringLiteral("تک فروشی"), font, metrics.horizontalAdvance(QStringLiteral("فروشی")) + 1, 2),
              (QStringList{QStringLiteral("تک"), QStringLiteral("فروشی")}));
}

TEST(WrappedText, isAsWideAsItsLinesAsk) {
    const QFontMetricsF metrics(themeFont(10, QFont::Normal));
    const auto advance = [&](const char* text) { return metrics.horizontalAdvance(QString::fromUtf8(text)); };
    EXPECT_EQ(widthForLines(QString(), metrics, 2), 0);
    EXPECT_NEAR(widthForLines(QStringLiteral("aaa bbb ccc ddd"), metrics, 1), advance("aaa bbb ccc ddd"), 2);
    EXPECT_NEAR(widthForLines(QStringLiteral("aaa bbb ccc ddd"), metrics, 2),
                std::max(advance("aaa bbb"), advance("ccc ddd")), 2);
    EXPECT_NEAR(widthForLines(QStringLiteral("aaaaaaaaaaaa b"), metrics, 2), advance("aaaaaaaaaaaa"), 2);
}

// Mim and hah have tails that want room at the end of a line.
TEST(WrappedText, leavesAWordWholeThatWasGivenItsWidth) {
    for (int size = 10; size <= 40; ++size) {
        QFont font = themeFont(10, QFont::Bold);
        font.setPixelSize(size * 3);
        font.setHintingPreference(QFont::PreferNoHinting);
        for (const char* word : {"سطح", "پنجم", "ششم", "هفتم", "دهم", "نرخ", "m", "ی", "۱۲۳"}) {
            const QString text = QString::fromUtf8(word);
            const qreal width = widthForOneLine(text, font);
            EXPECT_EQ(wrappedLines(text, font, width, 9), QStringList{text}) << word << ' ' << size;
            EXPECT_LE(width, QFontMetricsF(font).horizontalAdvance(text) + size) << word << ' ' << size;
        }
    }
}

TEST_F(TableOutput, wordsOfTitlesAreWholeWhereverThePageHasTheRoom) {
    Table table;
    const char* const numbers[] = {"یکم", "دوم", "سوم", "چهارم", "پنجم", "ششم", "هفتم", "هشتم", "نهم", "دهم", "صبح"};
    table.rows.emplace_back();
    for (const char* number : numbers) {
        table.columnList.push_back(
            {QStringLiteral("سطح ") + QString::fromUtf8(number), FieldType::Decimal, "#,#0", 90});
        table.rows[0].emplace_back(*Decimal::parse("1"));
    }
    const auto titles = static_cast<int>(table.columnList.size());
    for (const auto size : {QPageSize::A3, QPageSize::A4, QPageSize::A5, QPageSize::Letter}) {
        for (const auto orientation : {QPageLayout::Portrait, QPageLayout::Landscape}) {
            for (int columns = 1; columns <= titles; ++columns) {
                Table part = table;
                part.columnList.resize(static_cast<std::size_t>(columns));
                PaintedText painted;
                TableDocument document(part, {});
                const int pages = document.layOut(pageLayout(size, orientation));
                QPainter painter(&painted);
                for (int page = 0; page < pages; ++page)
                    document.paintPage(painter, page);
                painter.end();
                QStringList torn;
                for (const QString& piece : painted.pieces())
                    for (const QString& word : piece.split(QLatin1Char(' ')))
                        if (word.size() < 3 && !word.isEmpty() && word[0].isLetter() && word != QStringLiteral("از"))
                            torn.append(word);
                EXPECT_TRUE(torn.isEmpty()) << torn.join(QLatin1Char(' ')).toStdString() << " of " << columns << " on "
                                            << QPageSize::key(size).toStdString() << orientation;
            }
        }
    }
}

TEST_F(TableOutput, whatIsGivenUpLeavesTheOldFile) {
    Table table = sample();
    for (int row = 0; row < 300; ++row)
        table.rows.push_back(table.rows[0]);
    const QString path = folder.filePath("old");
    QFile old(path);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    int asked = 0;
    const OutputProgress progress = [&asked](int done, int all) {
        EXPECT_LE(done, all);
        return ++asked < 2;
    };
    EXPECT_THROW(writeCsv(table, path, progress), OutputCancelled);
    EXPECT_EQ(std::exchange(asked, 0), 2);
    EXPECT_THROW(writeWorkbook(table, path, progress), OutputCancelled);
    EXPECT_EQ(std::exchange(asked, 0), 2);
    TableDocument document(table, {});
    EXPECT_THROW(writePdf(document, pageLayout(), path, progress), OutputCancelled);
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(contents(path).toStdString(), "old");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("old")});
}

TEST_F(TableOutput, aSheetBearsTheTablesTitle) {
    class Titled final : public TableContent {
    public:
        explicit Titled(const char* title) : title_(QString::fromUtf8(title)) {}
        [[nodiscard]] QString title() const override { return title_; }
        [[nodiscard]] std::vector<QString> headerLines() const override { return {}; }
        [[nodiscard]] const std::vector<TableColumn>& columns() const override { return table_.columns(); }
        [[nodiscard]] int rowCount() const override { return 0; }
        [[nodiscard]] Value value(int, int) const override { return {}; }
        [[nodiscard]] QString shown(int, int) const override { return {}; }

    private:
        QString title_;
        Table table_ = sample();
    };
    const QString path = folder.filePath("t.xlsx");
    const std::pair<const char*, const char*> names[] = {
        {"گزارش قیمت کالاها – فروش", "name=\"گزارش قیمت کالاها – فروش\""},
        {"'a[b]:c*d?e/f\\g'", "name=\"a b c d e f g\""},
        {"", "name=\"فهرست\""},
        {"0123456789012345678901234567890123456789", "name=\"0123456789012345678901234567890\""}};
    for (const auto& [title, name] : names) {
        writeWorkbook(Titled(title), path);
        EXPECT_TRUE(holds(unzipped(contents(path)).at("xl/workbook.xml"), name)) << title;
    }
}

TEST_F(TableOutput, aHugeListIsNotPrinted) {
    Table table = sample();
    EXPECT_NO_THROW(checkPrintable(table));
    table.rows.resize(100'001);
    EXPECT_THROW(checkPrintable(table), OutputError);
}

TEST(TableHead, standsInRowsOfItsOwnUntilItGetsLong) {
    const QFontMetricsF metrics(themeFont(9));
    const std::vector<QString> three{QStringLiteral("الف"), QStringLiteral("ب"), QStringLiteral("پ")};
    EXPECT_EQ(headRows(three, metrics, 1000), three);
    EXPECT_TRUE(headRows({}, metrics, 1000).empty());
    std::vector<QString> four = three;
    four.push_back(QStringLiteral("ت"));
    EXPECT_EQ(headRows(four, metrics, 1000),
              std::vector<QString>{QStringLiteral("الف\u200F  ·  \u200Fب\u200F  ·  \u200Fپ\u200F  ·  \u200Fت")});
    // No room for two side by side.
    EXPECT_EQ(headRows(four, metrics, 1), four);
}

}  // namespace
}  // namespace basalt::host
