#include "tests/support/Failure.h"

#include <QtTest>

#include <cstdio>
#include <cstdlib>

void failTest(const QByteArray& message, const char* file, int line)
{
    if (QTest::currentTestFunction()) {
        QTest::qFail(message.constData(), file, line);
        return;
    }
    std::fprintf(stderr, "%s(%d): %s\n", file, line, message.constData());
    std::exit(EXIT_FAILURE);
}
