// The window "Hierarchy": lists what the pattern of the selected row is made of, and follows the selection.
#pragma once

// Opens the window, or brings it to the top, and fills its list.
void OpenDataListing();
// Closes the window; its place on the screen is kept for the next opening.
void CloseDataListing();
// Lists the pattern of the selected row anew; nothing is listed unless exactly one row is selected. Does
// nothing while the window is closed.
void FillDataListing();
// A line was chosen, which changes nothing: what the log holds back goes to its file.
void ChooseDataListingLine();

// --- the window itself --------------------------------------------------------------------------------
bool DataListingIsOpen();
// Makes the window, at the place where it was closed last, or brings it to the top.
void ShowDataListing();
void DestroyDataListing();
// Empties the list and stops its drawing until RedrawDataListing.
void ClearDataListing();
// False if the list does not take the line.
bool AddDataListingLine(const char *line);
void RedrawDataListing();
