#pragma once

#include <QString>

// Planning as other programs call it: a folder in, a folder with a schedule out.
namespace planner
{

/// The steps of planning a folder, in their order.
enum class PlanStep {
    Folder,     ///< making the folder the current directory
    PreProcess, ///< the first stage: from the input document to the windows
    TTPlanning, ///< the second stage: from the windows to the schedule
    Saving      ///< of the documents
};

/// How far the planning of a folder came.
struct PlanResult {
    PlanStep step = PlanStep::Folder; ///< the last one; with ok() all of them are done
    qint32 code = 0;                  ///< what this step returned, one of planner::code

    bool ok() const { return code == 0; }
};

/// Plans FOLDER/ResourceXML/vek_input.xml and leaves FOLDER/OutputXML/vek_hs.xml and
/// vek_output.xml.
///
/// Both documents of an earlier plan are removed first, so that what is there afterwards is this
/// plan's. The same input document gives the same bytes on every machine.
///
/// Another process that plans in the same folder is waited for, two seconds at most.
///
/// One plan, one process: the engine works in the process's current directory, which is the folder
/// for the time of the call and afterwards what it was. Nothing else in the process may run that
/// takes relative paths meanwhile, least of all a second plan in another thread. To plan many
/// folders side by side, start as many processes.
///
/// Codes by step: Folder code::folderMissing; PreProcess and TTPlanning those of preProcess() and
/// TTPlanning(); Saving code::unreadable, when a document cannot be written, an earlier one not be
/// removed, or another process goes on planning in the folder. A folder ResourceXML without an
/// input document gives an empty schedule. Lines about what was refused go to the default logging
/// category ("default.debug=false" keeps them quiet).
PlanResult planFolder(const QString& folder);

/// What a code means, in English, such as "a time window leaves no slot"; empty for code::ok.
QString describe(const PlanResult& result);

} // namespace planner
