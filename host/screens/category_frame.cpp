#include "host/screens/category_frame.h"

#include <QAbstractItemView>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "ado/error.h"
#include "host/screens/search_condition.h"

namespace basalt::host {

namespace {

// The tree's own depth.
constexpr std::size_t kMostChips = 3;
// More names than one can look through are no help.
constexpr int kMostNames = 12;

// Between the names of a way; drawn as it points where the text goes from right to left.
const QString kBelow = QStringLiteral(" › ");

bool isEnter(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool takesChips(int key) {
    return key == Qt::Key_Delete || key == Qt::Key_Backspace;
}

QString textOf(const std::vector<TCategoryBubble>& way) {
    QStringList names;
    for (const TCategoryBubble& each : way)
        names << QString::fromStdString(each.Name);
    return names.join(kBelow);
}

}  // namespace

CategoryFrame::CategoryFrame(ScreenContext& context, const QString& objectName, QWidget* parent)
    : TCategory_frame(parent),
      context_(context),
      store_(context.host().session()),
      select_(new QToolButton(this)),
      menu_(new QMenu(select_)),
      editor_(new QLineEdit(this)),
      completer_(new QCompleter(&names_, this)) {
    setObjectName(objectName);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    for (std::size_t i = 0; i < kMostChips; ++i) {
        auto* chip = new CategoryChip(objectName + QStringLiteral("_Chip%1").arg(i), this);
        chip->OnTake = [this, i] { context_.guarded(this, [this, i] { takeChip(i); }); };
        chips_.push_back(chip);
        layout->addWidget(chip);
    }
    makeEditor();
    makeSelect();
    layout->addWidget(editor_, 1);
    layout->addWidget(select_);
    for (std::size_t i = 0; i + 1 < kMostChips; ++i)
        setTabOrder(chips_[i], chips_[i + 1]);
    setTabOrder(chips_.back(), editor_);
    setTabOrder(editor_, select_);
    setFocusProxy(editor_);
}

void CategoryFrame::makeSelect() {
    select_->setObjectName(objectName() + QStringLiteral("_BTN"));
    select_->setText(QStringLiteral("انتخاب ▾"));
    select_->setAccessibleName(QStringLiteral("انتخاب دسته"));
    select_->setProperty("kind", QStringLiteral("framed"));
    select_->setFocusPolicy(Qt::StrongFocus);
    select_->setPopupMode(QToolButton::InstantPopup);
    select_->setMenu(menu_);
    menu_->setObjectName(objectName() + QStringLiteral("_Menu"));
    // A screen may build the menu at each key; only one that is looked at is worth its items.
    QObject::connect(menu_, &QMenu::aboutToShow, this, [this] { context_.guarded(this, [this] { fillMenu(); }); });
}

void CategoryFrame::makeEditor() {
    editor_->setObjectName(objectName() + QStringLiteral("_EDT"));
    editor_->setPlaceholderText(QStringLiteral("نام دسته"));
    editor_->setAccessibleName(QStringLiteral("نام دسته"));
    // Also while it is empty, when there is no text yet to tell the direction.
    editor_->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
    completer_->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    completer_->setMaxVisibleItems(kMostNames);
    completer_->setWidget(editor_);
    QAbstractItemView* popup = completer_->popup();
    popup->setObjectName(objectName() + QStringLiteral("_Names"));
    popup->setAccessibleName(QStringLiteral("دسته‌های یافت‌شده"));
    popup->setLayoutDirection(Qt::RightToLeft);
    editor_->installEventFilter(this);
    popup->installEventFilter(this);
    QObject::connect(completer_, qOverload<const QModelIndex&>(&QCompleter::activated), this,
                     [this](const QModelIndex& index) {
                         // The key that chose is not one of the editor's.
                         pressedKey_ = 0;
                         const int code = index.data(Qt::UserRole).toInt();
                         context_.guarded(this, [this, code] { choose(code); });
                     });
    // Pasted with the mouse, or composed: no key will be released for it.
    QObject::connect(editor_, &QLineEdit::textEdited, this, [this] {
        if (!keyIsDown_) keyUp(0);
    });
    QObject::connect(editor_, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (text.isEmpty()) closeNames();
    });
}

void CategoryFrame::open(bool anew) {
    Fill_allPop();
    if (anew) ClearBubbles();
    createmenuItemByCode(CurrentCode());
}

void CategoryFrame::readTree() {
    tree_ = CategoryTree(store_.all());
}

std::vector<TCategoryBubble> CategoryFrame::wayTo(int category) const {
    std::vector<TCategoryBubble> way;
    for (const Category* each : tree_.wayTo(category))
        way.push_back({.Code = each->code, .Name = each->name});
    return way;
}

void CategoryFrame::create_bubble(int category, int kind) {
    if (kind != 1 && kind != 2)
        throw UsageError("create_bubble of " + objectName().toStdString() + ": there is no kind " +
                         std::to_string(kind));
    readTree();
    std::vector<TCategoryBubble> way = wayTo(category);
    if (kind == 2 && !way.empty()) way.pop_back();
    showWay(std::move(way));
}

void CategoryFrame::showWay(std::vector<TCategoryBubble> way) {
    way_ = std::move(way);
    // A tree that has become deeper than it may be.
    if (way_.size() > kMostChips) way_.erase(way_.begin(), way_.end() - kMostChips);
    for (std::size_t i = 0; i < kMostChips; ++i) {
        if (i < way_.size()) {
            chips_[i]->setCategory(QString::fromStdString(way_[i].Name), i + 1 == way_.size());
        } else {
            chips_[i]->hide();
        }
    }
    editor_->setPlaceholderText(way_.size() < kMostChips ? QStringLiteral("نام دسته") : QString());
    editor_->setAccessibleDescription(way_.empty() ? QStringLiteral("دسته‌ای انتخاب نشده است.")
                                                   : QStringLiteral("دستهٔ کنونی: %1").arg(textOf(way_)));
}

void CategoryFrame::createmenuItemByCode(int category) {
    menuBelow_ = category;
    menuIsOld_ = true;
}

void CategoryFrame::Fill_allPop() {
    readTree();
    menuIsOld_ = true;
    // What has gone meanwhile stays chosen until the user takes it away; what is called otherwise shows its name.
    std::vector<TCategoryBubble> way = way_;
    for (TCategoryBubble& each : way) {
        if (const Category* category = tree_.find(each.Code)) each.Name = category->name;
    }
    showWay(std::move(way));
}

void CategoryFrame::Fill_allPopname() {
    if (completer_->popup()->isVisible()) offerNames();
}

void CategoryFrame::fillMenu() {
    if (!std::exchange(menuIsOld_, false)) return;
    menu_->clear();
    const bool leads = menuBelow_ != 0 && !tree_.below(menuBelow_).empty();
    addItems(*menu_, leads ? menuBelow_ : 0, 0);
    if (!menu_->isEmpty()) return;
    menu_->addAction(QStringLiteral("هنوز دسته‌ای تعریف نشده است."))->setEnabled(false);
}

void CategoryFrame::addItems(QMenu& menu, int parent, std::size_t depth) {
    for (const Category* category : tree_.below(parent)) {
        // An ampersand in a name is no key.
        QString title = QString::fromStdString(category->name);
        title.replace(QLatin1Char('&'), QLatin1String("&&"));
        const bool leads = depth + 1 < kMostChips && !tree_.below(category->code).empty();
        QMenu* at = leads ? menu.addMenu(title) : &menu;
        // A branch itself can be chosen too: the first item of its own menu.
        QAction* action = at->addAction(
            title, this, [this, code = category->code] { context_.guarded(this, [this, code] { choose(code); }); });
        action->setObjectName(QStringLiteral("Category_%1_ACT").arg(category->code));
        if (!leads) continue;
        at->setObjectName(QStringLiteral("Category_%1_Menu").arg(category->code));
        at->addSeparator();
        addItems(*at, category->code, depth + 1);
    }
}

// What lies below a chip goes with it.
void CategoryFrame::takeChip(std::size_t index) {
    std::vector<TCategoryBubble> way = way_;
    way.resize(index);
    showWay(std::move(way));
    createmenuItemByCode(CurrentCode());
    editor_->setFocus();
    if (OnChange) OnChange();
}

// Just those of the typed name when there are such; else all whose names hold it.
std::vector<Category> CategoryFrame::found() {
    const QString text = editor_->text().trimmed();
    const std::string condition = textCondition("name", text);
    if (condition.empty()) return {};
    std::vector<Category> holding = store_.some(condition, kMostNames);
    // A name that holds the text and is as long is the text, whichever letters it is written with.
    const auto longer = std::find_if(holding.begin(), holding.end(), [&](const Category& each) {
        return QString::fromStdString(each.name).trimmed().size() > text.size();
    });
    if (longer != holding.begin()) holding.erase(longer, holding.end());
    return holding;
}

void CategoryFrame::offerNames() {
    offeredFor_ = editor_->text();
    const std::vector<Category> offered = found();
    names_.clear();
    for (const Category& category : offered) {
        // One that is newer than the tree stands alone.
        std::vector<TCategoryBubble> way = wayTo(category.code);
        if (way.empty()) way = {{.Code = category.code, .Name = category.name}};
        auto* item = new QStandardItem(textOf(way));
        item->setData(category.code, Qt::UserRole);
        item->setEditable(false);
        names_.appendRow(item);
    }
    if (offered.empty()) {
        completer_->popup()->hide();
        return;
    }
    completer_->complete();
    // A way is longer than the name that is typed: the list grows to the left, under the editor's beginning.
    QAbstractItemView& popup = *completer_->popup();
    const int margins = 2 * popup.frameWidth() + popup.verticalScrollBar()->sizeHint().width();
    QRect place = popup.geometry();
    place.setLeft(place.right() + 1 - std::max(place.width(), popup.sizeHintForColumn(0) + margins));
    popup.setGeometry(place);
    // Enter takes the first.
    popup.setCurrentIndex(completer_->completionModel()->index(0, 0));
}

void CategoryFrame::closeNames() {
    offeredFor_.clear();
    completer_->popup()->hide();
}

void CategoryFrame::choose(int category) {
    if (OnEditorValueEditDone) {
        OnEditorValueEditDone(category);
    } else {
        EditorValueEditDone(category);
    }
}

void CategoryFrame::EditorValueEditDone(int category) {
    create_bubble(category, 1);
    createmenuItemByCode(category);
    editor_->clear();
    editor_->setFocus();
    if (OnChange) OnChange();
}

void CategoryFrame::keyUp(int key) {
    context_.guarded(this, [this, key] {
        if (OnEditorKeyUp) {
            OnEditorKeyUp(key);
        } else {
            EditorKeyUp(key);
        }
    });
}

void CategoryFrame::EditorKeyUp(int key) {
    if (takesChips(key) && std::exchange(emptyAtPress_, false)) {
        if (!way_.empty()) takeChip(way_.size() - 1);
        return;
    }
    if (isEnter(key)) {
        const std::vector<Category> named = found();
        if (named.size() == 1) {
            choose(named.front().code);
            return;
        }
        offerNames();
    } else if (editor_->text() != offeredFor_) {
        offerNames();
    }
}

// True when the editor shall not get it.
bool CategoryFrame::pressed(int key, bool inEditor) {
    pressedKey_ = key;
    keyIsDown_ = true;
    emptyAtPress_ = editor_->text().isEmpty();
    bool taken = false;
    if (inEditor && OnEditorKeyDown) context_.guarded(this, [&] { taken = OnEditorKeyDown(key); });
    // Enter behind a name is meant for the name; in the empty editor it is the screen's.
    return taken || (inEditor && isEnter(key) && !editor_->text().trimmed().isEmpty());
}

void CategoryFrame::released(int key) {
    keyIsDown_ = false;
    // These act, and must have gone down here: one that has closed a dialog, or has chosen in the list, comes up here
    // as well.
    if ((isEnter(key) || takesChips(key)) && key != pressedKey_) return;
    pressedKey_ = 0;
    keyUp(key);
}

bool CategoryFrame::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::FocusOut && watched == editor_) keyIsDown_ = false;
    if (type == QEvent::KeyPress || type == QEvent::KeyRelease) {
        const auto* key = static_cast<QKeyEvent*>(event);
        // A key that is held down goes down once and comes up once.
        if (!key->isAutoRepeat()) {
            if (type == QEvent::KeyPress) return pressed(key->key(), watched == editor_);
            released(key->key());
        }
    }
    return TCategory_frame::eventFilter(watched, event);
}

void CategoryFrame::ClearBubbles() {
    showWay({});
}

void CategoryFrame::SelectLastBubble() {
    if (!way_.empty()) chips_[way_.size() - 1]->setFocus();
}

int CategoryFrame::CurrentCode() const {
    return way_.empty() ? 0 : way_.back().Code;
}

int CategoryFrame::BubbleLimit() const {
    return static_cast<int>(kMostChips);
}

}  // namespace basalt::host
