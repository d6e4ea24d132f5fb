#include "app/RunMessages.h"

StageOutcome outcomeOfPreProcess(int code)
{
    const auto warning = [code](const QString& text) {
        return StageOutcome{StageOutcome::Warning, QStringLiteral(u"rotunda 预处理"), text, code};
    };
    switch (code) {
    case -2:
        return warning(QStringLiteral(u"找不到vek_input.xml文件"));
    case -1:
        return warning(QStringLiteral(u"vek_input.xml文件解析错误，请检查文件格式"));
    case -3:
        return warning(QStringLiteral(u"输入的时间窗口不合理"));
    default:
        return {};
    }
}

StageOutcome outcomeOfPlanning(int code)
{
    const auto outcome = [code](StageOutcome::Box box, const QString& text) {
        return StageOutcome{box, QStringLiteral(u"rotunda 流量规划"), text, code};
    };
    switch (code) {
    case 0:
        return outcome(StageOutcome::Information, QStringLiteral(u"规划成功"));
    case -2:
        return outcome(StageOutcome::Warning, QStringLiteral(u"找不到vek_hs.xml文件"));
    case -1:
        return outcome(StageOutcome::Warning,
                       QStringLiteral(u"vek_hs.xml文件解析错误，请检查文件格式"));
    case -3:
        return outcome(StageOutcome::Warning, QStringLiteral(u"冲突消解失败，规划终止"));
    default:
        return {};
    }
}
