#pragma once

#include <QApplication>
#include <QTemporaryDir>
#include <QtTest>

/// Entry point of a test of windows: settings of its own in a folder that goes with the process.
#define ROTUNDA_GUI_TEST_MAIN(TestClass)                                                           \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        const QTemporaryDir settings;                                                              \
        qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());                                 \
        QCoreApplication::setApplicationName(QStringLiteral("Rotunda"));                           \
        QCoreApplication::setOrganizationName(QStringLiteral("Corvane"));                          \
        const QApplication application(argc, argv);                                                \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
