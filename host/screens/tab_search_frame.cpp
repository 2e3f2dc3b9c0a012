#include "host/screens/tab_search_frame.h"

#include <QHBoxLayout>

#include "ado/error.h"
#include "host/screens/search_condition.h"

namespace basalt::host {
namespace {

// Tabs without more room than they ask for: the bar itself asks for a pixel less, and the first word loses its edge.
class WholeTabs final : public QTabBar {
public:
    using QTabBar::QTabBar;
    [[nodiscard]] QSize sizeHint() const override {
        int width = 2;
        for (int tab = 0; tab < count(); ++tab)
            width += tabSizeHint(tab).width();
        return QTabBar::sizeHint().expandedTo({width, 0});
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
};

}  // namespace

TabSearchFrame::TabSearchFrame(ScreenContext& context, const QString& objectName, QWidget* parent)
    : TTab_Search_Frame(parent), context_(context), tabs_(new WholeTabs(this)), change_(context, *this) {
    setObjectName(objectName);
    tabs_->setObjectName(objectName + QStringLiteral("_TBC"));
    tabs_->setDrawBase(false);
    tabs_->setExpanding(false);
    // In a narrow row they would scroll, and leave a part of a word.
    tabs_->setUsesScrollButtons(false);
    tabs_->setFocusPolicy(Qt::StrongFocus);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(tabs_);
    layout->addStretch(1);
    setFocusProxy(tabs_);
    QObject::connect(tabs_, &QTabBar::currentChanged, this, [this] {
        if (change_.isMuted()) return;
        context_.guarded(this, [this] { changeTab(); });
    });
}

void TabSearchFrame::changeTab() {
    try {
        if (OnTabChange) {
            OnTabChange();
        } else {
            Search_TBCChange();
        }
        chosen_ = tabs_->currentIndex();
    } catch (...) {
        // The list has kept its rows, and the tab must not say that they are others.
        const SearchChange::Muted muted(change_);
        tabs_->setCurrentIndex(chosen_);
        throw;
    }
}

void TabSearchFrame::init() {
    Clear();
}

std::string TabSearchFrame::Filter() const {
    const int index = tabs_->currentIndex();
    if (index < 0 || field_.empty()) return {};
    return equalCondition(field_, values_[static_cast<std::size_t>(index)]);
}

void TabSearchFrame::Clear() {
    const SearchChange::Muted muted(change_);
    if (tabs_->count() > 0) tabs_->setCurrentIndex(0);
    chosen_ = 0;
}

void TabSearchFrame::FocusFirst() {
    tabs_->setFocus();
}

void TabSearchFrame::AddTab(const std::string& title, const std::string& value) {
    const SearchChange::Muted muted(change_);
    values_.push_back(value);
    tabs_->addTab(QString::fromStdString(title));
}

void TabSearchFrame::SetTabIndex(int index) {
    if (index < 0 || index >= tabs_->count())
        throw UsageError("SetTabIndex of " + objectName().toStdString() + ": there is no tab " + std::to_string(index));
    tabs_->setCurrentIndex(index);
}

QString TabSearchFrame::tabTitle() const {
    return tabs_->tabText(tabs_->currentIndex()).remove(QLatin1Char('&')).trimmed();
}

}  // namespace basalt::host
