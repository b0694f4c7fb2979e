#include "ui/qt/Pictures.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QPolygonF>

#include <algorithm>
#include <memory>

namespace halvane::ui::qt {

namespace {

/// Shapes in a square of 16 by 16.
using Drawing = void (*)(QPainter& painter);

constexpr qreal lSide = 16;

void drawFile(QPainter& painter) {
    painter.drawPolygon(QPolygonF({{3.5, 1.5}, {9.5, 1.5}, {12.5, 4.5}, {12.5, 14.5}, {3.5, 14.5}}));
    painter.drawPolyline(QPolygonF({{9.5, 1.5}, {9.5, 4.5}, {12.5, 4.5}}));
    painter.drawPolyline(QPolygonF({{6.5, 7}, {5, 9}, {6.5, 11}}));
    painter.drawPolyline(QPolygonF({{9.5, 7}, {11, 9}, {9.5, 11}}));
}

void drawFolder(QPainter& painter) {
    painter.drawPolygon(
        QPolygonF({{1.5, 3.5}, {6.5, 3.5}, {8, 5.5}, {14.5, 5.5}, {14.5, 13.5}, {1.5, 13.5}}));
    painter.drawLine(QPointF(1.5, 7.5), QPointF(14.5, 7.5));
}

/// Draws in the colours of the person's theme.
class Picture : public QIconEngine {
public:
    explicit Picture(Drawing drawing) : drawing_(drawing) {}

    void paint(QPainter* pPainter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QPalette palette = QGuiApplication::palette();
        const qreal scale = std::min(rect.width(), rect.height()) / lSide;
        pPainter->save();
        pPainter->setRenderHint(QPainter::Antialiasing);
        pPainter->translate(rect.x() + (rect.width() - scale * lSide) / 2,
                            rect.y() + (rect.height() - scale * lSide) / 2);
        pPainter->scale(scale, scale);
        pPainter->setPen(palette.color(group, QPalette::ButtonText));
        pPainter->setBrush(palette.color(group, QPalette::Base));
        drawing_(*pPainter);
        pPainter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }
    [[nodiscard]] QIconEngine* clone() const override {
        return std::make_unique<Picture>(drawing_).release();
    }

private:
    Drawing drawing_;
};

/// The icon owns its engine.
QIcon iconOf(Drawing drawing) {
    return QIcon(std::make_unique<Picture>(drawing).release());
}

} // namespace

QIcon pictureOfAFile() {
    return iconOf(drawFile);
}

QIcon pictureOfAFolder() {
    return iconOf(drawFolder);
}

} // namespace halvane::ui::qt
