#include "tests/app/walk/StudioWalk.h"
#include "tests/support/GuiTestMain.h"
#include "tests/support/Tally.h"

/// Judges what all shards of the walk have done together.
class StudioWalkKindsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyKindOfActionWasDone()
    {
        const std::map<QString, int> done = m_tally.below(QStringLiteral("done: "));
        qInfo("%d actions", m_tally.of(QStringLiteral("actions")));
        for (const auto& [name, count] : done)
            qInfo("%7d  %s", count, qPrintable(name));
        for (const QString& name : StudioWalk::kinds())
            QVERIFY2(done.count(name), qPrintable(name));
    }

    void runsEndedInEveryWay()
    {
        for (const char* text : {"规划成功", "输入的时间窗口不合理", "冲突消解失败，规划终止",
                                 "vek_input.xml文件解析错误，请检查文件格式"}) {
            int boxes = 0;
            for (const auto& [name, count] : m_tally.below(QStringLiteral("done: box: ")))
                boxes += name.endsWith(QString::fromUtf8(text)) ? count : 0;
            QVERIFY2(boxes > 0, text);
        }
    }

private:
    const Tally m_tally = Tally::ofAllShards();
};

ROTUNDA_GUI_TEST_MAIN(StudioWalkKindsTest)
#include "StudioWalkKindsTest.moc"
