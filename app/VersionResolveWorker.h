#pragma once

#include <QObject>

/// Tells the splash, from a thread of its own, that start-up work is over; there is none at
/// present.
class VersionResolveWorker : public QObject
{
    Q_OBJECT

signals:
    void finished();
    void started();
    void versionResolved(QString binary, QString version);

public:
    /// Emits started(), then finished(); runs on the worker's thread.
    void resolveVersions();
};
