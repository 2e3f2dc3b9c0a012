#include "host/steps/step_player.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <cstdio>
#include <cstdlib>

#include "host/steps/file_export.h"
#include "host/steps/object_list.h"
#include "host/steps/screen_finder.h"
#include "host/steps/screen_picture.h"
#include "host/steps/screen_reader.h"
#include "host/steps/step_failure.h"
#include "host/steps/steps_error.h"
#include "host/steps/user_input.h"
#include "host/steps/watchdog.h"

namespace basalt::host {

namespace {

constexpr std::chrono::milliseconds retryPause{10};
constexpr std::chrono::milliseconds longestUnrest{1000};  // a bar that runs for ever has its picture taken all the same

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

const std::string& sentText(const SentStatement& statement) {
    return statement.procedure.empty() ? statement.text : statement.procedure;
}

void requireText(const QString& shown, const std::string& expected, const std::string& where) {
    if (!readsAs(shown, expected)) throw StepFailure(quoted(expected) + " in " + where, quoted(shown.toStdString()));
}

}  // namespace

StepPlayer::StepPlayer(std::vector<Step> steps, const std::string& file, StepPatience patience)
    : script_(std::move(steps), file), messages_(script_), patience_(patience) {
    messages_.onUnanswered = [this](const std::string& complaint) { fail(script_.line(), complaint); };
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, [this] { tick(); });
}

StepPlayer::~StepPlayer() = default;

void StepPlayer::start() {
    watchdog_ = std::make_unique<Watchdog>(patience_.standstill, [this] {
        std::fprintf(stderr, "%s:%d: the screen has stood still for %lld seconds\n", script_.file().c_str(),
                     script_.line(), static_cast<long long>(patience_.standstill.count() / 1000));
        std::fflush(stderr);
        std::_Exit(1);
    });
    timer_.start(0);
}

void StepPlayer::returned(const Datum& result) {
    returned_ = true;
    result_ = result;
}

void StepPlayer::finish() {
    if (finished()) return;
    QEventLoop loop;
    const auto callback = std::exchange(onFinished, [&loop] { loop.quit(); });
    timer_.start(0);
    loop.exec();
    if (callback) callback();
}

const std::vector<SentStatement>& StepPlayer::sentStatements() const {
    static const std::vector<SentStatement> none;
    return statements_ ? statements_() : none;
}

void StepPlayer::tick() {
    watchdog_->alive();
    if (phase_ == Phase::Playing) {
        play();
    } else if (phase_ == Phase::Closing) {
        closeScreens();
    }
}

void StepPlayer::play() {
    if (exporting_) {
        timer_.start(retryPause);
        return;
    }
    const Step* step = script_.current();
    if (!step) return settle();
    if (!waiting_.isValid()) waiting_.start();
    std::function<void()> action;
    try {
        action = prepare(step->action);
    } catch (const StepFailure& failure) {
        if (waiting_.hasExpired(patience_.step.count())) fail(step->line, failure.what());
        timer_.start(retryPause);
        return;
    }
    waiting_.invalidate();
    script_.advance();
    // The action may open a screen and so not return before that screen closes: the next step runs in the screen's
    // loop.
    timer_.start(0);
    if (!action) return;
    try {
        action();
    } catch (const std::exception& error) {
        fail(script_.line(), std::string("the step ended with an error: ") + error.what());
    }
}

// A message that the last action brings by a timer belongs to the run: the screens stay open for a moment.
void StepPlayer::settle() {
    if (!settling_.isValid()) settling_.start();
    const bool closed = returned_ && !topScreen();
    if (closed || settling_.hasExpired(patience_.settling.count())) phase_ = Phase::Closing;
    timer_.start(closed ? std::chrono::milliseconds(0) : retryPause);
}

void StepPlayer::closeScreens() {
    messages_.discardFromNowOn();
    if (returned_ && !topScreen()) {
        complete();
        return;
    }
    timer_.start(retryPause);
    if (QWidget* popup = QApplication::activePopupWidget()) {
        popup->close();
    } else if (QWidget* screen = topScreen()) {
        auto* dialog = qobject_cast<QDialog*>(screen);
        if (auto* refusal = screen->findChild<QAbstractButton*>(QStringLiteral("No_BTN"))) {
            // A question of the host's own boxes, about unsaved changes for instance: backing out of it would keep the
            // screen below open for ever.
            refusal->click();
        } else if (dialog) {
            dialog->reject();
        } else {
            screen->close();
        }
    }
}

void StepPlayer::complete() {
    phase_ = Phase::Finished;
    watchdog_.reset();
    if (const auto* message = messages_.unclaimed()) {
        fail(message->line, "expected no message, found " + describe(message->message));
    }
    if (const Step* answer = script_.unusedAnswer()) {
        fail(answer->line, "expected a question for the answer " +
                               answerName(std::get<AnswerStep>(answer->action).answer.value) + ", found none");
    }
    if (const auto callback = onFinished) callback();
}

void StepPlayer::fail(int line, const std::string& complaint) {
    if (!failure_) failure_ = StepsError(script_.file(), line, complaint).what();
    if (phase_ == Phase::Playing) phase_ = Phase::Closing;
}

template <>
std::function<void()> StepPlayer::prepareStep(const ClickStep& step) {
    return click(step.object);
}

template <>
std::function<void()> StepPlayer::prepareStep(const DoubleClickStep& step) {
    return doubleClick(step.object);
}

template <>
std::function<void()> StepPlayer::prepareStep(const KeyStep& step) {
    return pressKey(step.object, step.key);
}

