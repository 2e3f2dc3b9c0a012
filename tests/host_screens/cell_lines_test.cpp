// Cells on several lines: what is counted is what is drawn, and nothing is lost.
#include "host/screens/cell_lines.h"

#include <gtest/gtest.h>

#include "host/screens/theme.h"
#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

class Cells : public ScreenTest {
protected:
    [[nodiscard]] qreal advance(const QString& text) const { return metrics.horizontalAdvance(text); }

    QFont font = themeFont(10);
    QFontMetricsF metrics{font};
    CellLines lines{font};
};

TEST_F(Cells, endAtBlanksAndBetweenBarcodes) {
    const QString goods = QStringLiteral("بیسکویت ساقه طلایی");
    EXPECT_EQ(lines.broken(goods, advance(goods), 9), QStringList{goods});
    EXPECT_EQ(lines.broken(goods, advance(goods) - 5, 9),
              (QStringList{QStringLiteral("بیسکویت ساقه"), QStringLiteral("طلایی")}));
    const QString barcodes = QStringLiteral("(۶۲۶۱)(۶۲۶۲)(۶۲۶۳");
    EXPECT_EQ(lines.broken(barcodes, advance(QStringLiteral("(۶۲۶۱)(۶۲۶۲)")), 9),
              (QStringList{QStringLiteral("(۶۲۶۱)(۶۲۶۲)"), QStringLiteral("(۶۲۶۳")}));
    EXPECT_EQ(lines.broken(barcodes, advance(QStringLiteral("(۶۲۶۱)(۶۲")), 9).size(), 3);
    // A blank that holds together, and lines of the text's own.
    const QString held = QStringLiteral("سه\u00A0چهار");
    EXPECT_EQ(lines.broken(QStringLiteral("یک دو ") + held, advance(held), 9),
              (QStringList{QStringLiteral("یک دو"), held}));
    EXPECT_EQ(lines.broken(QStringLiteral("  یک\nدو \t"), 1000, 9), QStringList{QStringLiteral("یک\nدو")});
}

TEST_F(Cells, loseNothingWhateverTheWidth) {
    for (const QString& text :
         {QStringLiteral("(۶۲۶۰۰۰۰۰۰۰۰۰۱)(۶۲۶۰۰۰۰۰۰۰۰۰۲)(۶۲۶۰۰۰۰۰۰۰۰۰۳"), QString(50, QLatin1Char('W')),
          QStringLiteral("ویژهٔ مشتریان عمدهٔ استان‌های شمالی"),
          QStringLiteral("A4 و ۱۲٫۵ (x)(y) -۳"), QStringLiteral("\U0001F600\U0001F600\U0001F600"), QString()}) {
        for (const qreal width : {1.0, 20.0, 47.0, 90.0, 1000.0}) {
            const QStringList broken = lines.broken(text, width, 1000);
            QString joined = broken.join(QString());
            QString whole = text;
            EXPECT_EQ(joined.remove(QLatin1Char(' ')), whole.remove(QLatin1Char(' '))) << width;
            EXPECT_EQ(lines.count(text, width), broken.size()) << text.toStdString() << ' ' << width;
            for (const QString& line : broken)
                EXPECT_TRUE(line.size() <= 2 || advance(line) <= width + 2) << line.toStdString() << ' ' << width;
        }
    }
}

TEST_F(Cells, haveNoMoreLinesThanTheyMay) {
    const QString text = QStringLiteral("یک دو سه چهار پنج شش");
    const qreal width = advance(QStringLiteral("چهار"));
    ASSERT_GT(lines.count(text, width), 3);
    const QStringList cut = lines.broken(text, width, 3);
    ASSERT_EQ(cut.size(), 3);
    EXPECT_TRUE(cut[2].endsWith(QChar(0x2026))) << cut[2].toStdString();
    EXPECT_LE(advance(cut[2]), width + 1);
    EXPECT_TRUE(lines.broken(text, width, 1)[0].endsWith(QChar(0x2026)));
}

TEST_F(Cells, askForTheirWidestWord) {
    EXPECT_EQ(lines.widestWord(QString()), 0);
    EXPECT_NEAR(lines.widestWord(QStringLiteral("یک بیسکویت دو")), advance(QStringLiteral("بیسکویت")), 1);
    EXPECT_NEAR(lines.widestWord(QStringLiteral("(۱۲)(۱۲۳۴۵)(۱")), advance(QStringLiteral("(۱۲۳۴۵)")), 2);
}

}  // namespace
}  // namespace basalt::host
