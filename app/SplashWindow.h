#pragma once

#include <QMainWindow>
#include <QMap>

/// Picture shown during start-up, which hands over to the main window.
class SplashWindow : public QMainWindow
{
    Q_OBJECT

public:
    SplashWindow();

private slots:
    void handleVersionResolved(QString binary, QString version);
    void handleVersionResolveFinished();

private:
    friend struct SplashWindowProbe;

    QWidget* createSplashWidget();
    void startWorker();

    QMap<QString, QString> versions; ///< binary name to version text
};
