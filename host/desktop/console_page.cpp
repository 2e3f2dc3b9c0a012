#include "host/desktop/console_page.h"

#include <QHBoxLayout>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

#include "host/screens/disabled_reason.h"
#include "host/screens/splitter_edge.h"
#include "host/screens/theme.h"
#include "host/services/host_parts.h"

namespace basalt::host {
namespace {

constexpr int kLeastView = 110;

}  // namespace

ConsolePage::ConsolePage(DesktopContext context, QWidget* parent)
    : ShellPage(parent), context_(context), caller_(context.registry, context.host) {
    setObjectName(QStringLiteral("Console_PNL"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 24, 28, 20);
    layout->setSpacing(12);
    auto* title = new QLabel(QString::fromStdString(context_.host.permissions().partTitle(hpConsole)));
    title->setProperty("kind", QStringLiteral("pageTitle"));
    layout->addWidget(title);
    auto* parts = new QSplitter;
    parts->setHandleWidth(16);
    parts->setChildrenCollapsible(false);
    functions_ = new FunctionList(context_.registry);
    functions_->OnChosen = [this](const Callable& callable) { choose(callable); };
    functions_->OnAccepted = [this] {
        if (!form_->focusFirst()) run_->setFocus();
    };
    parts->addWidget(functions_);
    parts->addWidget(makeCallPanel());
    parts->setStretchFactor(0, 0);
    parts->setStretchFactor(1, 1);
    parts->setSizes({300, 700});
    keepPartsInside(*parts);
    layout->addWidget(parts, 1);
}

QWidget* ConsolePage::makeCallPanel() {
    auto* panel = new QFrame;
    panel->setProperty("kind", QStringLiteral("panel"));
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setSpacing(8);
    auto* heading = new QHBoxLayout;
    name_ = new QLabel;
    name_->setObjectName(QStringLiteral("FunctionName_LBL"));
    name_->setProperty("kind", QStringLiteral("sectionTitle"));
    run_ = new QPushButton(QStringLiteral("اجرا \u2066F9\u2069"));
    run_->setObjectName(QStringLiteral("Run_BTN"));
    run_->setProperty("kind", QStringLiteral("primary"));
    heading->addWidget(run_);
    heading->addStretch();
    heading->addWidget(name_);
    layout->addLayout(heading);
    summary_ = new QLabel;
    summary_->setProperty("kind", QStringLiteral("hint"));
    summary_->setWordWrap(true);
    summary_->setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
    layout->addWidget(summary_);
    form_ = new ArgumentForm;
    layout->addWidget(form_);
    view_ = new CallView(context_.host.catalogue());
    view_->setMinimumHeight(themePixels(kLeastView));
    layout->addWidget(view_, 1);

    const auto action = [this] { context_.handlers.guarded(this, [this] { run(); }); };
    QObject::connect(run_, &QPushButton::clicked, this, action);
    auto* key = new QShortcut(QKeySequence(Qt::Key_F9), this);
    key->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(key, &QShortcut::activated, run_, &QPushButton::click);
    return panel;
}

void ConsolePage::enter() {
    functions_->focusSearch();
}

void ConsolePage::choose(const Callable& callable) {
    chosen_ = callable;
    const bool any = callable.function || callable.entry;
    enableUnless(*run_, any ? QString() : QStringLiteral("نخست تابعی را در فهرست برگزینید."));
    form_->setVisible(any);
    view_->clear();
    if (!any) {
        name_->clear();
        summary_->clear();
        return;
    }
    name_->setText(QString::fromStdString(callable.name()));
    // Told in the language of the code, from the left.
    summary_->setText(QStringLiteral("\u2066%1\u2069").arg(QString::fromStdString(callable.summary())));
    form_->setParameters(callable.parameters());
    // New inputs come behind the results otherwise.
    QWidget::setTabOrder(form_->followInTabOrder(functions_->list()), run_);
}

void ConsolePage::run() {
    if (!chosen_.function && !chosen_.entry) return;
    BoundArguments arguments;
    try {
        arguments = bindArguments(chosen_.parameters(), chosen_.name(), form_->arguments());
    } catch (const ArgumentError& error) {
        view_->showProblem(error);
        return;
    }
    // The module's messages go where the host's messages go; the recorder only looks on.
    MessageService& messages = context_.host.Messages();
    if (chosen_.function)
        view_->show(caller_.call(BoundCall{chosen_.function, std::move(arguments)}, messages));
    else
        view_->show(caller_.show(*chosen_.entry, arguments, messages));
}

}  // namespace basalt::host
