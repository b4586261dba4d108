// The keyboard of the floating dialog.
#pragma once

// True while the dialog has the keyboard but leaves the keys of the waves to the main window: as long as the
// program, not the user, put the cursor into its field.
bool EditDialogLeavesKeys();
