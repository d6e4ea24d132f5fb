#include "tests/faults/FaultStudio.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>

#include <cstdio>

/// What is wrong with a run; null when the schedule that is shown is the one of its document, or
/// its box says that there is none.
static const char* fault(const Seen& seen, const Seen& whole, const QString& before)
{
    if (seen == whole)
        return nullptr;
    if (seen.boxes == whole.boxes)
        return "success with another schedule";
    if (!isToldFailure(seen.boxes))
        return "unknown boxes";
    return seen.schedule == before ? nullptr : "a failed run changed the schedule";
}

// Plans a document in the current directory again and again: plan-again DOCUMENT ROUNDS. Prints how
// often it was planned; ends with 1 where something else was shown.
int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const QString document = QString::fromLocal8Bit(argv[1]);
    const QString here = QDir::currentPath();
    FaultStudio studio;
    Seen whole;
    {
        const TemporaryFolder alone;
        whole = studio.planDocument(document);
    }
    QDir::setCurrent(here);
    int planned = 0;
    for (int round = 0; round < QByteArray(argv[2]).toInt(); ++round) {
        const QString before = studio.shown();
        const Seen seen = studio.planDocument(document);
        if (const char* wrong = fault(seen, whole, before)) {
            std::fprintf(stderr, "round %d: %s: %s\n", round, wrong,
                         qUtf8Printable(seen.boxes.join(QLatin1Char(' '))));
            return 1;
        }
        planned += seen == whole ? 1 : 0;
    }
    std::printf("%d\n", planned);
    return 0;
}
