#pragma once

// The application's main routine: creates the application, loads the main window
// description (which creates the controller and runs its awakeFromNib), delivers the
// information file named on the command line as the open-file request and runs the event
// loop. Returns the exit status.
int VXApplicationMain(int argc, char *argv[]);
