// Where files go and how prints are shown: the two questions that grids and editors put to the user. Tests and drivers
// bring their own answers.
#pragma once

#include <QPageLayout>
#include <QString>
#include <QWidget>
#include <optional>

namespace basalt::host {

class PrintDocument;
class ScreenContext;

class OutputServices {
public:
    virtual ~OutputServices() = default;
    // Asks for the file to write; nullopt when the user thinks better of it. `suffix` is without the dot.
    [[nodiscard]] virtual std::optional<QString> chooseFile(QWidget* parent, const QString& title,
                                                            const QString& suggestedName, const QString& suffix) = 0;
    // Shows pages before they are printed, on that paper as long as the user takes no other.
    virtual void preview(ScreenContext& context, QWidget* parent, PrintDocument& document,
                         const QPageLayout& paper) = 0;
};

// Says for a while, over that window, that a file is written: a path that the user has chosen, so its name will do.
void tellSaved(QWidget& window, const QString& path);

// With dialogs.
class DialogOutputServices final : public OutputServices {
public:
    std::optional<QString> chooseFile(QWidget* parent, const QString& title, const QString& suggestedName,
                                      const QString& suffix) override;
    void preview(ScreenContext& context, QWidget* parent, PrintDocument& document, const QPageLayout& paper) override;
};

}  // namespace basalt::host
