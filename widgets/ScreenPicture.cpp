#include "widgets/ScreenPicture.h"

#include <QFile>
#include <QGuiApplication>

QPixmap screenPicture(const QString& file)
{
    QString large = file;
    large.insert(file.lastIndexOf(QLatin1Char('.')), QStringLiteral("@2x"));
    if (qApp->devicePixelRatio() <= 1.0 || !QFile::exists(large))
        return QPixmap(file);
    QPixmap picture(large);
    picture.setDevicePixelRatio(2.0);
    return picture;
}
