// A document is open in one program at a time, as a second one would take its edit log away.
#pragma once

// Takes the document at `path`, whatever the path's extension, for this program, and lets go of the one
// before; an empty path is an untitled document. Where another program has it the user is told so and sees
// that program's window; the answer is false, and the document before is still this program's.
bool TakeDocument(const char *path);
// The same without a word, for a file that was written, and may be another one now.
void RetakeDocument(const char *path);
