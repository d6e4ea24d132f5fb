#include "project/DocumentExchange.h"

#include "project/DocumentFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

// An earlier copy stays, since copying does not overwrite.
static void copyInto(const QDir& target, const QString& folder, const QString& source)
{
    if (QFileInfo(source).isFile()) // a pipe would never end
        QFile::copy(source,
                    target.filePath(folder + QLatin1Char('/') + QFileInfo(source).fileName()));
}

bool importDocuments(const QString& inputPath, const QString& outputPath)
{
    ensureDocumentFolder(inputFolder());
    ensureDocumentFolder(outputFolder());
    if (inputPath.isEmpty() || outputPath.isEmpty())
        return false;
    if (inputPath == inputDocumentPath() || outputPath == outputDocumentPath())
        return false;
    replaceDocument(inputDocumentPath(), inputPath);
    replaceDocument(outputDocumentPath(), outputPath);
    return true;
}

void exportDocuments(const QString& dirPath)
{
    if (dirPath.isEmpty())
        return;
    const QDir target(dirPath);
    for (const QString& folder : {inputFolder(), outputFolder()})
        target.mkdir(folder);
    copyInto(target, inputFolder(), inputDocumentPath());
    copyInto(target, outputFolder(), outputDocumentPath());
}
