#pragma once

namespace zorvel::ui {

// The desktop program: parses the command line, prepares the demo workspace when asked, runs
// the start-up in the main window and the event loop. Returns the exit code.
int RunDesktopProgram(int argc, char** argv);

}  // namespace zorvel::ui
