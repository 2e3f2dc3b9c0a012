#include "host/counter/barcode_layout.h"

#include <algorithm>
#include <cstdint>

#include "ado/error.h"
#include "host/counter/prefix_comparison.h"
#include "host/counter/scan_text.h"
#include "host/screens/persian_digits.h"
#include "package/numbers.h"

namespace basalt::host {

namespace {

constexpr int kLongest = 1'000'000;

QString number(int value) {
    return persianDigits(QString::number(value));
}

QString constantOf(const BarcodeLayout& layout) {
    return QString::fromStdString(layout.constantCode);
}

// The end of a field without running over the range of positions.
int endOf(int start, int count) {
    return static_cast<int>(std::clamp<std::int64_t>(std::int64_t{start} + count, -kLongest, kLongest));
}

struct FieldPlace {
    LayoutField field;
    int start;
    int count;
};

// Of the fields that this kind of layout cuts.
std::vector<FieldPlace> placesOf(const BarcodeLayout& layout) {
    std::vector<FieldPlace> places{{LayoutField::Constant, layout.constantStart, layout.constantCount}};
    if (layout.barCodeType == bftAmount) {
        if (layout.itemConstantCode <= 0)
            places.push_back({LayoutField::Item, layout.itemCodeStart, layout.itemCodeCount});
        places.push_back({LayoutField::Amount, layout.amountStart, layout.amountCount});
        if (layout.balanceNoAsStore)
            places.push_back({LayoutField::Balance, layout.balanceNoStart, layout.balanceNoCount});
    }
    if (layout.barCodeType >= bftAmount && layout.barCodeType <= bftConstPrice)
        places.push_back({LayoutField::Price, layout.priceStart, layout.priceCount});
    return places;
}

// The characters of a field; fewer or none where it reaches beyond the barcode.
QString cut(const QString& barcode, int start, int count) {
    const int begin = std::max(start, 1);
    return barcode.mid(begin - 1, std::max(endOf(start, count) - begin, 0));
}

bool isNumber(const QString& characters) {
    try {
        (void)StrToFloat_VRO(characters.toStdString());
        return true;
    } catch (const DatabaseError&) {
        return false;
    }
}

QString emptyField(const BarcodeLayout& layout, LayoutField field) {
    return QStringLiteral("الگوی «%1» در این بارکد جایی برای «%2» ندارد. جای آن را در صفحهٔ الگوهای بارکد درست کنید.")
        .arg(nameOf(layout), titleOf(field));
}

// What the field of a number, the amount or the price, lacks.
std::optional<QString> numberFault(const BarcodeLayout& layout, const QString& barcode, LayoutField field, int start,
                                   int count) {
    const QString characters = cut(barcode, start, count);
    if (characters.isEmpty()) return emptyField(layout, field);
    if (isNumber(characters)) return std::nullopt;
    return QStringLiteral(
               "در بارکد %1 به جای «%2» نوشته است «%3» که عدد نیست. اگر بارکد درست است، جای «%2» را در الگوی «%4» "
               "درست کنید.")
        .arg(persianDigits(barcode), titleOf(field), persianDigits(characters), nameOf(layout));
}

std::optional<QString> goodFault(const BarcodeLayout& layout, const QString& barcode, bool byScaleCode) {
    if (layout.itemConstantCode > 0) return std::nullopt;
    const QString characters = cut(barcode, layout.itemCodeStart, layout.itemCodeCount);
    if (characters.isEmpty()) return emptyField(layout, LayoutField::Item);
    if (layout.itemCodeType != kGoodFieldIsItsCode && byScaleCode) return std::nullopt;
    const bool digits = std::all_of(characters.begin(), characters.end(),
                                    [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
    if (!digits)
        return QStringLiteral(
                   "در بارکد %1 به جای کد کالا نوشته است «%2» که کد نیست. اگر بارکد درست است، جای «کالا» را در الگوی "
                   "«%3» درست کنید.")
            .arg(persianDigits(barcode), persianDigits(characters), nameOf(layout));
    bool holds = false;
    (void)characters.toInt(&holds);
    if (holds) return std::nullopt;
    return QStringLiteral(
               "کد کالای بارکد، %1، بزرگ‌تر از هر کد کالایی است. جای «کالا» را در الگوی «%2» درست کنید.")
        .arg(persianDigits(characters), nameOf(layout));
}

// The characters of a barcode that are compared with the prefix.
FieldSpan prefixOf(const BarcodeLayout& layout) {
    const int behind = std::clamp(layout.digitCount, 0, kLongest) + 1;
    const int begin = std::clamp(layout.constantStart, 1, behind);
    return {LayoutField::Constant, begin, std::clamp(endOf(layout.constantStart, layout.constantCount), begin, behind)};
}

// Whether a barcode, which has no blanks, can have both prefixes in their places: each as long as what is cut there,
// and where both fix a character it is the same.
bool mayHaveBoth(const BarcodeLayout& a, const QString& prefix, const BarcodeLayout& b, const QString& otherPrefix) {
    const FieldSpan one = prefixOf(a);
    const FieldSpan other = prefixOf(b);
    if (a.digitCount != b.digitCount || prefix.size() != one.end - one.begin ||
        otherPrefix.size() != other.end - other.begin)
        return false;
    for (int position = std::max(one.begin, other.begin); position < std::min(one.end, other.end); ++position) {
        if (prefix[position - one.begin] != otherPrefix[position - other.begin]) return false;
    }
    return true;
}

}  // namespace

QString nameOf(const BarcodeLayout& layout) {
    const QString title = screenText(QString::fromStdString(layout.title)).trimmed();
    return title.isEmpty() ? QStringLiteral("بی‌نام") : title;
}

QString titleOf(LayoutField field) {
    switch (field) {
        case LayoutField::Constant:
            return QStringLiteral("پیش‌شماره");
        case LayoutField::Item:
            return QStringLiteral("کالا");
        case LayoutField::Amount:
            return QStringLiteral("مقدار");
        case LayoutField::Balance:
            return QStringLiteral("شمارهٔ ترازو");
        case LayoutField::Price:
            return QStringLiteral("مبلغ");
    }
    return {};
}

std::vector<FieldSpan> spansOf(const BarcodeLayout& layout) {
    std::vector<FieldSpan> spans;
    for (const FieldPlace& place : placesOf(layout)) {
        if (place.count > 0)
            spans.push_back(
                {place.field, std::clamp(place.start, -kLongest, kLongest), endOf(place.start, place.count)});
    }
    std::stable_sort(spans.begin(), spans.end(), [](const auto& a, const auto& b) { return a.begin < b.begin; });
    return spans;
}

bool fits(const BarcodeLayout& layout, const QString& barcode) {
    const QString scanned = barcode.trimmed();
    return scanned.size() == layout.digitCount &&
           cut(scanned, layout.constantStart, layout.constantCount) == constantOf(layout);
}

std::optional<Extended> priceIn(const BarcodeLayout& layout, const QString& barcode) {
    const QString characters = cut(barcode.trimmed(), layout.priceStart, layout.priceCount);
    if (!isNumber(characters)) return std::nullopt;
    return StrToFloat_VRO(characters.toStdString());
}

bool isFoundFor(const BarcodeLayout& layout, const QString& barcode) {
    const QString scanned = barcode.trimmed();
    return scanned.size() == layout.digitCount &&
           isSameToTheServer(cut(scanned, layout.constantStart, layout.constantCount), constantOf(layout));
}

std::optional<QString> faultOf(const BarcodeLayout& layout, const QString& barcode, bool byScaleCode) {
    const QString scanned = barcode.trimmed();
    if (layout.barCodeType == bftAmount) {
        if (auto fault = goodFault(layout, scanned, byScaleCode)) return fault;
        if (layout.amountCount > 0) {
            if (auto fault = numberFault(layout, scanned, LayoutField::Amount, layout.amountStart, layout.amountCount))
                return fault;
        }
        if (layout.priceCount <= 0) return std::nullopt;
    } else if (layout.barCodeType != bftTotalPrice && layout.barCodeType != bftConstPrice) {
        return std::nullopt;
    }
    return numberFault(layout, scanned, LayoutField::Price, layout.priceStart, layout.priceCount);
}

QString prefixFault(const BarcodeLayout& layout) {
    return QStringLiteral(
               "تعداد رقم پیش‌شمارهٔ الگوی «%1» منفی است و تا درست نشود بارکدهای %2 رقمی خوانده نمی‌شوند. آن را در صفحهٔ "
               "الگوهای بارکد درست کنید.")
        .arg(nameOf(layout), number(layout.digitCount));
}

bool mayBothFit(const BarcodeLayout& a, const BarcodeLayout& b) {
    return mayHaveBoth(a, asTheServerSees(constantOf(a)), b, asTheServerSees(constantOf(b)));
}

namespace {

// Of a field that reaches beyond the barcode, and so is shorter than it says or has no characters at all. What a good,
// an amount or a price has to be read from must have some; a scale's number may have none, and of the prefix it counts
// only that it is as long as what is compared with it.
LayoutProblem outsideOf(const BarcodeLayout& layout, const FieldSpan& span) {
    const int left = std::min(span.end, layout.digitCount + 1) - std::max(span.begin, 1);
    const QString outside = QStringLiteral("«%1» از بارکد %2 رقمی بیرون می‌زند")
                                .arg(titleOf(span.field), number(layout.digitCount));
    if (left > 0)
        return {
            QStringLiteral("%1 و از آن تنها %2 رقم خوانده می‌شود.").arg(outside, number(left)),
            false, span.field};
    const bool isNeeded = span.field != LayoutField::Balance && span.field != LayoutField::Constant;
    return {outside + QLatin1Char('.'), isNeeded, span.field};
}

}  // namespace

std::vector<LayoutProblem> problemsOf(const BarcodeLayout& layout, const std::vector<BarcodeLayout>& others) {
    std::vector<LayoutProblem> problems;
    const auto hopeless = [&problems](const QString& text, std::optional<LayoutField> field = {}) {
        problems.push_back({text, true, field});
    };
    const auto doubtful = [&problems](const QString& text, std::optional<LayoutField> field = {}) {
        problems.push_back({text, false, field});
    };
    if (layout.barCodeType < bftAmount || layout.barCodeType > bftConstPrice)
        hopeless(
            QStringLiteral(
                "نوع بارکد %1 شناخته نیست و اسکن با این الگو کاری نمی‌کند. نوع آن را برگزینید.")
                .arg(number(layout.barCodeType)));
    if (layout.digitCount <= 0) hopeless(QStringLiteral("تعداد رقم بارکد معلوم نیست."));
    for (const FieldPlace& place : placesOf(layout)) {
        if (place.count >= 0) continue;
        hopeless(place.field == LayoutField::Constant
                     ? prefixFault(layout)
                     : QStringLiteral("تعداد رقم «%1» منفی است.").arg(titleOf(place.field)),
                 place.field);
    }
    const std::vector<FieldSpan> spans = spansOf(layout);
    for (const FieldSpan& span : spans) {
        if (span.begin >= 1 && span.end <= layout.digitCount + 1) continue;
        problems.push_back(outsideOf(layout, span));
    }
    for (std::size_t i = 0; i < spans.size(); ++i) {
        for (std::size_t k = i + 1; k < spans.size(); ++k) {
            if (spans[k].begin < spans[i].end)
                doubtful(QStringLiteral("«%1» و «%2» روی هم افتاده‌اند.")
                             .arg(titleOf(spans[i].field), titleOf(spans[k].field)),
                         spans[k].field);
        }
    }
    const FieldSpan prefix = prefixOf(layout);
    const int fixed = layout.digitCount > 0 ? prefix.end - prefix.begin : layout.constantCount;
    if (layout.constantCount >= 0 && constantOf(layout).size() != fixed)
        hopeless(QStringLiteral("پیش‌شماره %1 نویسه است، نه %2.")
                     .arg(number(static_cast<int>(constantOf(layout).size())), number(fixed)),
                 LayoutField::Constant);
    if (!layout.constantCode.empty() && !isPlainCode(constantOf(layout)))
        hopeless(
            QStringLiteral(
                "پیش‌شماره نویسه‌ای جز رقم و حرف لاتین دارد و هیچ بارکدی با آن خوانده نمی‌شود؛ آن را پاک کنید و از "
                "نو بنویسید."),
            LayoutField::Constant);
    if (layout.barCodeType == bftAmount && layout.itemConstantCode <= 0 && layout.itemCodeCount == 0)
        hopeless(QStringLiteral("نه جای کالا معلوم است و نه کالای ثابت."), LayoutField::Item);
    if ((layout.barCodeType == bftTotalPrice || layout.barCodeType == bftConstPrice) && layout.priceCount == 0)
        hopeless(QStringLiteral("جای مبلغ معلوم نیست."), LayoutField::Price);
    for (const BarcodeLayout& other : others) {
        if (other.id != 0 && other.id == layout.id) continue;
        if (!mayBothFit(layout, other)) continue;
        const bool bothRead = mayHaveBoth(layout, constantOf(layout), other, constantOf(other));
        doubtful(
            (bothRead
                 ? QStringLiteral(
                       "بارکدی که با این الگو بخواند با «%1» هم می‌خواند.")
                 : QStringLiteral(
                       "سرور پیش‌شمارهٔ «%1» را از پیش‌شمارهٔ این الگو بازنمی‌شناسد؛ از این دو هر کدام زودتر "
                       "پیدا شود، بارکدهای دیگری خوانده نمی‌شوند."))
                .arg(nameOf(other)));
    }
    return problems;
}

}  // namespace basalt::host
