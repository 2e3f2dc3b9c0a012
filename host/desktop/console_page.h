// The function console: choose a function of the module, fill in its arguments, run it and see all that it did.
#pragma once

#include <QLabel>
#include <QPushButton>

#include "host/calls/function_caller.h"
#include "host/desktop/argument_form.h"
#include "host/desktop/call_view.h"
#include "host/desktop/desktop_context.h"
#include "host/desktop/function_list.h"
#include "host/desktop/shell_page.h"

namespace basalt::host {

class ConsolePage final : public ShellPage {
public:
    explicit ConsolePage(DesktopContext context, QWidget* parent = nullptr);

    void enter() override;

private:
    [[nodiscard]] QWidget* makeCallPanel();
    void choose(const Callable& callable);
    void run();

    DesktopContext context_;
    FunctionCaller caller_;
    Callable chosen_;
    FunctionList* functions_;
    QLabel* name_ = nullptr;
    QLabel* summary_ = nullptr;
    ArgumentForm* form_ = nullptr;
    QPushButton* run_ = nullptr;
    CallView* view_ = nullptr;
};

}  // namespace basalt::host
