#include "host/screens/page_view.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <iterator>

#include "host/screens/theme.h"

namespace basalt::host {
namespace {

constexpr qreal kScreenDpi = 96;
constexpr int kMargin = 20;  // around the page
constexpr std::array<int, 9> kSizes{25, 50, 75, 100, 125, 150, 200, 300, 400};

}  // namespace

PageView::PageView(PrintDocument& document, const QPageLayout& paper, QWidget* parent)
    : QAbstractScrollArea(parent), document_(document), paper_(paper), pages_(document.layOut(paper)) {
    setObjectName(QStringLiteral("Page_PNL"));
    setAccessibleName(QStringLiteral("صفحه"));
    setProperty("kind", QStringLiteral("pages"));
    setFocusPolicy(Qt::StrongFocus);
    // A page that fills the view may not lose its width to the bar that its height calls for.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
}

void PageView::setPaper(const QPageLayout& paper) {
    paper_ = paper;
    pages_ = document_.layOut(paper);
    page_ = -1;
    setPage(0);
}

void PageView::setPage(int page) {
    const int wanted = std::clamp(page, 0, pages_ - 1);
    if (wanted == page_) return;
    page_ = wanted;
    arrange();
    verticalScrollBar()->setValue(0);
    if (onPageChanged) onPageChanged();
}

void PageView::setFit(Fit fit, int percent) {
    fit_ = fit;
    percent_ = percent;
    arrange();
    if (onFitChanged) onFitChanged();
}

QSizeF PageView::paperSize() const {
    return paper_.fullRect(QPageLayout::Inch).size() * kPageDpi;
}

qreal PageView::scale() const {
    if (fit_ == Fit::Size) return percent_ / 100.0 * kScreenDpi / kPageDpi;
    const QSizeF room = QSizeF(viewport()->size()) - QSizeF(2 * kMargin, 2 * kMargin);
    const QSizeF paper = paperSize();
    const qreal wide = room.width() / paper.width();
    const qreal fitting = fit_ == Fit::Width ? wide : std::min(wide, room.height() / paper.height());
    return std::clamp(fitting, 0.1 * kScreenDpi / kPageDpi, 4 * kScreenDpi / kPageDpi);
}

int PageView::percent() const {
    return qRound(scale() * kPageDpi / kScreenDpi * 100);
}

void PageView::enlarge() {
    const auto* next = std::upper_bound(kSizes.begin(), kSizes.end(), percent());
    if (next != kSizes.end()) setFit(Fit::Size, *next);
}

void PageView::reduce() {
    const auto* next = std::lower_bound(kSizes.begin(), kSizes.end(), percent());
    if (next != kSizes.begin()) setFit(Fit::Size, *std::prev(next));
}

void PageView::arrange() {
    picture_ = {};
    const QSize page = (paperSize() * scale()).toSize() + QSize(2 * kMargin, 2 * kMargin);
    const QSize beyond = page - viewport()->size();
    verticalScrollBar()->setRange(0, std::max(0, beyond.height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(40);
    const bool was = horizontalScrollBar()->maximum() > 0;
    horizontalScrollBar()->setRange(0, std::max(0, beyond.width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setSingleStep(40);
    // Reading begins on the right.
    if (!was) horizontalScrollBar()->setValue(isRightToLeft() ? 0 : horizontalScrollBar()->maximum());
    viewport()->update();
}

const QPixmap& PageView::picture() {
    if (!picture_.isNull()) return picture_;
    const qreal ratio = devicePixelRatioF();
    picture_ = QPixmap((paperSize() * scale() * ratio).toSize());
    picture_.setDevicePixelRatio(ratio);
    picture_.fill(Qt::white);
    QPainter painter(&picture_);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(scale(), scale());
    const QRectF inside = paper_.paintRect(QPageLayout::Inch);
    painter.translate(inside.topLeft() * kPageDpi);
    document_.paintPage(painter, page_);
    return picture_;
}

void PageView::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), themeColors().border);
    const QPixmap& page = picture();
    const QSize size = page.deviceIndependentSize().toSize();
    // A page smaller than the view stands in its middle.
    const int spare = viewport()->width() - size.width();
    const int shift = horizontalScrollBar()->value();
    const int x = spare >= 2 * kMargin ? spare / 2 : isRightToLeft() ? spare - kMargin + shift : kMargin - shift;
    const int high = viewport()->height() - size.height();
    const int y = high >= 2 * kMargin ? high / 2 : kMargin - verticalScrollBar()->value();
    painter.fillRect(QRect(QPoint(x, y), size).adjusted(-1, -1, 2, 2), themeColors().borderStrong);
    painter.drawPixmap(x, y, page);
    if (!hasFocus()) return;
    painter.setPen(QPen(themeColors().accent, 2));
    painter.drawRect(QRect(QPoint(x, y), size).adjusted(-2, -2, 2, 2));
}

void PageView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    arrange();
    if (fit_ != Fit::Size && onFitChanged) onFitChanged();
}

void PageView::turn(int pages, bool toEnd) {
    const int before = page_;
    setPage(page_ + pages);
    if (page_ != before && toEnd) verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void PageView::keyPressEvent(QKeyEvent* event) {
    QScrollBar& bar = *verticalScrollBar();
    switch (event->key()) {
        case Qt::Key_PageDown:
        case Qt::Key_Space:
            if (bar.value() == bar.maximum())
                turn(1, false);
            else
                bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
            return;
        case Qt::Key_PageUp:
            if (bar.value() == bar.minimum())
                turn(-1, true);
            else
                bar.triggerAction(QAbstractSlider::SliderPageStepSub);
            return;
        case Qt::Key_Home:
            setPage(0);
            bar.setValue(0);
            return;
        case Qt::Key_End:
            setPage(pages_ - 1);
            return;
        default:
            QAbstractScrollArea::keyPressEvent(event);
    }
}

void PageView::wheelEvent(QWheelEvent* event) {
    const int turned = event->angleDelta().y();
    if (event->modifiers() & Qt::ControlModifier) {
        if (turned > 0) enlarge();
        if (turned < 0) reduce();
        event->accept();
        return;
    }
    const QScrollBar& bar = *verticalScrollBar();
    if (turned < 0 && bar.value() == bar.maximum())
        turn(1, false);
    else if (turned > 0 && bar.value() == bar.minimum())
        turn(-1, true);
    else
        QAbstractScrollArea::wheelEvent(event);
}

}  // namespace basalt::host
