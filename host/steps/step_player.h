// Plays a steps file on the real screens of this program, from within their modal loops.
//
//   StepPlayer player(parseSteps(text, "rename.steps"), "rename.steps");
//   host.setMessages(player.messages());
//   player.setStatements([&]() -> auto& { return recorder.statements(); });
//   player.start();
//   entry.run(call);                            // shows a screen; the steps run while it is open
//   player.returned(call.resultValue());
//   player.finish();                            // the steps that come after the screens
//   if (player.failure()) std::cerr << *player.failure();
//
// A step that does not find what it needs is tried again for a while; then the run has failed: no further step is done
// and the screens are closed without saving. The same happens to screens that are still open when the steps end.
#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ado/connection.h"
#include "host/steps/step_messages.h"
#include "host/steps/step_script.h"
#include "package/datum.h"

namespace basalt::host {

class Watchdog;

struct StepPatience {
    std::chrono::milliseconds step{5000};         // for one step to find what it needs
    std::chrono::milliseconds settling{250};      // behind the last step, for what its action brings a moment later
    std::chrono::milliseconds standstill{60000};  // without any step; then the program is ended, whatever it does
};

class StepPlayer : public QObject {
public:
    StepPlayer(std::vector<Step> steps, const std::string& file, StepPatience patience = {});
    ~StepPlayer() override;

    // Answers questions from the steps and keeps messages for `expect message`.
    [[nodiscard]] MessageService& messages() { return messages_; }
    // Where `expect statement` finds the statements that have been sent so far.
    using StatementSource = std::function<const std::vector<SentStatement>&()>;
    void setStatements(StatementSource statements) { statements_ = std::move(statements); }

    // The first step is done once an event loop runs.
    void start();
    // The call that the steps accompany has returned, with its result for `expect result`.
    void returned(const Datum& result);
    // Runs until the steps are done. Only after returned().
    void finish();

    [[nodiscard]] bool finished() const { return phase_ == Phase::Finished; }
    // "FILE:LINE: expected ..., found ..."; empty when all went as expected (so far).
    [[nodiscard]] const std::optional<std::string>& failure() const { return failure_; }
    // Called once, when the steps are done and the screens closed.
    std::function<void()> onFinished;

private:
    enum class Phase { Playing, Closing, Finished };

    void tick();
    void play();
    void settle();
    void closeScreens();
    void complete();
    void fail(int line, const std::string& complaint);
    [[nodiscard]] std::function<void()> prepare(const StepAction& action);
    [[nodiscard]] const std::vector<SentStatement>& sentStatements() const;

    template <class Kind>
    [[nodiscard]] std::function<void()> prepareStep(const Kind& step);

    StepScript script_;
    StepMessages messages_;
    StepPatience patience_;
    std::unique_ptr<Watchdog> watchdog_;
    QTimer timer_;
    QElapsedTimer waiting_;   // since the current step was first tried
    QElapsedTimer settling_;  // since the last step was done
    Phase phase_ = Phase::Playing;
    QImage lastLook_;         // at the screen whose picture is asked for
    bool exporting_ = false;  // until the file is there, the steps wait
    bool returned_ = false;
    Datum result_;
    StatementSource statements_;
    std::size_t statementsSeen_ = 0;
    std::optional<std::string> failure_;
};

}  // namespace basalt::host
