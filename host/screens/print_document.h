// Something made of pages. It is laid out once for a paper and is the same then on the screen, in a file and on paper.
//
//   document.layOut(pageLayout());
//   painter.scale(scale, scale);
//   document.paintPage(painter, 0);
#pragma once

#include <QFont>
#include <QPageLayout>
#include <QPainter>
#include <QPrinter>
#include <QString>

#include "host/screens/output_file.h"

namespace basalt::host {

// The unit in which pages are laid out and painted: dots an inch.
constexpr int kPageDpi = 1200;

// A font in that unit, so that the device has no say in where lines and pages end.
[[nodiscard]] QFont pageFont(qreal points, QFont::Weight weight = QFont::Normal);

class PrintDocument {
public:
    virtual ~PrintDocument() = default;
    [[nodiscard]] virtual QString title() const = 0;
    // Divides the content into pages for that paper. How many there are: at least one.
    virtual int layOut(const QPageLayout& paper) = 0;
    // A page from 0 of the latest layout. The origin is the corner of the area inside the margins.
    virtual void paintPage(QPainter& painter, int page) const = 0;
};

// Paper with the margins that prints have here.
[[nodiscard]] QPageLayout pageLayout(QPageSize::PageSizeId paper = QPageSize::A4,
                                     QPageLayout::Orientation orientation = QPageLayout::Portrait);

// The pages `from` to `to`, both from 0, on the paper that the printer has; `to` may be beyond the end. OutputError
// when the printer does not take them, OutputCancelled when they are given up.
void printPages(PrintDocument& document, QPrinter& printer, int from, int to, const OutputProgress& progress = {});

// All pages as a PDF file, which appears whole or not at all; OutputError when it cannot be written, OutputCancelled
// when it is given up.
void writePdf(PrintDocument& document, const QPageLayout& paper, const QString& path,
              const OutputProgress& progress = {});

}  // namespace basalt::host
