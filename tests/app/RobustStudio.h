#pragma once

#include "tests/driver/Studio.h"
#include "tests/project/ProjectBytes.h"
#include "tests/support/Documents.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <QTableWidget>
#include <QtTest>

/// The bytes of an example's project file.
inline QByteArray exampleProject(const char* name)
{
    return readFile(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/examples/%1/%1.rotpro")
                        .arg(QString::fromUtf8(name)));
}

/// A studio that takes projects as if they had been opened, without the file dialog.
struct RobustStudio {
    TemporaryFolder folder;
    LogCapture log;
    Studio studio;

    void open(const QByteArray& bytes) { studio.probe.showProject(projectFrom(bytes)); }

    QByteArray save()
    {
        return written(projectOf(*studio.editor.scene(), studio.probe.vLineInfoList(),
                                 studio.probe.flowInfoList()));
    }

    /// Uses what is shown: painted, written as an input document, saved.
    void use()
    {
        studio.window.grab();
        studio.probe.generateInput();
        QVERIFY(readFile(QStringLiteral("ResourceXML/vek_input.xml")).endsWith("</vek_input>\n"));
        QVERIFY(save().size() >= 16);
        QCOMPARE(studio.probe.vLineTable()->rowCount(), studio.probe.vLineInfoList().size());
        QCOMPARE(studio.probe.flowTable()->rowCount(), studio.probe.flowInfoList().size());
        for (const DiagramItem* node : studio.editor.nodes())
            QVERIFY(!node->nodeId.isEmpty());
    }
};
