#include "app/RunMessages.h"

#include <QtTest>

class RunMessagesTest : public QObject
{
    Q_OBJECT

private slots:
    void firstStage_data()
    {
        addColumns();
        const QString caption = QStringLiteral(u"rotunda 预处理");
        const int warning = StageOutcome::Warning;
        addRow(-2, warning, caption, QStringLiteral(u"找不到vek_input.xml文件"), -2);
        addRow(-1, warning, caption, QStringLiteral(u"vek_input.xml文件解析错误，请检查文件格式"),
               -1);
        addRow(-3, warning, caption, QStringLiteral(u"输入的时间窗口不合理"), -3);
        for (int code : {0, 1, -4})
            addRow(code, StageOutcome::None, QString(), QString(), 0);
    }

    void firstStage() { compare(&outcomeOfPreProcess); }

    void secondStage_data()
    {
        addColumns();
        const QString caption = QStringLiteral(u"rotunda 流量规划");
        const int warning = StageOutcome::Warning;
        addRow(0, StageOutcome::Information, caption, QStringLiteral(u"规划成功"), 0);
        addRow(-2, warning, caption, QStringLiteral(u"找不到vek_hs.xml文件"), -2);
        addRow(-1, warning, caption, QStringLiteral(u"vek_hs.xml文件解析错误，请检查文件格式"), -1);
        addRow(-3, warning, caption, QStringLiteral(u"冲突消解失败，规划终止"), -3);
        for (int code : {1, 2, -4})
            addRow(code, StageOutcome::None, QString(), QString(), 0);
    }

    void secondStage() { compare(&outcomeOfPlanning); }

private:
    static void addColumns()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("box");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("result");
    }

    static void addRow(int code, int box, const QString& caption, const QString& text, int result)
    {
        QTest::addRow("%d", code) << code << box << caption << text << result;
    }

    static void compare(StageOutcome (*outcomeOf)(int))
    {
        QFETCH(int, code);
        const StageOutcome outcome = outcomeOf(code);
        QTEST(int(outcome.box), "box");
        QTEST(outcome.caption, "caption");
        QTEST(outcome.text, "text");
        QTEST(outcome.result, "result");
    }
};

QTEST_APPLESS_MAIN(RunMessagesTest)
#include "RunMessagesTest.moc"
