#include "app/VersionResolveWorker.h"

void VersionResolveWorker::resolveVersions()
{
    emit started();
    emit finished();
}
