// One page of a document as it will look on paper, with a size that the user chooses.
//
// Keys: PgUp and PgDn scroll and go on to the page before or behind, Home and End go to the first and the last page,
// Ctrl with the wheel changes the size.
#pragma once

#include <QAbstractScrollArea>
#include <QPixmap>
#include <functional>

#include "host/screens/print_document.h"

namespace basalt::host {

class PageView final : public QAbstractScrollArea {
public:
    // How large a page is shown: as wide as the view, as a whole, or in a given size.
    enum class Fit { Width, Page, Size };

    // The document is lent.
    PageView(PrintDocument& document, const QPageLayout& paper, QWidget* parent);

    void setPaper(const QPageLayout& paper);  // goes back to the first page
    [[nodiscard]] const QPageLayout& paper() const { return paper_; }
    [[nodiscard]] int pageCount() const { return pages_; }
    [[nodiscard]] int page() const { return page_; }  // from 0
    void setPage(int page);                           // the nearest that there is

    void setFit(Fit fit, int percent = 100);  // percent counts for Fit::Size
    [[nodiscard]] Fit fit() const { return fit_; }
    // What is shown now, 100 being the size of paper.
    [[nodiscard]] int percent() const;
    // The next larger or smaller of the usual sizes.
    void enlarge();
    void reduce();

    std::function<void()> onPageChanged;
    std::function<void()> onFitChanged;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void arrange();
    void turn(int pages, bool toEnd);
    [[nodiscard]] qreal scale() const;  // of pixels to the unit of pages
    [[nodiscard]] QSizeF paperSize() const;
    [[nodiscard]] const QPixmap& picture();

    PrintDocument& document_;
    QPageLayout paper_;
    int pages_ = 1;
    int page_ = 0;
    Fit fit_ = Fit::Width;
    int percent_ = 100;
    QPixmap picture_;  // null while it has to be painted anew
};

}  // namespace basalt::host
