// Where files go and how prints are shown: the two questions that grids and editors put to the user. Tests and drivers
// bring their own answers.
#pragma once

#include <QPageLayout>
#include <QPrinter>
#include <QString>
#include <QWidget>
#include <functional>
#include <optional>

namespace basalt::host {

// Paper with the margins that prints have here.
[[nodiscard]] QPageLayout pageLayout(QPageSize::PageSizeId paper = QPageSize::A4,
                                     QPageLayout::Orientation orientation = QPageLayout::Portrait);

class OutputServices {
public:
    virtual ~OutputServices() = default;
    // Asks for the file to write; nullopt when the user thinks better of it. `suffix` is without the dot.
    [[nodiscard]] virtual std::optional<QString> chooseFile(QWidget* parent, const QString& title,
                                                            const QString& suggestedName, const QString& suffix) = 0;
    // Shows pages before they are printed, on paper of that layout as long as the user takes no other. `paint` draws
    // them on the printer that it is given, as often as it is called.
    virtual void preview(QWidget* parent, const QString& title, const QPageLayout& layout,
                         const std::function<void(QPrinter&)>& paint) = 0;
};

// The dialogs of the platform.
class DialogOutputServices final : public OutputServices {
public:
    std::optional<QString> chooseFile(QWidget* parent, const QString& title, const QString& suggestedName,
                                      const QString& suffix) override;
    void preview(QWidget* parent, const QString& title, const QPageLayout& layout,
                 const std::function<void(QPrinter&)>& paint) override;
};

}  // namespace basalt::host
