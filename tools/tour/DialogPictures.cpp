#include "tools/tour/DialogPictures.h"

#include "app/PlanCheckForm.h"
#include "app/SynthesisForm.h"

#include <QApplication>
#include <QDialog>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <tuple>

// Where dialogs stand in the pictures: in a row, their lower edges on one line, right of the tool
// box; above the docks when they speak of them.
static constexpr int dialogsLeft = 320;
static constexpr int dialogsRight = 1264;
static constexpr int dialogsTop = 28;
static constexpr int dialogsBottom = 758;
static constexpr int dialogGap = 16;
static constexpr int titleHeight = 26;

static int dialogsAround(const QWidget* widget)
{
    int count = 0;
    for (const QWidget* each = widget->parentWidget(); each; each = each->parentWidget()) {
        if (qobject_cast<const QDialog*>(each))
            ++count;
    }
    return count;
}

/// The open dialogs, each behind the one that it belongs to.
static QList<QDialog*> openDialogs()
{
    QList<QDialog*> dialogs;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* dialog = qobject_cast<QDialog*>(widget);
        if (dialog && dialog->isVisible())
            dialogs.append(dialog);
    }
    const auto place = [](const QDialog* dialog) {
        return std::make_tuple(dialogsAround(dialog),
                               QByteArray(dialog->metaObject()->className()));
    };
    std::sort(dialogs.begin(), dialogs.end(),
              [&](const QDialog* a, const QDialog* b) { return place(a) < place(b); });
    return dialogs;
}

void arrangeDialogs()
{
    int width = -dialogGap;
    for (const QDialog* dialog : openDialogs())
        width += dialog->width() + dialogGap;
    int left = std::min(dialogsLeft, dialogsRight - width);
    for (QDialog* dialog : openDialogs()) {
        const bool isAboutTheDocks =
            qobject_cast<PlanCheckForm*>(dialog) || qobject_cast<SynthesisForm*>(dialog);
        dialog->move(left, isAboutTheDocks ? dialogsTop : dialogsBottom - dialog->height());
        left += dialog->width() + dialogGap;
    }
}

/// Draws what a window manager would: the virtual display has none.
static void drawFrame(QPainter& painter, const QDialog& dialog)
{
    const QColor frame(72, 84, 100);
    const QRect inside = dialog.geometry();
    const QRect title(inside.left() - 1, inside.top() - titleHeight, inside.width() + 2,
                      titleHeight);
    painter.fillRect(title, frame);
    painter.setPen(frame);
    painter.drawRect(inside.adjusted(-1, -1, 0, 0));
    painter.setPen(Qt::white);
    painter.drawText(title.adjusted(10, 0, -10, 0), Qt::AlignVCenter, dialog.windowTitle());
}

QPixmap screenPicture()
{
    QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(0);
    QPainter painter(&picture);
    for (const QDialog* dialog : openDialogs())
        drawFrame(painter, *dialog);
    return picture;
}
