// A label that shows one field of a data source's current row.
//
//   auto* comment = new TDBText(panel);
//   comment->setObjectName("DBComment_LBL");
//   comment->SetDataSource(&store.CostLevel_List_DS);
//   comment->SetFieldName("Comment");
//
// A text that is longer than its few lines ends in three dots, and the whole of it is the tool tip; text() is always
// the whole text. It shows nothing while the data set is closed or empty, and after the data source has gone away.
#pragma once

#include <QLabel>
#include <string>

#include "ado/data_source.h"

namespace basalt {

class TDBText final : public QLabel, private DataSourceListener {
public:
    explicit TDBText(QWidget* parent = nullptr);
    ~TDBText() override;
    TDBText(const TDBText&) = delete;
    TDBText& operator=(const TDBText&) = delete;

    void SetDataSource(TDataSource* source);
    void SetFieldName(const std::string& field);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return false; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void refresh();
    void showToolTip();
    [[nodiscard]] int heightOf(int lines) const;
    // The lines as they are painted; `cut` tells that the text goes on behind them.
    [[nodiscard]] QStringList shownLines(bool& cut) const;
    void dataChanged() override { refresh(); }
    void rowChanged(std::int64_t /*row*/) override { refresh(); }
    void cursorMoved() override { refresh(); }
    void activeChanged() override { refresh(); }
    void sourceGone() override;

    TDataSource* source_ = nullptr;
    std::string field_;
};

}  // namespace basalt