template <>
std::function<void()> StepPlayer::prepareStep(const TypeStep& step) {
    return typeText(step.object, step.text);
}

template <>
std::function<void()> StepPlayer::prepareStep(const ClearStep& step) {
    return clearText(step.object);
}

template <>
std::function<void()> StepPlayer::prepareStep(const RowStep& step) {
    return clickRow(step.grid, step.row);
}

template <>
std::function<void()> StepPlayer::prepareStep(const TabStep& step) {
    return clickTab(step.object, step.tab);
}

template <>
std::function<void()> StepPlayer::prepareStep(const ChooseStep& step) {
    return chooseItem(step.combo, step.item);
}

template <>
std::function<void()> StepPlayer::prepareStep(const AnswerStep&) {
    return {};
}

template <>
std::function<void()> StepPlayer::prepareStep(const ShotStep& step) {
    QWidget& screen = requireTopScreen();
    // Lists and layouts finish a moment after what has changed them: two looks that agree are one at a screen at rest.
    const QImage before = std::exchange(lastLook_, screenPicture(screen));
    if (before != lastLook_ && !waiting_.hasExpired(longestUnrest.count()))
        throw StepFailure("a screen at rest", "one that still changes");
    writePicture(lastLook_, step.file);
    lastLook_ = {};
    return {};
}

template <>
std::function<void()> StepPlayer::prepareStep(const NamesStep&) {
    const QWidget& screen = requireTopScreen();
    std::fputs(objectList(screen).c_str(), stderr);
    std::fflush(stderr);
    return {};
}

template <>
std::function<void()> StepPlayer::prepareStep(const ExportStep& step) {
    return [this, work = exportGrid(step.grid, step.format, step.file)] {
        exporting_ = true;
        work();
        exporting_ = false;
    };
}

template <>
std::function<void()> StepPlayer::prepareStep(const ExpectText& step) {
    requireText(shownText(requireObject(step.object)), step.text, step.object);
    return {};
}

template <>
std::function<void()> StepPlayer::prepareStep(const ExpectRows& step) {
    const QAbstractItemView& table = requireTable(step.grid);
    const int count = table.model() ? table.model()->rowCount() : 0;
    if (count != step.count)
        throw StepFailure(std::to_string(step.count) + " rows in " + step.grid, std::to_string(count));
    return {};
}

template <>
std::function<void()> StepPlayer::prepareStep(const ExpectCell& step) {
    requireText(requireCell(step.grid, step.row, step.column).data().toString(), step.text,
                "row " + std::to_string(step.row) + ", column " + step.column + " of " + step.grid);
    return {};
}

template <>
std::function<void()> StepPlayer::prepareStep(const ExpectState& step) {
    if (hasState(requireObject(step.object), step.state)) return {};
    std::string found = "it not " + stateName(step.state);
    if (step.state == ObjectState::Focused) {
        // Where no window manager does it, the screen behind a closed box is not made active again.
        QWidget* window = requireObject(step.object).window();
        if (!QApplication::activeWindow()) window->activateWindow();
        const QWidget* focused = focusOn(*window);
        found = "the focus on " + (focused ? nameFor(*focused) : "nothing");
    }
    throw StepFailure(step.object + " to be " + stateName(step.state), found);
}

template <>
std::function<void()> StepPlayer::prepareStep(const ExpectMessage& step) {
    messages_.claim(step);
    return {};
}

template <>
std::function<void()> StepPlayer::prepareStep(const ExpectStatement& step) {
    const std::vector<SentStatement>& sent = sentStatements();
    for (std::size_t i = statementsSeen_; i < sent.size(); ++i) {
        if (sentText(sent[i]) != step.text) continue;
        statementsSeen_ = i + 1;
        return {};
    }
    std::string found;
    for (std::size_t i = statementsSeen_; i < sent.size(); ++i)
        found += "\n  " + sentText(sent[i]);
    throw StepFailure("the statement\n  " + step.text + "\n",
                      found.empty() ? "no further statement" : "these:" + found);
}

template <>
std::function<void()> StepPlayer::prepareStep(const ExpectUnsent& step) {
    const std::vector<SentStatement>& sent = sentStatements();
    for (std::size_t i = statementsSeen_; i < sent.size(); ++i)
        if (sentText(sent[i]).starts_with(step.beginning))
            throw StepFailure("no statement " + step.beginning + "...", sentText(sent[i]));
    return {};
}

template <>
std::function<void()> StepPlayer::prepareStep(const ExpectScreen& step) {
    const std::string found = requireTopScreen().objectName().toStdString();
    if (found != step.name) throw StepFailure("the screen " + step.name, found);
    return {};
}

template <>
std::function<void()> StepPlayer::prepareStep(const ExpectResult& step) {
    if (!returned_) throw StepFailure("the result " + step.value, "the call still running");
    const std::string found = result_.isText() ? result_.asText() : result_.toJson();
    if (!readsAs(QString::fromStdString(found), step.value)) throw StepFailure("the result " + step.value, found);
    return {};
}

template <>
std::function<void()> StepPlayer::prepareStep(const ExpectFile& step) {
    // The file to compare with lies beside the steps.
    const QDir beside = QFileInfo(QString::fromStdString(script_.file())).absoluteDir();
    requireFile(step.file, step.expected.empty()
                               ? std::string()
                               : beside.filePath(QString::fromStdString(step.expected)).toStdString());
    return {};
}

std::function<void()> StepPlayer::prepare(const StepAction& action) {
    return std::visit([this](const auto& step) { return prepareStep(step); }, action);
}

}  // namespace basalt::host
