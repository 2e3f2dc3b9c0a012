#include "host/screens/selection_summary.h"

#include <QItemSelectionModel>
#include <algorithm>
#include <stdexcept>

#include "ado/error.h"
#include "host/screens/persian_digits.h"

namespace basalt::host {
namespace {

constexpr int kLeastAverageDigits = 2;

Decimal divided(const Decimal& sum, int count) {
    const Decimal wide = sum.scale() < kLeastAverageDigits ? sum.rescaled(kLeastAverageDigits) : sum;
    Int128 quotient = wide.coefficient() / count;
    const Int128 rest = wide.coefficient() % count;
    if (2 * (rest < 0 ? -rest : rest) >= count) quotient += rest < 0 ? -1 : 1;
    return {quotient, wide.scale()};
}

Decimal sumOf(const Decimal& a, const Decimal& b) {
    const int scale = std::max(a.scale(), b.scale());
    const Decimal sum(a.rescaled(scale).coefficient() + b.rescaled(scale).coefficient(), scale);
    if (sum.digits() > kMaxDecimalDigits) throw std::overflow_error("the sum has too many digits");
    return sum;
}

QString grouped(int number) {
    static const DisplayFormat format("#,#0");
    return screenNumber(format.text(Decimal(number, 0)));
}

int rowsOf(const QItemSelection& selection) {
    int rows = 0;
    for (const QItemSelectionRange& range : selection)
        rows += range.height();
    return rows;
}

}  // namespace

std::optional<ColumnTotal> columnTotal(const GridModel& model, const QItemSelection& rows, int column) {
    ColumnTotal total;
    try {
        for (const QItemSelectionRange& range : rows) {
            for (int row = range.top(); row <= range.bottom(); ++row) {
                const Value value = model.value(row, column);
                if (isNull(value)) continue;
                total.sum = sumOf(total.sum, toDecimal(value));
                ++total.count;
            }
        }
        if (total.count == 0) return std::nullopt;
        total.average = divided(total.sum, total.count);
    } catch (const std::overflow_error&) {
        return std::nullopt;
    } catch (const DatabaseError&) {
        // A floating-point number beyond the reach of decimals.
        return std::nullopt;
    }
    return total;
}

SelectionSummary::SelectionSummary(SmartGrid& grid, QWidget* parent) : QLabel(parent), grid_(grid) {
    setObjectName(QStringLiteral("Summary_LBL"));
    setProperty("kind", QStringLiteral("hint"));
    setTextFormat(Qt::PlainText);
    // Long level names must not widen the screen.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    QObject::connect(&grid.model(), &QAbstractItemModel::modelReset, this, [this] { refresh(); });
    const QItemSelectionModel* selection = grid.View()->selectionModel();
    QObject::connect(selection, &QItemSelectionModel::selectionChanged, this, [this] { refresh(); });
    QObject::connect(selection, &QItemSelectionModel::currentColumnChanged, this, [this] { refresh(); });
    refresh();
}

void SelectionSummary::refresh() {
    // What is to be known of rows means nothing where there are none.
    const bool noted = !note_.isEmpty() && !grid_.model().isUnread();
    setText(noted ? advised(note_, advice_) + QStringLiteral("   |   ") + described() : described());
}

void SelectionSummary::setNote(const QString& note, const QString& advice) {
    if (note == note_ && advice == advice_) return;
    note_ = note;
    advice_ = advice;
    refresh();
}

void SelectionSummary::setAdvising(bool advising) {
    advising_ = advising;
    if (!note_.isEmpty() || grid_.model().isUnread()) refresh();
}

QString SelectionSummary::advised(const QString& fact, const QString& advice) const {
    return advising_ ? fact + QStringLiteral("؛ ") + advice : fact;
}

QString SelectionSummary::described() const {
    const GridModel& model = grid_.model();
    if (model.isUnread())
        return advised(QStringLiteral("سطرها هنوز خوانده نشده‌اند"),
                       QStringLiteral("برای خواندن \u2066Ctrl+R\u2069 را بزنید"));
    QString all = QStringLiteral("%1 سطر").arg(grouped(model.rowCount()));
    const QItemSelection selected = grid_.View()->selectionModel()->selection();
    const int count = rowsOf(selected);
    if (count < 2) return all;
    QString chosen = QStringLiteral("%1   |   %2 سطر برگزیده").arg(all, grouped(count));
    const int column = grid_.View()->currentIndex().column();
    if (column < 0 || !model.isAmountColumn(column)) return chosen;
    const auto total = columnTotal(model, selected, column);
    if (!total) return chosen;
    const auto shown = [&](const Decimal& number) { return isolatedNumber(model.format(column).text(number)); };
    return QStringLiteral("%1   |   %2: جمع %3، میانگین %4")
        .arg(chosen, screenText(model.column(column).Title), shown(total->sum), shown(total->average));
}

}  // namespace basalt::host
