#include "app/FormPlace.h"

#include <QScreen>
#include <QWidget>

static constexpr int frameWidth = 4; // of what the desktop draws around a form

void placeOverDrawing(QWidget* form, const QWidget* window)
{
    const QRect screen = window->screen()->availableGeometry();
    form->resize(form->size().boundedTo(screen.size() - QSize(2 * frameWidth, 0)));
    const QPoint corner = window->mapToGlobal(QPoint(window->width() - form->width(), 0));
    const int lastLeft = screen.right() + 1 - form->width() - 2 * frameWidth;
    form->move(qBound(screen.left(), corner.x(), lastLeft), corner.y());
}
