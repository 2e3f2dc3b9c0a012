#include "host/screens/print_preview.h"

#include <QFrame>
#include <QPrinter>
#include <QShortcut>
#include <QSignalBlocker>

#include "ado/error.h"
#include "host/screens/output_services.h"
#include "host/screens/persian_digits.h"
#include "host/screens/printer_dialog.h"
#include "host/screens/theme.h"
#include "host/screens/window_size.h"
#include "host/services/output_error.h"

namespace basalt::host {
namespace {

// Sizes in the list behind the two that follow the window.
constexpr int kFitWidth = -1;
constexpr int kFitPage = -2;
constexpr int kListedSizes[]{50, 75, 100, 125, 150, 200};

struct Paper {
    QPageSize::PageSizeId id;
    const char* title;
};
constexpr Paper kPapers[]{
    {QPageSize::A4, "A4"}, {QPageSize::A5, "A5"}, {QPageSize::A3, "A3"}, {QPageSize::Letter, "Letter"}};

// The formatter would cut the sentence to pieces.
// clang-format off
constexpr const char* kNoPrinter = "در این رایانه چاپگری تعریف نشده است. صفحه‌ها را می‌توان به شکل PDF ذخیره کرد.";
// clang-format on

QString percentText(int percent) {
    return persianDigits(QStringLiteral("%1٪").arg(percent));
}

}  // namespace

PrintPreview::PrintPreview(ScreenContext& context, PrintDocument& document, const QPageLayout& paper, QWidget* parent)
    : QDialog(parent),
      context_(context),
      document_(document),
      option_(context, *this),
      frame_(new ScreenFrame(context, *this)),
      tools_(new QHBoxLayout),
      view_(new PageView(document, paper, this)) {
    setObjectName(QStringLiteral("PrintPreview_FRM"));
    resize(themeWindowSize({980, 760}, *this));
    frame_->setTitle(QStringLiteral("پیش‌نمایش چاپ – %1").arg(screenText(document.title())));
    QWidget* tools = frame_->addPanel("PrintTools_PNL", 0);
    tools->setLayout(tools_);
    tools_->setContentsMargins(0, 0, 0, 0);
    tools_->setSpacing(6);
    makeTools();
    view_->setParent(frame_->addPanel("Pages_PNL", 1));
    SmartButton* print = frame_->addButton("Print_BTN", "چاپ Ctrl+P");
    print->setLook(SmartButton::Look::Primary);
    print->OnClick = [this] { this->print(); };
    frame_->addButton("Pdf_BTN", "ذخیرهٔ PDF Ctrl+S")->OnClick = [this] { savePdf(); };
    frame_->addButtonGap();
    frame_->addButton("Exit_BTN", "خروج Esc")->OnClick = [this] { reject(); };
    frame_->finishLayout();
    frame_->activateShortCuts();
    view_->onPageChanged = [this] { showPage(); };
    view_->onFitChanged = [this] { showSize(); };
    showPage();
    showSize();
    view_->setFocus();
    try {
        restoreWindowSize(*this, option_.load());
    } catch (const DatabaseError&) {
        // What is printed is at hand without the database; it is looked at in the usual size.
    }
}

void PrintPreview::done(int result) {
    QJsonObject layout;
    keepWindowSize(layout, *this);
    option_.saveQuietly(layout);
    QDialog::done(result);
}

void PrintPreview::makeTools() {
    previous_ = addTool("PreviousPage_BTN", QStringLiteral("صفحهٔ قبل"), QKeySequence(QStringLiteral("Ctrl+PgUp")),
                        [this] { view_->setPage(view_->page() - 1); });
    page_ = new QSpinBox(this);
    page_->setObjectName(QStringLiteral("Page_SPN"));
    page_->setAccessibleName(QStringLiteral("شمارهٔ صفحه"));
    page_->setButtonSymbols(QAbstractSpinBox::NoButtons);
    page_->setAlignment(Qt::AlignCenter);
    page_->setMinimum(1);
    page_->setKeyboardTracking(false);
    page_->setFixedWidth(fontMetrics().averageCharWidth() * 12);
    tools_->addWidget(page_);
    QObject::connect(page_, &QSpinBox::valueChanged, this, [this](int page) { view_->setPage(page - 1); });
    pages_ = new QLabel(this);
    pages_->setObjectName(QStringLiteral("PageCount_LBL"));
    tools_->addWidget(pages_);
    next_ = addTool("NextPage_BTN", QStringLiteral("صفحهٔ بعد"), QKeySequence(QStringLiteral("Ctrl+PgDown")),
                    [this] { view_->setPage(view_->page() + 1); });
    tools_->addStretch(1);
    smaller_ = addTool("Smaller_BTN", QStringLiteral("−"), QKeySequence(QStringLiteral("Ctrl+-")),
                       [this] { view_->reduce(); });
    smaller_->setAccessibleName(QStringLiteral("کوچک‌تر"));
    size_ = addChoice("Zoom_CMB", QStringLiteral("اندازهٔ نمایش"));
    size_->addItem(QStringLiteral("پهنای صفحه"), kFitWidth);
    size_->addItem(QStringLiteral("تمام صفحه"), kFitPage);
    for (const int percent : kListedSizes)
        size_->addItem(percentText(percent), percent);
    QObject::connect(size_, &QComboBox::activated, this, [this](int index) { takeSize(index); });
    larger_ = addTool("Larger_BTN", QStringLiteral("+"), QKeySequence(QStringLiteral("Ctrl++")),
                      [this] { view_->enlarge(); });
    larger_->setAccessibleName(QStringLiteral("بزرگ‌تر"));
    // The plus sign needs no Shift on the key where it is drawn.
    bind(QKeySequence(QStringLiteral("Ctrl+=")), [this] { view_->enlarge(); });
    bind(QKeySequence(QStringLiteral("Ctrl+0")), [this] { view_->setFit(PageView::Fit::Width); });
    tools_->addStretch(1);
    paper_ = addChoice("PreviewPaper_CMB", QStringLiteral("کاغذ"));
    for (const Paper& paper : kPapers)
        paper_->addItem(QString::fromLatin1(paper.title), static_cast<int>(paper.id));
    paper_->setCurrentIndex(paper_->findData(static_cast<int>(view_->paper().pageSize().id())));
    QObject::connect(paper_, &QComboBox::activated, this, [this] { takePaper(); });
    landscape_ = addTool("Landscape_BTN", QStringLiteral("افقی"), QKeySequence(QStringLiteral("Ctrl+L")), {});
    landscape_->setCheckable(true);
    landscape_->setChecked(view_->paper().orientation() == QPageLayout::Landscape);
    QObject::connect(landscape_, &QToolButton::toggled, this, [this] { takePaper(); });
}

QToolButton* PrintPreview::addTool(const char* objectName, const QString& title, const QKeySequence& key,
                                   const std::function<void()>& action) {
    auto* tool = new QToolButton(this);
    tool->setObjectName(QString::fromLatin1(objectName));
    tool->setProperty("kind", QStringLiteral("framed"));
    tool->setText(title);
    tool->setAccessibleName(title);
    tool->setToolTip(QStringLiteral("%1 \u2066(%2)\u2069").arg(title, key.toString()));
    tool->setFocusPolicy(Qt::StrongFocus);
    tools_->addWidget(tool);
    QObject::connect(tool, &QToolButton::clicked, this, [action] {
        if (action) action();
    });
    bind(key, [tool] {
        if (tool->isEnabled()) tool->click();
    });
    return tool;
}

QComboBox* PrintPreview::addChoice(const char* objectName, const QString& title) {
    auto* choice = new QComboBox(this);
    choice->setObjectName(QString::fromLatin1(objectName));
    choice->setAccessibleName(title);
    choice->setToolTip(title);
    choice->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    tools_->addWidget(choice);
    return choice;
}

void PrintPreview::bind(const QKeySequence& key, const std::function<void()>& action) {
    QObject::connect(new QShortcut(key, this), &QShortcut::activated, this, action);
}

void PrintPreview::takePaper() {
    const auto size = static_cast<QPageSize::PageSizeId>(paper_->currentData().toInt());
    view_->setPaper(pageLayout(size, landscape_->isChecked() ? QPageLayout::Landscape : QPageLayout::Portrait));
}

void PrintPreview::takeSize(int index) {
    const int wanted = size_->itemData(index).toInt();
    if (wanted == kFitWidth)
        view_->setFit(PageView::Fit::Width);
    else if (wanted == kFitPage)
        view_->setFit(PageView::Fit::Page);
    else
        view_->setFit(PageView::Fit::Size, wanted);
}

void PrintPreview::showPage() {
    const QSignalBlocker quiet(page_);
    page_->setMaximum(view_->pageCount());
    page_->setValue(view_->page() + 1);
    pages_->setText(persianDigits(QStringLiteral("از %1").arg(view_->pageCount())));
    previous_->setEnabled(view_->page() > 0);
    next_->setEnabled(view_->page() + 1 < view_->pageCount());
}

void PrintPreview::showSize() {
    const int wanted = view_->fit() == PageView::Fit::Width  ? kFitWidth
                       : view_->fit() == PageView::Fit::Page ? kFitPage
                                                             : view_->percent();
    int index = size_->findData(wanted);
    if (index < 0) {
        // A size out of the listed ones stands in the list as long as it is shown.
        size_->addItem(percentText(wanted), wanted);
        index = size_->count() - 1;
    }
    size_->setCurrentIndex(index);
}

void PrintPreview::print() {
    PrinterDialog dialog(view_->pageCount(), view_->page(), this);
    if (!dialog.hasPrinters()) throw OutputError(kNoPrinter);
    if (dialog.exec() != QDialog::Accepted) return;
    QPrinter printer(dialog.printer(), QPrinter::HighResolution);
    printer.setPageLayout(view_->paper());
    printer.setDocName(document_.title());
    printer.setCopyCount(dialog.copies());
    // The printer may have other margins, which divide the pages anew; what is shown is laid out as before.
    const int page = view_->page();
    try {
        printPages(document_, printer, dialog.firstPage(), dialog.lastPage(), context_.writing());
    } catch (...) {
        showAgain(page);
        throw;
    }
    showAgain(page);
}

void PrintPreview::showAgain(int page) {
    view_->setPaper(view_->paper());
    view_->setPage(page);
}

void PrintPreview::savePdf() {
    const auto path =
        context_.output().chooseFile(this, QStringLiteral("خروجی PDF"), document_.title(), QStringLiteral("pdf"));
    if (!path) return;
    writePdf(document_, view_->paper(), *path, context_.writing());
    tellSaved(*this, *path);
}

}  // namespace basalt::host
