#include "app/RunMessages.h"

#include "planner/PlanningModel.h"

namespace code = planner::code;

StageOutcome outcomeOfPreProcess(int result)
{
    const auto warning = [result](const QString& text) {
        return StageOutcome{StageOutcome::Warning, QStringLiteral(u"rotunda 预处理"), text, result};
    };
    switch (result) {
    case code::folderMissing:
        return warning(QStringLiteral(u"找不到vek_input.xml文件"));
    case code::unreadable:
        return warning(QStringLiteral(u"vek_input.xml文件解析错误，请检查文件格式"));
    case code::refused:
        return warning(QStringLiteral(u"输入的时间窗口不合理"));
    default:
        return {};
    }
}

StageOutcome outcomeOfPlanning(int result)
{
    const auto outcome = [result](StageOutcome::Box box, const QString& text) {
        return StageOutcome{box, QStringLiteral(u"rotunda 流量规划"), text, result};
    };
    switch (result) {
    case code::ok:
        return outcome(StageOutcome::Information, QStringLiteral(u"规划成功"));
    case code::folderMissing:
        return outcome(StageOutcome::Warning, QStringLiteral(u"找不到vek_hs.xml文件"));
    case code::unreadable:
        return outcome(StageOutcome::Warning,
                       QStringLiteral(u"vek_hs.xml文件解析错误，请检查文件格式"));
    case code::refused:
        return outcome(StageOutcome::Warning, QStringLiteral(u"冲突消解失败，规划终止"));
    default:
        return {};
    }
}
