#include "edit/edit_dialog.h"

void OpenEditDialog() {}
void FillEditDialog(const char *) {}
