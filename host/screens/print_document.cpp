#include "host/screens/print_document.h"

#include <QFile>
#include <algorithm>
#include <string>

#include "host/screens/theme.h"
#include "host/services/output_error.h"

namespace basalt::host {

QFont pageFont(qreal points, QFont::Weight weight) {
    constexpr qreal kPointsAnInch = 72;
    QFont font = themeFont(points, weight);
    font.setPixelSize(static_cast<int>(points * kPageDpi / kPointsAnInch));
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

QPageLayout pageLayout(QPageSize::PageSizeId paper, QPageLayout::Orientation orientation) {
    constexpr qreal kMargin = 10;
    return {QPageSize(paper), orientation, QMarginsF(kMargin, kMargin, kMargin, kMargin), QPageLayout::Millimeter};
}

namespace {

// What the printer refused, in the user's words; nothing when it took all pages.
std::string paintPages(PrintDocument& document, QPrinter& printer, int from, int to, const OutputProgress& progress) {
    const int last = std::min(to, document.layOut(printer.pageLayout()) - 1);
    QPainter painter(&printer);
    if (!painter.isActive()) return "چاپگر آماده نیست.";
    const qreal scale = static_cast<qreal>(printer.resolution()) / kPageDpi;
    for (int page = from; page <= last; ++page) {
        if (progress && !progress(page - from, last - from + 1)) {
            printer.abort();
            throw OutputCancelled();
        }
        if (page > from && !printer.newPage()) return "چاپگر صفحهٔ تازه‌ای نمی‌پذیرد.";
        painter.save();
        painter.scale(scale, scale);
        document.paintPage(painter, page);
        painter.restore();
    }
    if (!painter.end()) return "چاپ به پایان نرسید.";
    return {};
}

// The printer does not always tell of a full disk; a file without its last mark was cut.
bool isWholePdf(const QString& path) {
    constexpr qint64 kTail = 32;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.seek(std::max<qint64>(0, file.size() - kTail)) &&
           file.readAll().trimmed().endsWith("%%EOF");
}

}  // namespace

void printPages(PrintDocument& document, QPrinter& printer, int from, int to, const OutputProgress& progress) {
    const std::string refusal = paintPages(document, printer, from, to, progress);
    if (!refusal.empty()) throw OutputError(refusal);
}

void writePdf(PrintDocument& document, const QPageLayout& paper, const QString& path, const OutputProgress& progress) {
    writeOutputFile(path, [&](const QString& draft) {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(draft);
        printer.setDocName(document.title());
        printer.setPageLayout(paper);
        // Its refusals speak of paper; what a file lacks is asked of the disk.
        return paintPages(document, printer, 0, document.layOut(paper) - 1, progress).empty() && isWholePdf(draft);
    });
}

}  // namespace basalt::host
