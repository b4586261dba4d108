// The program's one-line question.
#pragma once

// Asks for a text of at most `size` - 1 characters under `label`; `buffer` holds the start text and takes the
// answer. 1 on OK, 0 on Cancel. Modal.
int GetTextDialog(const char *label, char *buffer, int size);
