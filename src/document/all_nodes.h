// What a window shows of a document that has no wave list yet.
#pragma once

// For a document, just loaded, that has no wave list beside it: shows all its nodes in the order of their
// ids, as many as there can be rows, and says so when the start or the command is over. It is no change of
// the document.
void ShowNodesWithoutWaveList();
