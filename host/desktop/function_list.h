// The functions of the registry to choose from, narrowed by typing: data functions, store operations and entry points.
//
// Down in the search box goes to the list, Enter chooses the first function that is left.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QWidget>
#include <functional>
#include <vector>

#include "package/registry.h"

namespace basalt::host {

// What the list offers: one of the two is set.
struct Callable {
    const FunctionEntry* function = nullptr;
    const EntryPoint* entry = nullptr;

    [[nodiscard]] const std::string& name() const { return function ? function->name : entry->name; }
    [[nodiscard]] const std::string& summary() const { return function ? function->summary : entry->summary; }
    [[nodiscard]] const std::string& subsystem() const { return function ? function->subsystem : entry->subsystem; }
    [[nodiscard]] const std::vector<FunctionParameter>& parameters() const {
        return function ? function->parameters : entry->parameters;
    }
};

class FunctionList final : public QWidget {
public:
    explicit FunctionList(const Registry& registry, QWidget* parent = nullptr);

    void focusSearch();
    [[nodiscard]] QWidget* list() const { return list_; }

    // The one under the cursor has changed; none of both in it when nothing is found.
    std::function<void(const Callable&)> OnChosen;
    // Enter or a double click: the user goes on to the arguments.
    std::function<void()> OnAccepted;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] QString title(const Callable& callable) const;
    void narrow(const QString& text);
    void accept();

    std::vector<Callable> callables_;
    QLineEdit* search_;
    QListWidget* list_;
    QLabel* none_;  // instead of a list without functions
};

}  // namespace basalt::host
