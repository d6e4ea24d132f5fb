#pragma once

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>

#include <functional>

/// Writes down what is drawn instead of drawing it: each form with its pen, brush and places.
class DrawnLines : public QPaintEngine
{
public:
    DrawnLines() : QPaintEngine(AllFeatures) {}

    QStringList lines;

    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
    void updateState(const QPaintEngineState&) override {}

    void drawPath(const QPainterPath& path) override
    {
        QString line = QStringLiteral("path") + colors();
        for (int i = 0; i < path.elementCount(); ++i) {
            const QPainterPath::Element element = path.elementAt(i);
            line += QStringLiteral(" %1(%2,%3)")
                        .arg(QStringLiteral("MLCc").at(element.type))
                        .arg(element.x, 0, 'f', 1)
                        .arg(element.y, 0, 'f', 1);
        }
        lines.append(line);
    }

    void drawPolygon(const QPointF* points, int count, PolygonDrawMode) override
    {
        QString line = QStringLiteral("polygon") + colors();
        for (int i = 0; i < count; ++i)
            line += QStringLiteral(" (%1,%2)").arg(points[i].x()).arg(points[i].y());
        lines.append(line);
    }

    void drawRects(const QRectF* rects, int count) override
    {
        for (int i = 0; i < count; ++i)
            lines.append(QStringLiteral("rect%1 (%2,%3) %4x%5")
                             .arg(colors())
                             .arg(rects[i].x())
                             .arg(rects[i].y())
                             .arg(rects[i].width())
                             .arg(rects[i].height()));
    }

    /// A text stands at its top left corner here.
    void drawTextItem(const QPointF& place, const QTextItem& item) override
    {
        const QFont font = item.font();
        lines.append(QStringLiteral("text%1 (%2,%3) %4 %5 %6: %7")
                         .arg(colors())
                         .arg(place.x())
                         .arg(place.y() - item.ascent())
                         .arg(font.family())
                         .arg(font.pointSize())
                         .arg(font.weight())
                         .arg(item.text()));
    }

private:
    QString colors() const
    {
        const QPen pen = state->pen();
        const QBrush brush = state->brush();
        return QLatin1Char(' ') + pen.color().name() + QLatin1Char(' ') +
               (brush.style() == Qt::NoBrush ? QStringLiteral("none") : brush.color().name());
    }
};

/// The lines of what draw does.
inline QStringList drawnLines(const std::function<void(QPainter&)>& draw)
{
    class Device : public QPaintDevice
    {
    public:
        mutable DrawnLines drawn;
        QPaintEngine* paintEngine() const override { return &drawn; }

    protected:
        int metric(PaintDeviceMetric metric) const override
        {
            switch (metric) {
            case PdmWidth:
            case PdmHeight:
            case PdmWidthMM:
            case PdmHeightMM:
                return 300;
            case PdmDepth:
                return 32;
            case PdmDevicePixelRatioScaled:
                return int(devicePixelRatioFScale());
            case PdmDpiX:
            case PdmDpiY:
            case PdmPhysicalDpiX:
            case PdmPhysicalDpiY:
                return 96;
            default:
                return 1;
            }
        }
    };
    Device device;
    QPainter painter(&device);
    draw(painter);
    painter.end();
    return device.drawn.lines;
}
