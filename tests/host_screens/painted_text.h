// What is really painted: a device that keeps the texts of a painter instead of their pixels.
//
//   PaintedText painted;
//   { QPainter painter(&painted); document.paintPage(painter, 0); }
//   EXPECT_TRUE(painted.text().contains("۱۲٬۵۰۰"));
#pragma once

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>
#include <limits>
#include <vector>

namespace basalt::host {

class PaintedText final : public QPaintDevice {
public:
    // The pieces in the order in which they were painted. Numbers of tables stand between marks of isolation.
    [[nodiscard]] QString text() const { return engine_.painted.join(QString()); }
    [[nodiscard]] const QStringList& pieces() const { return engine_.painted; }
    // Where each of them stands: the left end of its base line.
    [[nodiscard]] const std::vector<QPointF>& places() const { return engine_.places; }
    [[nodiscard]] QPaintEngine* paintEngine() const override { return &engine_; }

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override {
        constexpr int kSize = 20'000;
        constexpr int kDpi = 96;
        switch (metric) {
            case PdmWidth:
            case PdmHeight:
            case PdmWidthMM:
            case PdmHeightMM:
                return kSize;
            case PdmDpiX:
            case PdmDpiY:
            case PdmPhysicalDpiX:
            case PdmPhysicalDpiY:
                return kDpi;
            case PdmDepth:
                return 32;
            case PdmNumColors:
                return std::numeric_limits<int>::max();
            case PdmDevicePixelRatio:
                return 1;
            case PdmDevicePixelRatioScaled:
                return static_cast<int>(devicePixelRatioFScale());
            default:
                return 0;
        }
    }

private:
    class Engine final : public QPaintEngine {
    public:
        Engine() : QPaintEngine(AllFeatures) {}
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState&) override {}
        void drawPath(const QPainterPath&) override {}
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        void drawTextItem(const QPointF& place, const QTextItem& item) override {
            painted.append(item.text());
            places.push_back(place);
        }
        [[nodiscard]] Type type() const override { return User; }

        QStringList painted;
        std::vector<QPointF> places;
    };

    mutable Engine engine_;
};

}  // namespace basalt::host
