// The About box.
#pragma once

// Modal.
void ShowAboutBox();
