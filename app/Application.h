#pragma once

/// Exit code of the event loop that restarts the application in the same process.
constexpr int RestartExitCode = 60600;

/// Runs the studio until its event loop ends with another code than RestartExitCode.
///
/// Each turn has an application object, a splash and a main window of its own. Returns the code of
/// the last event loop.
int runApplication(int argc, char** argv);
